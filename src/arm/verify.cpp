// Verify: each block of the main buffer goes to the programmer, which compares it by itself.
#include "arm/operations.h"
#include "arm/wire.h"
#include "platform/fault.h"

namespace keld2 {

namespace {

// What a block's transfer or wait means for the rest; none: go on with the next block.
using Left = std::optional<int>;

Left feed(const ArmJob& job, const ArmGeometry& geometry, const ArmBlock& block) {
    const auto brokenoff = [&](int status) {
        job.c.s.prgresult.release(0, result::timedout);
        return status;
    };
    if (sendwriteselect(job.c, bankside(job.c)) == 1) return brokenoff(armstatus::brokenoff);
    for (std::int32_t k = 0; k <= block.lastbulk; ++k)
        if (sendbulk(job.c, geometry.bulk(block, k)) == 1) return brokenoff(armstatus::goon);
    return {};
}

// The address in the main buffer: the device may count words where the buffer counts bytes.
std::u16string bufferaddress(const ArmContext& c) {
    const std::uint64_t address =
        std::uint64_t{failureaddress(c)} * (c.s.wordmode[0] == 1 ? 1U : 2U);
    if (address > 0xFFFFFFFF) throw RunFault("buffer address has more than 8 digits", "armverify");
    return longdigits(c, static_cast<std::uint32_t>(address));
}

void notedifference(const ArmContext& c) {
    appendlog(c.s, owntext(c, TextId::deviceaddress) + addressdigits(c) +
                       owntext(c, TextId::hdevicedata) + devicedata(c) +
                       owntext(c, TextId::hbufferaddress) + bufferaddress(c) +
                       owntext(c, TextId::hbufferdata) + bufferdata(c) + u"H\n");
}

Left waitblock(const ArmJob& job, const ArmGeometry& geometry, const ArmBlock& block) {
    SharedVariables& s = job.c.s;
    clearrecord(job.c, 2);
    sendoperation(job.c, job.op, block.index, block.last && job.profile.verify.marklastblock);
    for (;;) {
        if (!nextrecord(job.c)) return armstatus::brokenoff;
        if (s.ibuf1[1] == armstate::failed) {
            notedifference(job.c);
            s.prgresult.release(0, result::failed);
            return armstatus::goon;
        }
        if (obeysstop(job)) return armstatus::goon;
        const std::int64_t parts = std::int64_t{100} * block.index + s.ibuf1[0];
        s.prgmode[1] = static_cast<std::uint8_t>(parts / (geometry.lastblock() + 1));
        if (s.ibuf1[0] == armdone) return {};
    }
}

}  // namespace

int armverify(const ArmJob& job) {
    const std::optional<ArmGeometry> geometry = armgeometry(job, job.profile.verify);
    if (!geometry) return armstatus::brokenoff;
    for (std::int32_t i = 0; i <= geometry->lastblock(); ++i) {
        const ArmBlock block = geometry->block(i);
        if (const Left left = feed(job, *geometry, block)) return *left;
        if (const Left left = waitblock(job, *geometry, block)) return *left;
    }
    job.c.s.prgmode[1] = armdone;
    return armstatus::goon;
}

}  // namespace keld2
