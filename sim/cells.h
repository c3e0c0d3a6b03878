// Cells: non-volatile memory of a chip. Writing only clears bits; an erase sets all of them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "sim/faults.h"

namespace keld2::sim {

inline constexpr std::uint8_t erased = 255;

class Cells {
  public:
    // bytes of erased memory, with bits that read a fixed level.
    explicit Cells(std::size_t bytes, std::vector<StuckBit> stuck = {})
        : bytes_(bytes, erased), stuck_(std::move(stuck)) {}

    std::size_t size() const { return bytes_.size(); }

    // The byte at address as the chip reads it; 255 where there is no cell.
    std::uint8_t read(std::size_t address) const {
        if (address >= bytes_.size()) return erased;
        std::uint8_t value = bytes_[address];
        for (const StuckBit& s : stuck_)
            if (s.address == address) value = withlevel(value, s);
        return value;
    }
    // Clears the bits that are 0 in value; nothing where there is no cell.
    void program(std::size_t address, std::uint8_t value) {
        if (address < bytes_.size()) bytes_[address] &= value;
    }
    void erase() { std::ranges::fill(bytes_, erased); }

    std::span<std::uint8_t> bytes() { return bytes_; }

  private:
    static std::uint8_t withlevel(std::uint8_t value, const StuckBit& s) {
        const auto mask = static_cast<std::uint8_t>(1U << s.bit);
        return static_cast<std::uint8_t>(s.level ? value | mask : value & ~mask);
    }

    std::vector<std::uint8_t> bytes_;
    std::vector<StuckBit> stuck_;
};

}  // namespace keld2::sim
