// Chip: what sits in the socket of the simulated programmer.
//
// A chip is a model of physics: it only knows the pins, and time. It has no calls of its own; what
// takes time it finds done (or not yet done) when it is touched again, by the socket's clock.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "sim/socket.h"

namespace keld2::sim {

// A part of what a chip keeps without power.
struct StateSection {
    std::string_view name;  // letters
    std::span<std::uint8_t> bytes;
};

class DebugPort;

class Chip {
  public:
    virtual ~Chip() = default;

    // A supply or a supply pin has changed, or all have (with a power-down).
    virtual void supplieschanged(const Socket&) {}
    // A pin-driver register has been written; its value stands in the socket.
    virtual void registerwritten(const Socket&, std::uint8_t /*reg*/) {}
    // What a sample of register reg sees. idle: the levels of all lines that the chip leaves alone.
    virtual std::uint8_t registerread(const Socket&, std::uint8_t /*reg*/, std::uint8_t idle) {
        return idle;
    }
    // The lines of the parallel bus have moved.
    virtual void busmoved(const Socket&) {}

    // Eight pulses of TCK at once with these levels of TDI (first one in bit 0) and TMS as it
    // stands, starting and ending with TCK low. Answers the levels of TDO before each pulse, first
    // one in bit 0. None: the chip wants to see each line move.
    virtual std::optional<std::uint8_t> clock8(const Socket&, std::uint8_t /*tdi*/) { return {}; }

    // What the chip keeps without power, always the same sections in the same order.
    virtual std::vector<StateSection> state() { return {}; }
    // The way in for a programmer that works by an algorithm image; nullptr: there is none.
    virtual DebugPort* debugport() { return nullptr; }
};

}  // namespace keld2::sim
