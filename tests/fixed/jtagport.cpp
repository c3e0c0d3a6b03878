#include "fixed/jtagport.h"

namespace keld2::testing {

namespace {

constexpr std::uint8_t clock8 = 142;
constexpr std::uint8_t shiftin8 = 143;
constexpr std::uint8_t shiftout8 = 144;
constexpr std::uint8_t shiftout8b = 146;
constexpr std::uint8_t shiftin8b = 147;

constexpr std::int64_t pulsetime = 1;  // µs of one TCK pulse

struct WiringRow {
    std::uint8_t family;
    JtagWiring wiring;
};

constexpr JtagWiring alone{.tms = {0, 4}, .tck = {0, 16}, .tdi = {0, 1}, .tdo = {0, 2}};
constexpr JtagWiring split{.tms = {2, 64}, .tck = {2, 2}, .tdi = {6, 1}, .tdo = {6, 128}};
constexpr JtagWiring second{.tms = {2, 2}, .tck = {2, 4}, .tdi = {2, 1}, .tdo = {2, 128}};
constexpr JtagWiring third{.tms = {4, 4}, .tck = {4, 32}, .tdi = {6, 1}, .tdo = {6, 128}};

constexpr std::array wirings{
    WiringRow{41, alone},
    WiringRow{42, split},
    WiringRow{43, {.tms = {0, 16}, .tck = {6, 4}, .tdi = {10, 1}, .tdo = {4, 64}}},
    WiringRow{50, alone},
    WiringRow{80, alone},
    WiringRow{81, {.tms = {4, 32}, .tck = {4, 4}, .tdi = {6, 8}, .tdo = {6, 16}}},
    WiringRow{82, {.tms = {8, 4}, .tck = {4, 1}, .tdi = {4, 16}, .tdo = {10, 2}}},
    WiringRow{83, alone},
    WiringRow{84, alone},
    WiringRow{85, split},
    WiringRow{86, {.tms = {6, 32}, .tck = {4, 64}, .tdi = {4, 8}, .tdo = {0, 32}}},
    WiringRow{87, alone},
    WiringRow{88, third},
    WiringRow{89, alone},
    WiringRow{90, alone},
    WiringRow{91, second},
    WiringRow{92, third},
    WiringRow{93, alone},
    WiringRow{94, alone},
    WiringRow{95, second},
};

}  // namespace

std::optional<JtagWiring> jtagwiring(std::uint8_t family) {
    for (const WiringRow& row : wirings)
        if (row.family == family) return row.wiring;
    return std::nullopt;
}

bool JtagPort::isshiftcode(std::uint8_t reg) { return reg >= clock8; }

void JtagPort::write(std::int32_t value, std::uint8_t reg) {
    const bool before = level(wiring_.tck);
    registers_[reg] = static_cast<std::uint8_t>(value);
    if (level(wiring_.tck) && !before) {
        chip_.clock(level(wiring_.tms), level(wiring_.tdi));
        chip_.elapse(pulsetime);
    }
}

std::uint8_t JtagPort::read(std::uint8_t reg) const {
    const std::uint8_t written = registers_[reg];
    if (reg != wiring_.tdo.reg) return written;
    const auto mask = static_cast<std::uint8_t>(~wiring_.tdo.bit);
    return static_cast<std::uint8_t>((written & mask) | (chip_.tdo() ? wiring_.tdo.bit : 0));
}

std::optional<std::uint8_t> JtagPort::shift(std::uint8_t code, std::uint8_t value, ListMode mode) {
    const bool fixedlogic = mode == ListMode::fixedlogic;
    switch (code) {
        case clock8:
            for (int i = 0; i < 8; ++i) pulse();
            return std::nullopt;
        case shiftin8:
        case shiftin8b:
            return shiftin(fixedlogic);
        case shiftout8:
            shiftout(value, false);
            return std::nullopt;
        case shiftout8b:
            shiftout(value, fixedlogic);
            return std::nullopt;
        default:
            return std::nullopt;
    }
}

void JtagPort::set(LinePlace line, bool level) {
    std::uint8_t& cell = registers_[line.reg];
    cell = static_cast<std::uint8_t>(level ? cell | line.bit : cell & ~line.bit);
}

bool JtagPort::pulse() {
    const bool tdo = chip_.tdo();
    chip_.clock(level(wiring_.tms), level(wiring_.tdi));
    chip_.elapse(pulsetime);
    return tdo;
}

std::uint8_t JtagPort::shiftin(bool highfirst) {
    unsigned byte = 0;
    for (int i = 0; i < 8; ++i)
        if (pulse()) byte |= 1U << (highfirst ? 7 - i : i);
    return static_cast<std::uint8_t>(byte);
}

void JtagPort::shiftout(std::uint8_t value, bool highfirst) {
    for (int i = 0; i < 8; ++i) {
        set(wiring_.tdi, (value >> (highfirst ? 7 - i : i) & 1) != 0);
        pulse();
    }
}

}  // namespace keld2::testing
