// DebugPort: the way into a chip that a programmer takes which works by an algorithm image.
//
// Addresses are bytes of the chip's flash; beyond its end everything reads 255 and takes nothing.
// A protected chip shows and takes nothing until it has been erased as a whole.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace keld2::sim {

inline constexpr std::size_t armconfigurationcells = 11;
inline constexpr int nominalvcc = 100;  // percent

class DebugPort {
  public:
    virtual ~DebugPort() = default;

    virtual std::uint8_t maker() const = 0;
    virtual std::span<const std::uint8_t> code() const = 0;    // 1 byte or more
    virtual std::span<const std::uint8_t> serial() const = 0;  // 9 bytes, or none

    // vcc in percent of nominal.
    virtual std::uint8_t read(std::int64_t address, int vcc) const = 0;
    virtual void program(std::int64_t address, std::uint8_t value) = 0;
    virtual std::int64_t sector() const = 0;  // bytes that are erased together
    virtual void erasesector(std::int64_t address) = 0;

    virtual std::span<const std::uint8_t> configuration() const = 0;  // armconfigurationcells
    virtual void programcell(std::size_t index, std::uint8_t value) = 0;
    virtual bool secured() const = 0;
    virtual void secure() = 0;
    // The end of a whole erase: configuration cells and protection are erased as well.
    virtual void erasecells() = 0;
};

}  // namespace keld2::sim
