// SupplyNeeds: the pins and levels at which a chip in the socket works.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "sim/socket.h"

namespace keld2::sim {

struct SupplyNeeds {
    std::vector<std::uint8_t> gndpins;  // all of them on ground
    std::vector<std::uint8_t> vccpins;  // all of them on VCC
    std::int32_t vccmin = 0;            // mV
    std::int32_t vccmax = 0;            // mV
    std::uint8_t vpppin = 0;            // 0: the chip needs no VPP
    std::int32_t vppmin = 0;            // mV
    std::int32_t vppmax = 0;            // mV

    // Ground and VCC are where they have to be.
    bool powered(const Socket& socket) const {
        const auto grounded = [&](std::uint8_t pin) { return socket.gndpins[pin]; };
        const auto supplied = [&](std::uint8_t pin) {
            return socket.vccat(pin) >= vccmin && socket.vccat(pin) <= vccmax;
        };
        return std::ranges::all_of(gndpins, grounded) && std::ranges::all_of(vccpins, supplied);
    }
    // VPP is where it has to be.
    bool hasvpp(const Socket& socket) const {
        return vpppin == 0 || (socket.vppat(vpppin) >= vppmin && socket.vppat(vpppin) <= vppmax);
    }
};

}  // namespace keld2::sim
