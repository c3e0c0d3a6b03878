#include "families/usbkeld2pldprg.h"

#include "families/jtagstartup.h"
#include "families/svfrun.h"

namespace keld2 {

namespace {

constexpr std::uint8_t svfmode = 50;       // of prgmode[0]
constexpr std::int16_t svfoperation = 20;  // plays the text, as programming does
constexpr std::int32_t afterenter = 200;   // short ticks
constexpr std::int32_t afteridwait = 500;  // short ticks

}  // namespace

usbkeld2pldprg::usbkeld2pldprg(const RunContext& run)
    : RunWindow(run, "usbkeld2pldprg"),
      family_(findfixedfamily(run.s.prgmode[0])),
      levels_(run.s.prgmode[0]),
      queued_(levels_, run.devcore),
      direct_(levels_, run.devcore) {}

int usbkeld2pldprg::dohwstart() {
    if (const int ready = startup(); ready != status::goon) return ready;
    if (const JtagStartup* row = findjtagstartup(s().prgmode[0])) playstartup(run(), *row);
    if (s().prgmode[0] == svfmode) levels_.clear();
    if (family_ == nullptr) return status::goon;
    const int ready = idread();
    for (int i = 0; i < family_->waitsafterid; ++i) devcore().waitshort(afteridwait);
    return ready;
}

RunWindow::StopButton usbkeld2pldprg::stopbutton(std::int16_t op) const {
    if (op == operation::compare) return StopButton::takenback;
    return op == operation::program ? StopButton::shown : StopButton::hidden;
}

void usbkeld2pldprg::dooperation(std::int16_t op) {
    if (family_ != nullptr) {
        geometry_ = findgeometry(s().tlength[0]);
        fixedoperation(op);
    } else if (s().prgmode[0] == svfmode && (op == operation::program || op == svfoperation)) {
        svfrun(run(), *findsvfprocedure(svfmode), levels_, svfstate_);
    }
}

void usbkeld2pldprg::fixedoperation(std::int16_t op) {
    const bool reads = op >= operation::read && op <= operation::compare;
    const bool usercode = op == operation::read || op == operation::program;
    if ((reads || op == operation::program) && !mapinbuffer(usercode))
        s().prgresult.release(0, result::failed);
    else if (reads)
        fuseread(static_cast<FuseMode>(op - operation::read));
    else if (op == operation::program)
        fuseprogram();
    else if (op == operation::erase)
        fuseerase();
    else if (op == operation::configuration)
        fusesecure();
}

bool usbkeld2pldprg::mapinbuffer(bool withusercode) const {
    const std::int64_t fuses = geometry_.fuses;
    const bool map = geometry_.cells() == 0 || s().ibuffer.holds(0, geometry_.cells() - 1);
    return map && (!withusercode || s().ibuffer.holds(fuses, fuses + usercodebits - 1));
}

void usbkeld2pldprg::shiftir(std::uint8_t instruction) {
    queued_.shiftir(instructionbits, instruction);
}

void usbkeld2pldprg::shiftintoidle(std::uint8_t instruction, std::int32_t pulses) {
    shiftir(instruction);
    queued_.tmslow();
    queued_.tckpulses(pulses);
}

// A register of count bits with a single 1; position 0 is its last bit.
void usbkeld2pldprg::rowselect(std::int32_t count, std::int32_t position) {
    queued_.tdilow();
    queued_.goshiftdr();
    for (std::int32_t i = 0; i < count; ++i) {
        queued_.tdidrive(i == count - position - 1);
        if (i == count - 1) queued_.tmshigh();
        queued_.tckpulse();
    }
    queued_.tckpulse();
}

void usbkeld2pldprg::zeroshift(std::int32_t n) {
    queued_.goshiftdr();
    queued_.tdilow();
    if (family_->shiftszeros)
        for (std::int32_t i = 0; i < n / 8; ++i) devcore().qregwrite(0, levels_.family().drivecode);
    queued_.tckpulses(n % 8 - 1);
    queued_.tmshigh();
    queued_.tckpulses(2);
    queued_.tmslow();
    queued_.tckpulse();
}

void usbkeld2pldprg::pldenter() {
    if (s().bvcch[0] != 0) {
        shiftir(fixedinstruction::preload);
        zeroshift(s().bvcch[0]);
    }
    shiftintoidle(fixedinstruction::enter, 3);
    devcore().qrun();
    devcore().waitshort(afterenter);
}

void usbkeld2pldprg::startlists() {
    s().ubuflg[0] = usbblocklength;
    sendlistmode(run(), listmode::fixed);
}

void usbkeld2pldprg::endlists() {
    resetreadback(run());
    sendlistmode(run(), listmode::off);
}

void usbkeld2pldprg::writerecordtdo(std::optional<std::uint8_t> reg) {
    if (reg) s().ubuf1[recordtdoplace] = *reg;
}

void usbkeld2pldprg::writerowprogress(std::int32_t row) {
    s().prgmode[1] = static_cast<std::uint8_t>(row * 100 / (geometry_.rows + 1));
}

}  // namespace keld2
