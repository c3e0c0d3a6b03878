// Chips that are there for the sake of the programmer's tests.
#pragma once

#include "sim/chip.h"
#include "sim/listengine.h"

namespace keld2::test {

// Answers each sample of register 1 with the next number.
class CountingChip final : public sim::Chip {
  public:
    std::uint8_t registerread(const sim::Socket&, std::uint8_t reg, std::uint8_t idle) override {
        return reg == 1 ? ++count_ : idle;
    }

  private:
    std::uint8_t count_ = 0;
};

// A shift register of 16 cells between TDI and TDO, which counts its edges and looks at TMS.
class ShiftChip final : public sim::Chip {
  public:
    explicit ShiftChip(const sim::JtagLines& lines) : lines_(lines) {}

    void registerwritten(const sim::Socket& socket, std::uint8_t) override {
        const bool tck = level(socket, lines_.tck);
        if (tck && !tck_) clock(level(socket, lines_.tdi), level(socket, lines_.tms));
        tck_ = tck;
    }
    std::uint8_t registerread(const sim::Socket&, std::uint8_t reg, std::uint8_t idle) override {
        if (reg != lines_.tdo.reg) return idle;
        return static_cast<std::uint8_t>((idle & ~lines_.tdo.bit) | (tdo() ? lines_.tdo.bit : 0));
    }
    std::optional<std::uint8_t> clock8(const sim::Socket& socket, std::uint8_t tdi) override {
        if (!fast) return {};
        std::uint8_t read = 0;
        for (int i = 0; i < 8; ++i) {
            if (tdo()) read = static_cast<std::uint8_t>(read | 1U << i);
            clock((tdi >> i & 1) != 0, level(socket, lines_.tms));
        }
        return read;
    }

    bool fast = false;           // takes eight pulses at once
    std::uint16_t cells = 0;     // the lowest next to TDO
    std::array<int, 2> edges{};  // with TMS low and high

  private:
    static bool level(const sim::Socket& socket, const sim::Line& line) {
        return (socket.registers[line.reg] & line.bit) != 0;
    }
    bool tdo() const { return (cells & 1) != 0; }
    void clock(bool tdi, bool tms) {
        cells = static_cast<std::uint16_t>(cells >> 1 | (tdi ? 0x8000 : 0));
        ++edges[tms ? 1 : 0];
    }

    const sim::JtagLines lines_;
    bool tck_ = false;
};

}  // namespace keld2::test
