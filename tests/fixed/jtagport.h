// JtagPort: the pin driver's side of a JTAG socket. Register writes move the four lines of a
// wiring, reads see TDO, and the shift codes of the list engine clock eight bits at once.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "sim/tapchip.h"

namespace keld2::testing {

// A line: one bit of a pin-driver register.
struct LinePlace {
    std::uint8_t reg = 0;
    std::uint8_t bit = 0;
};

struct JtagWiring {
    LinePlace tms, tck, tdi, tdo;
};

// The wiring that a family byte stands for; none for other bytes.
std::optional<JtagWiring> jtagwiring(std::uint8_t family);

// Which end of a byte the list engine shifts first, by its mode byte.
enum class ListMode : std::uint8_t { off = 0, fixedlogic = 10, run = 42 };

class JtagPort {
  public:
    // The chip must outlive the port.
    JtagPort(const JtagWiring& wiring, sim::TapChip& chip) : wiring_(wiring), chip_(chip) {}

    // Whether a register number names a shift code instead of a register.
    static bool isshiftcode(std::uint8_t reg);

    void write(std::int32_t value, std::uint8_t reg);
    std::uint8_t read(std::uint8_t reg) const;
    // Carries a shift code out. The byte that it answers, for the codes that read.
    std::optional<std::uint8_t> shift(std::uint8_t code, std::uint8_t value, ListMode mode);

  private:
    bool level(LinePlace line) const { return (registers_[line.reg] & line.bit) != 0; }
    void set(LinePlace line, bool level);
    bool pulse();  // one TCK pulse; answers TDO before it
    std::uint8_t shiftin(bool highfirst);
    void shiftout(std::uint8_t value, bool highfirst);

    const JtagWiring wiring_;
    sim::TapChip& chip_;
    std::array<std::uint8_t, 256> registers_{};
};

}  // namespace keld2::testing
