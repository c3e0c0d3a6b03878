// FixedLogicChip: a fuse-array logic device with eight-bit instructions.
//
// Fuses are electrically erasable: an erase makes all of them 1, a program pulse takes 1 to 0 and
// never back. All pulses are timed by the stay in Run-Test/Idle; one that is cut short does
// nothing. Fuse instructions work in programming mode alone, which a reset or a loss of power
// leaves. A secured array reads as zeros and takes no program pulse until it is erased.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "sim/cells.h"
#include "sim/chip.h"
#include "sim/chipspec.h"
#include "sim/tapchip.h"

namespace keld2::sim {

struct FixedLogicDevice {
    std::size_t rows = 0;
    std::size_t width = 0;                 // fuses of a row
    std::array<std::uint8_t, 4> code{};    // device code, in the order in which it is read
    std::size_t preloadbits = 8;           // length of the preload register
    std::int64_t fetchtime = 100;          // µs, for a row to be read from the array
    std::int64_t programtime = 5'000;      // µs
    std::int64_t erasetime = 2'000'000;    // µs
    std::int64_t dischargetime = 100'000;  // µs, after an erase
    std::int64_t securetime = 20'000;      // µs
};

class FixedLogicChip final : public TapChip {
  public:
    // Erased. A stuck bit is bit 0 of the fuse at its address.
    explicit FixedLogicChip(const FixedLogicDevice& device, const Faults& faults = {});

    std::vector<StateSection> state() override;

    bool fuse(std::size_t address) const { return isset(fuses_, address); }
    void setfuse(std::size_t address, bool value) {
        fuses_.bytes()[address] = value ? erased : 254;
    }
    bool secured() const { return !isset(security_, 0); }

  private:
    std::size_t instructionlength() const override { return 8; }
    std::uint32_t resetinstruction() const override;
    RegisterCells capture(std::uint32_t instruction) override;
    void update(std::uint32_t instruction, const RegisterCells& cells) override;
    void enter(std::uint32_t instruction) override;
    void reset() override;
    void idle(std::uint32_t instruction, std::int64_t microseconds) override;

    RegisterCells codecells() const;
    RegisterCells usercodecells() const;
    void fetchrow();
    void programrow();
    void programusercode();
    void erase();
    bool readable() const { return !secured() && !charged_; }

    static bool isset(const Cells& cells, std::size_t address) {
        return (cells.read(address) & 1) != 0;
    }
    static void burn(Cells& cells, std::size_t first, const RegisterCells& data);

    FixedLogicDevice device_;
    // Non-volatile, a byte a bit: bit 0 of the byte.
    Cells fuses_;     // row by row
    Cells usercode_;  // the bit that is shifted first at 0
    Cells security_;  // one bit, 0 in a secured chip
    // Lost with the power or in a reset.
    bool programming_ = false;  // programming mode
    bool charged_ = false;      // the array is not discharged yet after an erase
    bool pending_ = false;      // a pulse has not been given yet
    std::int64_t stay_ = 0;     // µs in Run-Test/Idle since the last update
    std::size_t row_ = 0;       // of the next program pulse
    RegisterCells select_;      // one cell a row; row 0 is the one next to TDI
    RegisterCells data_;        // what the next program pulse writes
    RegisterCells fetched_;     // the row last read from the array
};

// Keys: rows, width, code (four bytes, in the order in which they are read), preload (bits),
// fetchtime, programtime, erasetime, dischargetime, securetime (in microseconds) and those of
// readsocketing.
std::unique_ptr<Chip> makefixedlogicchip(SpecReader& spec, const Faults& faults);

}  // namespace keld2::sim
