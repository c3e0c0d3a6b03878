// Board: the pin driver, the supplies and the parallel bus of the simulated programmer, with a chip
// in its socket. Everything acts at once and takes its time of the virtual clock.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "sim/chip.h"
#include "sim/socket.h"

namespace keld2::sim {

// What the steps of the pin driver and of the cable take, in ns.
namespace steptime {
inline constexpr std::uint64_t frame = 125 * microsecond;
inline constexpr std::uint64_t bulkbyte = 25;
inline constexpr std::uint64_t registeraccess = 250;
inline constexpr std::uint64_t buscycle = 250;
inline constexpr std::uint64_t tckpulse = 2 * registeraccess;
}  // namespace steptime

class Board {
  public:
    // chip: nullptr leaves the socket empty. nopower: VCC never reaches the socket.
    Board(std::unique_ptr<Chip> chip, bool nopower);

    const Socket& socket() const { return socket_; }
    Chip& chip() { return *chip_; }

    void setvcc(std::int32_t mv);
    void setvpp(std::int32_t mv, std::uint8_t channel);
    enum class Supply { gnd, vcc, vpp };
    void setpin(Supply supply, std::uint8_t pin, bool on);  // pin 0: none, nothing happens
    void powerdown();                                       // supplies, pins and drive off

    void writeregister(std::uint8_t reg, std::int32_t value) {
        socket_.now += steptime::registeraccess;
        socket_.registers[reg] = static_cast<std::uint8_t>(value);
        chip_->registerwritten(socket_, reg);
    }
    std::uint8_t readregister(std::uint8_t reg) {
        socket_.now += steptime::registeraccess;
        return chip_->registerread(socket_, reg, pulledup);
    }
    void movebus(std::int32_t address, std::uint8_t data, std::uint8_t control) {
        socket_.now += steptime::buscycle;
        socket_.bus.address = address;
        socket_.bus.data = data;
        socket_.bus.control = control;
        chip_->busmoved(socket_);
    }
    void turnbus(std::uint8_t direction, std::uint8_t mode) {
        socket_.now += steptime::buscycle;
        socket_.bus.direction = direction;
        socket_.bus.mode = mode;
        chip_->busmoved(socket_);
    }
    void pass(std::uint64_t ns) { socket_.now += ns; }
    // Negative counts take no time.
    void pass(std::int32_t count, std::uint64_t unit) {
        if (count > 0) socket_.now += static_cast<std::uint64_t>(count) * unit;
    }

    // Sets registers to what eight pulses that the chip has taken at once have left there.
    void leaveregister(std::uint8_t reg, std::uint8_t value) { socket_.registers[reg] = value; }

  private:
    Socket socket_;
    std::unique_ptr<Chip> chip_;
    bool nopower_;
};

}  // namespace keld2::sim
