// The fixed logic family's tables: its instructions, its chips' geometry, and what its three
// wirings do differently.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace keld2 {

// Instructions of eight bits, shifted bit 0 first.
namespace fixedinstruction {
inline constexpr std::uint8_t selectrow = 1;
inline constexpr std::uint8_t erase = 3;
inline constexpr std::uint8_t secure = 9;
inline constexpr std::uint8_t enderase = 20;
inline constexpr std::uint8_t enter = 21;
inline constexpr std::uint8_t readid = 22;
inline constexpr std::uint8_t readusercode = 23;
inline constexpr std::uint8_t programusercode = 26;
inline constexpr std::uint8_t preload = 28;
inline constexpr std::uint8_t clearaddress = 33;
inline constexpr std::uint8_t programrows = 39;
inline constexpr std::uint8_t readrow = 42;
}  // namespace fixedinstruction

inline constexpr std::int32_t instructionbits = 8;
inline constexpr std::int32_t usercodebits = 32;

struct FixedGeometry {
    std::int32_t fuses = 0;  // tlength[0]
    std::int32_t width = 0;  // bits of a row
    std::int32_t rows = 0;

    std::int32_t wholebytes() const { return width / 8; }
    std::int32_t tailbits() const { return width % 8; }
    // Bytes that a row takes in the read-back: whole bytes, then one raw byte for each tail bit.
    std::int32_t stride() const { return wholebytes() + tailbits(); }
    std::int32_t cells() const { return width * rows; }
};

inline constexpr std::array fixedgeometries{
    FixedGeometry{.fuses = 17200, .width = 172, .rows = 100},
    FixedGeometry{.fuses = 33440, .width = 352, .rows = 95},
    FixedGeometry{.fuses = 35600, .width = 356, .rows = 100},
};

// A foreign fuse count has no rows.
constexpr FixedGeometry findgeometry(std::int32_t fuses) {
    for (const FixedGeometry& row : fixedgeometries)
        if (row.fuses == fuses) return row;
    return {.fuses = fuses};
}

struct FixedFamily {
    std::uint8_t family = 0;                 // prgmode[0]
    bool firstfusehigh = false;              // a driven byte's first fuse is bit 7
    bool shiftszeros = true;                 // the preload has whole zero bytes
    std::optional<std::uint8_t> readtdo;     // goes into the record's TDO register for a read
    std::optional<std::uint8_t> programtdo;  // and for a program
    int waitsafterid = 0;                    // of 500 short ticks, at the end of the start-up
};

inline constexpr std::array fixedfamilies{
    FixedFamily{.family = 41, .readtdo = {}, .programtdo = {}, .waitsafterid = 2},
    FixedFamily{.family = 42, .firstfusehigh = true, .readtdo = {}, .programtdo = {}},
    FixedFamily{
        .family = 43, .firstfusehigh = true, .shiftszeros = false, .readtdo = 4, .programtdo = 10},
};

constexpr const FixedFamily* findfixedfamily(std::uint8_t family) {
    for (const FixedFamily& row : fixedfamilies)
        if (row.family == family) return &row;
    return nullptr;
}

// Device codes that pass, in the order in which their bytes are read.
using DeviceCode = std::array<std::uint8_t, 4>;
inline constexpr std::array<DeviceCode, 4> acceptedcodes{{{0x43, 0xD0, 0x80, 0x01},
                                                          {0x43, 0x90, 0x80, 0x01},
                                                          {0x43, 0x50, 0x80, 0x01},
                                                          {0x43, 0x40, 0x80, 0x11}}};

// The eight bits of a byte in reverse order.
constexpr std::uint8_t bitrev8(std::uint8_t b) {
    std::uint8_t reversed = 0;
    for (int i = 0; i < 8; ++i) reversed = static_cast<std::uint8_t>(reversed << 1 | (b >> i & 1));
    return reversed;
}

}  // namespace keld2
