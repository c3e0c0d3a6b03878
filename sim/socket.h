// Socket: what lies at the pins of the programmer's socket, as a chip in it sees it.
#pragma once

#include <array>
#include <cstdint>

namespace keld2::sim {

inline constexpr std::uint64_t microsecond = 1000;  // of the virtual time, which is in ns
inline constexpr std::uint64_t millisecond = 1000 * microsecond;

// Levels of an undriven line: the socket pulls up.
inline constexpr std::uint8_t pulledup = 255;

// The lines of the parallel bus as the last cycle left them. Control bits are low-active strobes.
struct BusLines {
    std::int32_t address = 0;
    std::uint8_t data = pulledup;
    std::uint8_t control = 255;
    std::uint8_t direction = 255;  // of the data lines: 0 the programmer drives, 255 it listens
    std::uint8_t mode = 0;

    bool high(std::uint8_t controlbit) const { return (control & controlbit) != 0; }
    // The data lines as the chip sees them.
    std::uint8_t driven() const {
        return static_cast<std::uint8_t>((data & ~direction) | direction);
    }
};

struct Socket {
    std::uint64_t now = 0;  // virtual time in ns, from the making of the programmer

    std::int32_t vcc = 0;                       // mV
    std::array<std::int32_t, 2> vpp{};          // mV, by supply
    std::array<bool, 256> gndpins{};            // switched to ground; pin 0 is none
    std::array<bool, 256> vccpins{};            // switched to the VCC supply
    std::array<bool, 256> vpppins{};            // switched to VPP supply 0
    std::array<std::uint8_t, 256> registers{};  // of the pin driver, as last written
    BusLines bus;

    std::int32_t vccat(std::uint8_t pin) const { return vccpins[pin] ? vcc : 0; }     // mV
    std::int32_t vppat(std::uint8_t pin) const { return vpppins[pin] ? vpp[0] : 0; }  // mV
};

}  // namespace keld2::sim
