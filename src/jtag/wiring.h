// How each JTAG family is wired to the socket, and which codes shift for it: the tables.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace keld2 {

// Register numbers of qregwrite that name an operation of the programmer on eight bits at once.
namespace shiftcode {
inline constexpr std::uint8_t clock8 = 142;      // eight TCK pulses, TMS and TDI unchanged
inline constexpr std::uint8_t shiftin8 = 143;    // eight pulses; one read-back byte of TDO bits
inline constexpr std::uint8_t shiftout8 = 144;   // eight pulses that drive a byte on TDI
inline constexpr std::uint8_t shiftout8b = 146;  // the same for the wirings that use it
inline constexpr std::uint8_t shiftin8b = 147;   // the same as shiftin8 for those wirings
inline constexpr std::int32_t shiftinvalue = 1;  // the value passed with shiftin8 and shiftin8b
inline constexpr std::int32_t clock8value = 0;
}  // namespace shiftcode

// A pin-driver register with bits in it.
struct RegisterBits {
    std::uint8_t reg = 0;
    std::uint8_t bits = 0;
};

// Where the four JTAG lines lie. A register that holds several lines is always written whole:
// its fixed level, the family's extra bit and the last level of each of its lines.
struct Wiring {
    RegisterBits tms;
    RegisterBits tck;
    RegisterBits tdi;
    RegisterBits tdo;                     // bits: the mask of TDO in a sampled register
    std::array<RegisterBits, 2> fixed{};  // levels that every write of a register carries
    std::optional<std::uint8_t> extrareg = std::nullopt;  // the register that carries the extra bit
    std::optional<RegisterBits> refresh =
        std::nullopt;  // what pinrefresh writes beside lines and extra bit
};

// How a family carries out a RUNTEST statement; see jtag/runtest.h.
enum class RuntestKind { runtest, runtest1, runtest2, runtest3 };

struct JtagFamily {
    std::uint8_t family = 0;  // prgmode[0]
    Wiring wiring;
    std::uint8_t extrabit = 0;
    std::uint8_t drivecode = 0;  // shifts out eight bits of a data register
    std::uint8_t readcode = 0;   // shifts in eight bits of a data register
    std::uint8_t byteclock = 0;  // eight clocks of a RUNTEST; 0: the family has none
    RuntestKind runtest = RuntestKind::runtest;
    bool pausewalk = false;        // each shift is entered by way of Pause
    bool sirtoidle = false;        // a SIR ends in Run-Test/Idle, with a pause
    bool runtestaddspwte = false;  // a RUNTEST with seconds adds pwte[0] / 100 long ticks
};

extern const std::array<JtagFamily, 20> jtagfamilies;

// The row of a family byte; nullptr outside the table.
const JtagFamily* findjtagfamily(std::uint8_t family);

}  // namespace keld2
