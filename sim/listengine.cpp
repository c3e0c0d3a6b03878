#include "sim/listengine.h"

#include <algorithm>

namespace keld2::sim {

namespace {

struct WiringRow {
    JtagLines wiring;
    std::array<std::uint8_t, 9> families;  // 0 behind the last
};

constexpr std::array wirings{
    WiringRow{.wiring = {.tms = {0, 4}, .tck = {0, 16}, .tdi = {0, 1}, .tdo = {0, 2}},
              .families = {80, 83, 84, 87, 89, 90, 93, 94, 41}},
    WiringRow{.wiring = {.tms = {0, 4}, .tck = {0, 16}, .tdi = {0, 1}, .tdo = {0, 2}},
              .families = {50}},
    WiringRow{.wiring = {.tms = {4, 32}, .tck = {4, 4}, .tdi = {6, 8}, .tdo = {6, 16}},
              .families = {81}},
    WiringRow{.wiring = {.tms = {8, 4}, .tck = {4, 1}, .tdi = {4, 16}, .tdo = {10, 2}},
              .families = {82}},
    WiringRow{.wiring = {.tms = {2, 64}, .tck = {2, 2}, .tdi = {6, 1}, .tdo = {6, 128}},
              .families = {85, 42}},
    WiringRow{.wiring = {.tms = {6, 32}, .tck = {4, 64}, .tdi = {4, 8}, .tdo = {0, 32}},
              .families = {86}},
    WiringRow{.wiring = {.tms = {4, 4}, .tck = {4, 32}, .tdi = {6, 1}, .tdo = {6, 128}},
              .families = {88, 92}},
    WiringRow{.wiring = {.tms = {2, 2}, .tck = {2, 4}, .tdi = {2, 1}, .tdo = {2, 128}},
              .families = {91, 95}},
    WiringRow{.wiring = {.tms = {0, 16}, .tck = {6, 4}, .tdi = {10, 1}, .tdo = {4, 64}},
              .families = {43}},
};

constexpr std::uint8_t fixedmode = 10;  // the mode byte of the fixed logic family

std::uint8_t reversed(std::uint8_t b) {
    std::uint8_t r = 0;
    for (int i = 0; i < 8; ++i) r = static_cast<std::uint8_t>(r << 1 | ((b >> i) & 1));
    return r;
}

}  // namespace

const JtagLines* jtaglines(std::uint8_t family) {
    if (family == 0) return nullptr;
    for (const WiringRow& row : wirings)
        if (std::ranges::find(row.families, family) != row.families.end()) return &row.wiring;
    return nullptr;
}

const JtagLines* jtaglines(std::span<const std::uint8_t, recordlength> record) {
    for (const auto& [w, families] : wirings)
        if (w.tck.reg == record[0] && w.tck.bit == record[2] && w.tdi.bit == record[5] &&
            w.tdo.bit == record[4])
            return &w;
    return nullptr;
}

void ListEngine::setrecord(std::span<const std::uint8_t, recordlength> record) {
    const Line tck{.reg = record[0], .bit = record[2]};
    lines_ = {.tck = tck,
              .tdi = {.reg = tck.reg, .bit = record[5]},
              .tdo = {.reg = record[9], .bit = record[4]}};
    if (const JtagLines* known = jtaglines(record))
        lines_ = {.tck = known->tck, .tdi = known->tdi, .tdo = known->tdo};
}

std::optional<std::uint8_t> ListEngine::run(std::uint8_t code, std::uint8_t value) {
    const bool fixed = mode_ == fixedmode;
    switch (code) {
        case shift::clock8:
            pulses({});
            return {};
        case shift::in8:
        case shift::in8b: {
            const std::uint8_t read = pulses({});
            return fixed ? reversed(read) : read;
        }
        case shift::out8:
            pulses(value);
            return {};
        case shift::out8b:
            pulses(fixed ? reversed(value) : value);
            return {};
        default:
            return {};
    }
}

std::uint8_t ListEngine::pulses(std::optional<std::uint8_t> tdi) {
    const std::uint8_t levels = tdi.value_or(level(lines_.tdi) ? 0xFF : 0);
    if (!level(lines_.tck)) {
        if (const auto read = board_.chip().clock8(board_.socket(), levels)) {
            const auto& registers = board_.socket().registers;
            const Line& line = lines_.tdi;
            const std::uint8_t last = (levels & 0x80) != 0 ? line.bit : 0;
            board_.leaveregister(
                line.reg, static_cast<std::uint8_t>((registers[line.reg] & ~line.bit) | last));
            board_.pass(8 * steptime::tckpulse);
            return *read;
        }
    }
    return pulsesonebyone(tdi);
}

std::uint8_t ListEngine::pulsesonebyone(std::optional<std::uint8_t> tdi) {
    std::uint8_t read = 0;
    for (int i = 0; i < 8; ++i) {
        if (tdi) drive(lines_.tdi, (*tdi >> i & 1) != 0);
        if ((board_.readregister(lines_.tdo.reg) & lines_.tdo.bit) != 0)
            read = static_cast<std::uint8_t>(read | 1U << i);
        drive(lines_.tck, true);
        drive(lines_.tck, false);
    }
    return read;
}

bool ListEngine::level(const Line& line) const {
    return (board_.socket().registers[line.reg] & line.bit) != 0;
}

void ListEngine::drive(const Line& line, bool high) {
    const std::uint8_t others =
        static_cast<std::uint8_t>(board_.socket().registers[line.reg] & ~line.bit);
    board_.writeregister(line.reg, high ? others | line.bit : others);
}

}  // namespace keld2::sim
