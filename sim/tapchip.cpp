#include "sim/tapchip.h"

#include <algorithm>
#include <utility>

namespace keld2::sim {

void ShiftRegister::load(RegisterCells cells) {
    cells_ = std::move(cells);
    first_ = 0;
}

void ShiftRegister::shift(bool tdi) {
    if (cells_.empty()) return;
    cells_[first_] = tdi;
    first_ = first_ + 1 == cells_.size() ? 0 : first_ + 1;
}

RegisterCells ShiftRegister::cells() const {
    RegisterCells list(cells_);
    std::rotate(list.begin(), list.begin() + static_cast<std::ptrdiff_t>(first_), list.end());
    return list;
}

void TapChip::clock(bool tms, bool tdi) {
    if (state_ == TapState::shiftdr || state_ == TapState::shiftir) shift_.shift(tdi);
    state_ = next(state_, tms);
    arrive();
}

bool TapChip::tdo() const {
    const bool shifting = state_ == TapState::shiftdr || state_ == TapState::shiftir;
    return !shifting || shift_.out();
}

void TapChip::elapse(std::int64_t microseconds) {
    if (state_ == TapState::runtestidle) idle(instruction_, microseconds);
}

void TapChip::poweroff() {
    state_ = TapState::testlogicreset;
    instruction_ = resetinstruction();
    reset();
}

void TapChip::arrive() {
    switch (state_) {
        case TapState::testlogicreset:
            return poweroff();
        case TapState::capturedr:
            return shift_.load(capture(instruction_));
        case TapState::updatedr:
            return update(instruction_, shift_.cells());
        case TapState::captureir: {
            RegisterCells cells(instructionlength());
            cells[0] = true;  // the lowest two bits of a captured instruction are 01
            return shift_.load(std::move(cells));
        }
        case TapState::updateir:
            return updateinstruction();
        default:
            return;
    }
}

void TapChip::updateinstruction() {
    const RegisterCells cells = shift_.cells();
    instruction_ = 0;
    for (std::size_t i = 0; i < cells.size(); ++i)
        if (cells[i]) instruction_ |= std::uint32_t{1} << i;
    enter(instruction_);
}

}  // namespace keld2::sim
