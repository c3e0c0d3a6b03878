// The parallel lines of the microcontroller families 22 and 23: control bytes, parking addresses
// and the high address bits that go with a chip's size.
#pragma once

#include <cstdint>

namespace keld2 {

// Control byte of a bus cycle; every strobe is low-active.
namespace buscontrol {
inline constexpr std::uint8_t idle = 255;
inline constexpr std::uint8_t enabled = 253;      // bit 1 low
inline constexpr std::uint8_t writestrobe = 252;  // bits 0 and 1 low
inline constexpr std::uint8_t readstrobe = 249;   // bits 1 and 2 low
}  // namespace buscontrol

// Direction of the data lines, as busconfig takes it.
namespace busdirection {
inline constexpr std::uint8_t out = 0;
inline constexpr std::uint8_t in = 255;
}  // namespace busdirection

// Where the address lines are parked. Three different places, each as its sequence needs it.
namespace parking {
inline constexpr std::int32_t startup = 0xFFFFFF;
inline constexpr std::int32_t read = 0x1FFFFFF;
inline constexpr std::int32_t write = 0x1FFFFF;
}  // namespace parking

// High address bits of every command cycle of a program or erase.
inline constexpr std::int32_t commandbase = 0x140000;
inline constexpr std::uint8_t datareadregister = 0;  // samples the data lines

// Data bytes that the chips take as commands.
namespace buscommand {
inline constexpr std::uint8_t read = 0;
inline constexpr std::uint8_t erase = 32;  // sent twice
inline constexpr std::uint8_t program = 64;
inline constexpr std::uint8_t programcheck = 192;
inline constexpr std::uint8_t reset = 255;
}  // namespace buscommand

inline constexpr std::uint8_t erasedonebit = 0x80;  // of the polled status byte

}  // namespace keld2
