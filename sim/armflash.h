// ArmFlash: a simulated device with an ARM core, as far as a programmer has to do with it: its
// flash behind the debug port.
//
// Programming turns ones into zeros; only an erase brings ones back, a sector at a time. Beside
// the data stand configuration cells, a protection bit, a device code and, in some, a serial
// number.
//
// Keys of its description: bytes, sector (bytes), maker, code (one value or several) and, where
// it has one, serial (9 values).
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "sim/cells.h"
#include "sim/chip.h"
#include "sim/chipspec.h"
#include "sim/debugport.h"

namespace keld2::sim {

class ArmFlash final : public Chip, public DebugPort {
  public:
    // Throws RunFault when a key is missing or cannot be.
    ArmFlash(SpecReader& spec, const Faults& faults);

    std::vector<StateSection> state() override;
    DebugPort* debugport() override { return this; }

    std::uint8_t maker() const override { return maker_; }
    std::span<const std::uint8_t> code() const override { return code_; }
    std::span<const std::uint8_t> serial() const override { return serial_; }
    std::uint8_t read(std::int64_t address, int vcc) const override;
    void program(std::int64_t address, std::uint8_t value) override;
    std::int64_t sector() const override { return sector_; }
    void erasesector(std::int64_t address) override;
    std::span<const std::uint8_t> configuration() const override { return cells_; }
    void programcell(std::size_t index, std::uint8_t value) override;
    bool secured() const override { return protection_ != erased; }
    void secure() override { protection_ = 0; }
    void erasecells() override;

  private:
    Cells data_;
    std::int64_t sector_;
    std::uint8_t maker_;
    std::vector<std::uint8_t> code_;
    std::vector<std::uint8_t> serial_;
    std::array<std::uint8_t, armconfigurationcells> cells_;
    std::uint8_t protection_ = erased;
    std::vector<std::uint32_t> weak_;  // bytes that lose their zeros at low VCC
};

std::unique_ptr<Chip> makearmflash(SpecReader& spec, const Faults& faults);

}  // namespace keld2::sim
