// TapChip: a chip behind a test access port, as its four lines see it.
//
// The base moves the state machine and shifts; a chip gives the registers and what its
// instructions do. Bit 0 of a register is the first out on TDO and the first in from TDI.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "sim/chip.h"
#include "sim/tap.h"

namespace keld2::sim {

using RegisterCells = std::vector<bool>;

// A register of any length; a shift costs the same for all.
class ShiftRegister {
  public:
    void load(RegisterCells cells);
    bool out() const { return cells_.empty() || cells_[first_]; }  // the cell next to TDO
    void shift(bool tdi);
    RegisterCells cells() const;  // from the cell next to TDO on

  private:
    RegisterCells cells_;
    std::size_t first_ = 0;
};

class TapChip {
  public:
    virtual ~TapChip() = default;

    void clock(bool tms, bool tdi);  // a rising edge of TCK
    // The level that the chip presents before the next edge; high when it does not drive.
    bool tdo() const;
    void elapse(std::int64_t microseconds);  // time passes while TCK rests
    void poweroff();                         // all but the non-volatile cells is lost

    virtual std::vector<StateSection> state() { return {}; }  // as Chip::state

    std::uint32_t instruction() const { return instruction_; }

  private:
    virtual std::size_t instructionlength() const = 0;             // bits
    virtual std::uint32_t resetinstruction() const = 0;            // in force after a reset
    virtual RegisterCells capture(std::uint32_t instruction) = 0;  // the register in Capture-DR
    virtual void update(std::uint32_t instruction, const RegisterCells& cells) = 0;
    virtual void enter(std::uint32_t instruction) = 0;  // in Update-IR
    virtual void reset() = 0;                           // in Test-Logic-Reset
    // Time in Run-Test/Idle, without an edge between.
    virtual void idle(std::uint32_t instruction, std::int64_t microseconds) = 0;

    void arrive();
    void updateinstruction();

    TapState state_ = TapState::testlogicreset;
    std::uint32_t instruction_ = ~std::uint32_t{0};
    ShiftRegister shift_;
};

}  // namespace keld2::sim
