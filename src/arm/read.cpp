// Read and Compare: the device goes block by block through the programmer's RAM.
#include "arm/operations.h"
#include "arm/wire.h"

namespace keld2 {

namespace {

constexpr int readshare = 85;  // parts of a block's percent that go to the device read
constexpr int blank = 255;

enum class Wait { done, left, brokenoff };

class ArmReading {
  public:
    ArmReading(const ArmJob& job, const ArmGeometry& geometry)
        : job_(job), c_(job.c), s_(job.c.s), geometry_(geometry) {}

    // False: the connection has failed. Everything else ends in the tail.
    bool blocks() {
        for (std::int32_t i = 0; i <= geometry_.lastblock(); ++i) {
            const ArmBlock block = geometry_.block(i);
            const Wait wait = readdevice(block);
            if (wait != Wait::done) return wait == Wait::left;
            if (!fetch(block)) return true;
        }
        s_.prgmode[1] = armdone;
        return true;
    }

  private:
    Wait readdevice(const ArmBlock& block);
    bool fetch(const ArmBlock& block);
    bool fetchbulk(const ArmBulk& bulk);
    bool comparebulk(const ArmBulk& bulk);
    void percent(const ArmBlock& block, int part) {
        const std::int64_t parts = std::int64_t{100} * block.index + part;
        s_.prgmode[1] = static_cast<std::uint8_t>(parts / (geometry_.lastblock() + 1));
    }

    const ArmJob& job_;
    const ArmContext& c_;
    SharedVariables& s_;
    const ArmGeometry& geometry_;
};

Wait ArmReading::readdevice(const ArmBlock& block) {
    clearrecord(c_, 1);
    sendoperation(c_, job_.op, block.index, block.last && job_.profile.read.marklastblock);
    for (;;) {
        if (!nextrecord(c_)) return Wait::brokenoff;
        if (s_.ibuf1[1] == armstate::failed) {
            s_.prgresult.release(0, result::failed);
            return Wait::left;
        }
        if (obeysstop(job_)) return Wait::left;
        percent(block, s_.ibuf1[0] * readshare / 100);
        if (s_.ibuf1[0] == armdone) return Wait::done;
    }
}

bool ArmReading::fetch(const ArmBlock& block) {
    const bool each = job_.profile.readselecteachbulk;
    if (!each) sendreadselect(c_, 0);
    for (std::int32_t k = 0; k <= block.lastbulk; ++k) {
        if (each) sendreadselect(c_, k);
        if (!fetchbulk(geometry_.bulk(block, k))) return false;
        percent(block, readshare + k);
    }
    return true;
}

bool ArmReading::fetchbulk(const ArmBulk& bulk) {
    const auto mode = static_cast<std::int16_t>(job_.op - operation::read);
    if (armbulkread(c_, mode, static_cast<std::int32_t>(bulk.offset), bulk.length) !=
        armstatus::goon) {
        if (!stopasked(c_)) s_.prgresult.release(0, result::timedout);
        return false;
    }
    return job_.op != operation::compare || comparebulk(bulk);
}

bool ArmReading::comparebulk(const ArmBulk& bulk) {
    const int mode = job_.op - operation::read;
    const std::int32_t wordsize = geometry_.wordsize();
    const std::int32_t words = bulk.length / wordsize;
    const auto offset = static_cast<std::int32_t>(bulk.offset);
    (void)s_.ibuf2[bulk.length - 1];  // within the block
    const std::uint8_t* data = s_.ibuf2.data();
    for (std::int32_t k = 0; k < words; ++k) {
        const int differs = wordsize == 1 ? c_.devcore.checkbyte(data[k], offset + k, mode)
                                          : c_.devcore.checkword(data[2 * k], data[2 * k + 1],
                                                                 offset / 2 + k, mode, blank);
        if (differs == 1) return false;
    }
    return true;
}

}  // namespace

int armread(const ArmJob& job) {
    const std::optional<ArmGeometry> geometry = armgeometry(job, job.profile.read);
    const bool compare = job.op == operation::compare;
    if (!geometry || (!compare && !holdsconfiguration(job.c))) return armstatus::brokenoff;
    if (!ArmReading(job, *geometry).blocks()) return armstatus::brokenoff;
    if (compare)
        replacelogbyreport(job.c.s, note::armreporthead);
    else
        storeconfiguration(job.c);
    return armstatus::goon;
}

}  // namespace keld2
