// The fixed logic family: program, erase and secure. A whole chip is one queued list; the chip
// answers only in the verify behind it.
#include "families/usbkeld2pldprg.h"

namespace keld2 {

namespace {

constexpr std::int32_t afterverify = 200;  // short ticks
constexpr std::int32_t erasewait = 200;    // long ticks
constexpr int erasewaits = 11;

// Which way woption[0] runs through the fuse map; any other value leaves the fuses as they were.
constexpr std::uint8_t forwards = 0;
constexpr std::uint8_t backwards = 1;

std::uint8_t fusebit(std::uint8_t cell) { return cell & 1; }

}  // namespace

void usbkeld2pldprg::fuseprogram() {
    writerecordtdo(family_->programtdo);
    startlists();
    pldenter();
    takefuses();
    shiftir(fixedinstruction::clearaddress);
    shiftir(fixedinstruction::programrows);
    for (std::int32_t row = 0; row < geometry_.rows; ++row) {
        programrow(row);
        writerowprogress(row);
    }
    devcore().qrun();
    programusercode();
    verifystages([this] { fuseread(verify); });
    devcore().qrun();
    devcore().waitshort(afterverify);
    endlists();
}

void usbkeld2pldprg::takefuses() {
    const std::int64_t cells = geometry_.cells();
    fusechars_.resize(static_cast<std::size_t>(cells));
    const std::uint8_t direction = s().woption[0];
    if (direction != forwards && direction != backwards) return;
    for (std::int64_t a = 0; a < cells; ++a)
        fusechars_[static_cast<std::size_t>(a)] =
            fusebit(s().ibuffer[direction == forwards ? a : cells - 1 - a]);
}

void usbkeld2pldprg::programrow(std::int32_t row) {
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>((geometry_.width + 7) / 8));
    const std::size_t first =
        static_cast<std::size_t>(geometry_.width) * static_cast<std::size_t>(row);
    for (std::size_t bit = 0; bit < static_cast<std::size_t>(geometry_.width); ++bit) {
        const std::size_t place = family_->firstfusehigh ? 7 - bit % 8 : bit % 8;
        bytes[bit / 8] |= static_cast<std::uint8_t>(fusechars_[first + bit] << place);
    }
    queued_.goshiftdr();
    driveregister(bytes, geometry_.tailbits() != 0 ? geometry_.tailbits() : 8);
    if (geometry_.tailbits() == 0) {
        queued_.tmshigh();
        queued_.tckpulse();
    }
    programpulse();
}

// All bytes but the last by code. The last goes bit by bit, bit 0 first.
void usbkeld2pldprg::driveregister(const std::vector<std::uint8_t>& bytes, std::int32_t lastbits) {
    for (std::size_t j = 0; j + 1 < bytes.size(); ++j)
        devcore().qregwrite(bytes[j], levels_.family().drivecode);
    const std::uint8_t last = family_->firstfusehigh ? bitrev8(bytes.back()) : bytes.back();
    shiftdr(queued_, lastbits, last, ShiftMode::drivelast);
}

void usbkeld2pldprg::programpulse() {
    queued_.tmshigh();
    queued_.tckpulse();
    queued_.tmslow();
    queued_.tckpulses(3);
    queued_.tdihigh();
    devcore().qwaitlong(s().pwte[0] / 100);
    queued_.tcklow();
    queued_.tmslow();
}

void usbkeld2pldprg::programusercode() {
    std::vector<std::uint8_t> bytes(usercodebits / 8);
    std::int64_t cell = std::int64_t{geometry_.fuses} + usercodebits - 1;
    for (std::uint8_t& byte : bytes)
        for (int k = 7; k >= 0; --k)
            byte |= static_cast<std::uint8_t>(fusebit(s().ibuffer[cell--]) << k);
    shiftir(fixedinstruction::programusercode);
    queued_.goshiftdr();
    driveregister(bytes, 8);
    programpulse();
}

void usbkeld2pldprg::fuseerase() {
    pldenter();
    shiftintoidle(fixedinstruction::erase, 2);
    for (int i = 0; i < erasewaits; ++i) devcore().qwaitlong(erasewait);
    queued_.tckpulse();
    shiftintoidle(fixedinstruction::enderase, 2);
    devcore().qwaitlong(erasewait);
    queued_.tckpulse();
    devcore().qrun();
}

void usbkeld2pldprg::fusesecure() {
    startlists();
    pldenter();
    shiftintoidle(fixedinstruction::secure, 2);
    devcore().qwaitlong(s().pwte[0] / 20);
    queued_.tckpulse();
    devcore().qrun();
    endlists();
}

}  // namespace keld2
