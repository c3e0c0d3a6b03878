// ListEngine: what the programmer's firmware does with the register numbers that name a shift.
//
// A shift is eight pulses on TCK, carried out on the registers in which the wiring has its lines.
// The firmware knows them from the parameter record: [0] register of TCK, [2] its bit, [4] mask of
// TDO, [5] bit of TDI, [9] register of TDO (frame bytes 4, 6, 8, 9, 13). Where TDI lies, and TDO
// on the wirings that share the last byte between both, follows from the wiring that these name.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "sim/board.h"

namespace keld2::sim {

// Register numbers that name a shift of eight bits.
namespace shift {
inline constexpr std::uint8_t first = 142;
inline constexpr std::uint8_t clock8 = 142;
inline constexpr std::uint8_t in8 = 143;  // one read-back byte
inline constexpr std::uint8_t out8 = 144;
inline constexpr std::uint8_t out8b = 146;
inline constexpr std::uint8_t in8b = 147;  // one read-back byte
inline constexpr std::uint8_t last = 147;
}  // namespace shift

// A line of the pin driver: register and bit mask in it.
struct Line {
    std::uint8_t reg = 0;
    std::uint8_t bit = 0;
};

// How the JTAG lines of a socket wiring lie.
struct JtagLines {
    Line tms;
    Line tck;
    Line tdi;
    Line tdo;
};

// The wiring of a family byte (41 to 43, 50, 80 to 95); nullptr for others.
const JtagLines* jtaglines(std::uint8_t family);

inline constexpr std::size_t recordlength = 11;  // frame bytes 4 to 14

// The wiring that a parameter record names; nullptr when it names none of the known ones.
const JtagLines* jtaglines(std::span<const std::uint8_t, recordlength> record);

class ListEngine {
  public:
    explicit ListEngine(Board& board) : board_(board) {}

    void setrecord(std::span<const std::uint8_t, recordlength> record);
    void setmode(std::uint8_t mode) { mode_ = mode; }  // byte 1 of a frame of kind 13
    std::uint8_t mode() const { return mode_; }

    // Carries out a shift code, first to last. Answers the read-back byte of those that read. A
    // code without a meaning does nothing.
    std::optional<std::uint8_t> run(std::uint8_t code, std::uint8_t value);

  private:
    struct Lines {
        Line tck;
        Line tdi;
        Line tdo;
    };

    // Eight pulses with TDI as given, or left alone; answers TDO before each, first in bit 0.
    std::uint8_t pulses(std::optional<std::uint8_t> tdi);
    std::uint8_t pulsesonebyone(std::optional<std::uint8_t> tdi);
    bool level(const Line& line) const;
    void drive(const Line& line, bool high);

    Board& board_;
    Lines lines_{};
    std::uint8_t mode_ = 0;
};

}  // namespace keld2::sim
