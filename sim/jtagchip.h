// JtagChip: a chip behind a test access port in the socket. It turns the pin-driver registers of a
// wiring into the four lines, and the socket's clock into the chip's time.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "sim/chip.h"
#include "sim/chipspec.h"
#include "sim/listengine.h"
#include "sim/supplyneeds.h"
#include "sim/tapchip.h"

namespace keld2::sim {

struct JtagSocketing {
    JtagLines lines;
    SupplyNeeds supplies;
};

// Keys: wiring (a mode byte that stands for it) and those of SpecReader::supplies.
JtagSocketing readsocketing(SpecReader& spec);

class JtagChip final : public Chip {
  public:
    JtagChip(JtagSocketing socketing, std::unique_ptr<TapChip> tap);

    void supplieschanged(const Socket& socket) override;
    void registerwritten(const Socket& socket, std::uint8_t reg) override;
    std::uint8_t registerread(const Socket& socket, std::uint8_t reg, std::uint8_t idle) override;
    std::optional<std::uint8_t> clock8(const Socket& socket, std::uint8_t tdi) override;
    std::vector<StateSection> state() override { return tap_->state(); }

    TapChip& tap() { return *tap_; }

  private:
    static bool level(const Socket& socket, const Line& line) {
        return (socket.registers[line.reg] & line.bit) != 0;
    }
    void catchup(const Socket& socket);

    JtagSocketing socketing_;
    std::unique_ptr<TapChip> tap_;
    bool powered_ = false;
    bool tck_ = false;            // as last seen
    std::uint64_t caughtup_ = 0;  // the chip's time, in ns of the socket's clock
};

}  // namespace keld2::sim
