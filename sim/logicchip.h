// LogicChip: an electrically erasable logic device that is programmed row by row behind a test
// access port.
//
// An erase makes all cells 1, a program pulse takes cells of one row to 0 and never back. Pulses
// are timed by the stay in Run-Test/Idle; one that is cut short does nothing but leave its mark in
// the status. All work on cells needs programming mode, which a reset or a loss of power leaves. A
// secured device reads as zeros and takes no program pulse until it is erased.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "sim/cells.h"
#include "sim/chipspec.h"
#include "sim/tapchip.h"

namespace keld2::sim {

struct LogicDevice {
    std::size_t rows = 0;
    std::size_t width = 0;    // cells of a row
    std::size_t padding = 0;  // bits of the data register behind those of the row, without effect
    std::size_t instructionbits = 8;
    std::uint32_t code = 0;            // device code; bit 0 is shifted first
    std::int64_t programtime = 5'000;  // µs
    std::int64_t erasetime = 100'000;  // µs
    std::int64_t securetime = 20'000;  // µs
};

// All ones is the bypass; so is every other number.
namespace logicinstruction {
inline constexpr std::uint32_t address = 0x01;     // register: the row that is worked on next
inline constexpr std::uint32_t erase = 0x03;       // a pulse
inline constexpr std::uint32_t secure = 0x09;      // a pulse
inline constexpr std::uint32_t enable = 0x15;      // programming mode on
inline constexpr std::uint32_t devicecode = 0x16;  // register
inline constexpr std::uint32_t disable = 0x1E;     // programming mode off
inline constexpr std::uint32_t program = 0x27;     // data register: a row, then a pulse
inline constexpr std::uint32_t read = 0x2A;        // data register: a row, the next one each time
inline constexpr std::uint32_t done = 0x2F;        // a pulse: marks the device as programmed
inline constexpr std::uint32_t status = 0x34;      // register
}  // namespace logicinstruction

inline constexpr std::size_t logicaddressbits = 16;
inline constexpr std::size_t logicstatusbits = 8;

// Bits of the status register.
namespace logicstatus {
inline constexpr std::size_t programming = 0;
inline constexpr std::size_t done = 1;
inline constexpr std::size_t secured = 2;
inline constexpr std::size_t shortpulse = 3;  // a pulse was cut short since programming mode began
}  // namespace logicstatus

class LogicChip final : public TapChip {
  public:
    // Erased. A stuck bit is bit 0 of the cell at its address.
    explicit LogicChip(const LogicDevice& device, const Faults& faults = {});

    std::vector<StateSection> state() override;

    bool cell(std::size_t address) const { return isset(cells_, address); }
    bool done() const { return !isset(marks_, donemark); }
    bool secured() const { return !isset(marks_, securemark); }

  private:
    static constexpr std::size_t donemark = 0;
    static constexpr std::size_t securemark = 1;

    std::size_t instructionlength() const override { return device_.instructionbits; }
    std::uint32_t resetinstruction() const override { return logicinstruction::devicecode; }
    RegisterCells capture(std::uint32_t instruction) override;
    void update(std::uint32_t instruction, const RegisterCells& cells) override;
    void enter(std::uint32_t instruction) override;
    void reset() override;
    void idle(std::uint32_t instruction, std::int64_t microseconds) override;

    RegisterCells statuscells() const;
    RegisterCells rowcells() const;
    RegisterCells emptyrow();
    void startpulse(bool wanted);
    void givepulse(std::uint32_t instruction);
    void programrow();
    std::int64_t pulsetime(std::uint32_t instruction) const;

    static bool isset(const Cells& cells, std::size_t address) {
        return (cells.read(address) & 1) != 0;
    }

    LogicDevice device_;
    // Non-volatile, a byte a bit: bit 0 of the byte.
    Cells cells_;  // row by row
    Cells marks_;  // done and secured, 0 when they are set
    // Lost with the power or in a reset.
    bool programming_ = false;
    bool pending_ = false;  // a pulse has been asked for and not been given yet
    bool shortpulse_ = false;
    bool loaded_ = false;    // a row for the address has been shifted in
    std::int64_t stay_ = 0;  // µs in Run-Test/Idle since the last update
    std::size_t address_ = 0;
    RegisterCells data_;  // what the next program pulse writes
};

// Keys: rows, width, padding (0 without it), instructionbits, code (32 bits), programtime,
// erasetime, securetime (in microseconds) and those of readsocketing.
std::unique_ptr<Chip> makelogicchip(SpecReader& spec, const Faults& faults);

}  // namespace keld2::sim
