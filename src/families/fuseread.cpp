// The fixed logic family: read, verify, blank check and compare. One bulk transfer brings all
// rows; each fuse then goes through fusecheck.
#include <utility>

#include "families/usbkeld2pldprg.h"
#include "platform/numbers.h"

namespace keld2 {

namespace {

constexpr std::int32_t beforeread = 20;   // short ticks
constexpr std::int32_t afterrow = 600;    // short ticks, for the chip to fetch its row
constexpr std::int32_t afterfuses = 200;  // short ticks
constexpr std::int32_t usercodebytes = usercodebits / 8;

std::uint8_t digit(bool bit) { return bit ? '1' : '0'; }
std::u16string bittext(bool bit) { return numbertext(bit ? 1 : 0); }

}  // namespace

void usbkeld2pldprg::fuseread(FuseMode mode) {
    DevCore& d = devcore();
    startlists();
    d.qrun();
    d.waitshort(beforeread);
    pldenter();
    writerecordtdo(family_->readtdo);
    armreadback(run());
    for (std::int32_t row = 0; row < geometry_.rows; ++row) {
        queuerow(row);
        writerowprogress(row);
    }
    d.qrun();
    d.waitshort(beforeread);
    armreadback(run());
    if (ubulkread0(run(), readbacklength) == status::goon) checkrows(mode);
    d.qrun();
    d.waitshort(afterfuses);
}

void usbkeld2pldprg::queuerow(std::int32_t row) {
    shiftir(fixedinstruction::selectrow);
    rowselect(geometry_.rows, row);
    shiftintoidle(fixedinstruction::readrow, 2);
    devcore().qwaitshort(afterrow);
    queued_.goshiftdr();
    for (std::int32_t j = 0; j < geometry_.wholebytes(); ++j)
        devcore().qregwrite(shiftcode::shiftinvalue, levels_.family().readcode);
    if (geometry_.tailbits() != 0) {
        shiftdr(queued_, geometry_.tailbits(), 0, ShiftMode::readlast);
    } else {
        queued_.tmshigh();
        queued_.tckpulse();
    }
    queued_.tmshigh();
    queued_.tckpulse();
    queued_.tmslow();
}

void usbkeld2pldprg::checkrows(FuseMode mode) {
    bool goon = true;
    for (std::int32_t row = 0; goon && row < geometry_.rows; ++row) goon = checkrow(row, mode);
    if (!report_.empty()) s().MainRtstr[1] += std::exchange(report_, {});
    if (goon && mode == store) readusercode();
}

// False when the operation ends at this row.
bool usbkeld2pldprg::checkrow(std::int32_t row, FuseMode mode) {
    std::int64_t readback = std::int64_t{geometry_.stride()} * row;
    std::int32_t address = geometry_.width * row;
    for (std::int32_t j = 0; j < geometry_.wholebytes(); ++j) {
        const std::uint8_t byte = s().ibuf2[readback++];
        for (int k = 7; k >= 0; --k)
            if (fusecheck(address++, (byte >> k & 1) != 0, mode) != status::goon) return false;
    }
    for (std::int32_t k = 0; k < geometry_.tailbits(); ++k) {
        const bool bit = (s().ibuf2[readback++] & levels_.tdomask()) != 0;
        if (fusecheck(address++, bit, mode) != status::goon) return false;
    }
    return true;
}

int usbkeld2pldprg::fusecheck(std::int32_t address, bool bit, FuseMode mode) {
    if (address > geometry_.fuses) return status::goon;
    std::uint8_t& cell = s().ibuffer[address];
    const std::uint8_t c = digit(bit);
    switch (mode) {
        case store:
            cell = c;
            return status::goon;
        case verify:
            return cell == c ? status::goon : fusedifference(address, bit);
        case blank:
            return bit ? status::goon : fusedifference(address, bit);
        default:
            return cell == c ? status::goon : fuselistline(address, bit);
    }
}

// The first difference of a verify or blank check ends it.
int usbkeld2pldprg::fusedifference(std::int32_t address, bool bit) {
    const bool buffer = (s().ibuffer[address] & 1) != 0;
    appendlog(s(), owntext(s(), TextId::deviceaddress) + sixdigits(address) +
                       owntext(s(), TextId::devicedata) + bittext(bit) +
                       owntext(s(), TextId::bufferdata) + bittext(buffer) + u"\n");
    s().prgresult.release(0, result::failed);
    return status::ended;
}

int usbkeld2pldprg::fuselistline(std::int32_t address, bool bit) {
    service();
    if (stopasked()) return status::ended;
    const bool buffer = (s().ibuffer[address] & 1) != 0;
    report_ += u">> " + sixdigits(address) + std::u16string(6, u' ') + bittext(bit) +
               std::u16string(9 + 2, u' ') + bittext(buffer) + u"\n";
    return status::goon;
}

// The first bit read is the last cell.
void usbkeld2pldprg::readusercode() {
    direct_.shiftir(instructionbits, fixedinstruction::readusercode);
    direct_.goshiftdr();
    std::int64_t cell = std::int64_t{geometry_.fuses} + usercodebits - 1;
    for (std::int32_t i = 0; i < usercodebytes; ++i) {
        const auto mode = i == usercodebytes - 1 ? ShiftMode::readlast : ShiftMode::read;
        const std::uint32_t byte = shiftdr(direct_, 8, 0, mode);
        for (int k = 0; k < 8; ++k) s().ibuffer[cell--] = digit((byte >> k & 1) != 0);
    }
}

}  // namespace keld2
