#include "sim/jtagchip.h"

#include <string>
#include <utility>

namespace keld2::sim {

JtagSocketing readsocketing(SpecReader& spec) {
    const auto mode = static_cast<std::uint8_t>(spec.integer("wiring", 0, 255));
    const JtagLines* lines = jtaglines(mode);
    if (lines == nullptr)
        spec.refuse("wiring", "is " + std::to_string(mode) + ", which has no JTAG lines");
    return {.lines = *lines, .supplies = spec.supplies()};
}

JtagChip::JtagChip(JtagSocketing socketing, std::unique_ptr<TapChip> tap)
    : socketing_(std::move(socketing)), tap_(std::move(tap)) {}

void JtagChip::supplieschanged(const Socket& socket) {
    catchup(socket);
    powered_ = socketing_.supplies.powered(socket);
    if (!powered_) tap_->poweroff();
}

void JtagChip::registerwritten(const Socket& socket, std::uint8_t reg) {
    if (reg != socketing_.lines.tck.reg) return;
    const bool high = level(socket, socketing_.lines.tck);
    const bool was = std::exchange(tck_, high);
    if (!high || was || !powered_) return;
    catchup(socket);
    tap_->clock(level(socket, socketing_.lines.tms), level(socket, socketing_.lines.tdi));
}

std::uint8_t JtagChip::registerread(const Socket&, std::uint8_t reg, std::uint8_t idle) {
    const Line tdo = socketing_.lines.tdo;
    if (!powered_ || reg != tdo.reg) return idle;
    return static_cast<std::uint8_t>(tap_->tdo() ? idle | tdo.bit : idle & ~tdo.bit);
}

std::optional<std::uint8_t> JtagChip::clock8(const Socket& socket, std::uint8_t tdi) {
    if (!powered_) return std::nullopt;
    catchup(socket);
    const bool tms = level(socket, socketing_.lines.tms);
    unsigned tdo = 0;
    for (int i = 0; i < 8; ++i) {
        if (tap_->tdo()) tdo |= 1U << i;
        tap_->clock(tms, (tdi >> i & 1) != 0);
    }
    return static_cast<std::uint8_t>(tdo);
}

// Time that has passed since the last look counts for the state in which the chip was left.
void JtagChip::catchup(const Socket& socket) {
    const std::uint64_t passed = (socket.now - caughtup_) / microsecond;
    caughtup_ += passed * microsecond;
    if (passed > 0 && powered_) tap_->elapse(static_cast<std::int64_t>(passed));
}

}  // namespace keld2::sim
