#include "sim/board.h"

namespace keld2::sim {

Board::Board(std::unique_ptr<Chip> chip, bool nopower)
    : chip_(chip ? std::move(chip) : std::make_unique<Chip>()), nopower_(nopower) {}

void Board::setvcc(std::int32_t mv) {
    socket_.vcc = nopower_ ? 0 : mv;
    chip_->supplieschanged(socket_);
}

void Board::setvpp(std::int32_t mv, std::uint8_t channel) {
    if (channel < socket_.vpp.size()) socket_.vpp[channel] = mv;
    chip_->supplieschanged(socket_);
}

void Board::setpin(Supply supply, std::uint8_t pin, bool on) {
    if (pin == 0) return;
    auto& pins = supply == Supply::gnd   ? socket_.gndpins
                 : supply == Supply::vcc ? socket_.vccpins
                                         : socket_.vpppins;
    pins[pin] = on;
    chip_->supplieschanged(socket_);
}

void Board::powerdown() {
    const std::uint64_t now = socket_.now;
    socket_ = Socket{};
    socket_.now = now;
    chip_->supplieschanged(socket_);
}

}  // namespace keld2::sim
