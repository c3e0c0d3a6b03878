// What the places of a fuse map's picture look like.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "host/map/fusepicture.h"

namespace keld2::host {

inline constexpr std::size_t pixels = 4;  // of a fuse, each way

// What a place of the picture shows; the order is that of the palette.
enum Shade : std::size_t {
    programmed,
    unprogrammed,
    programmeddiffers,
    unprogrammeddiffers,
    nothing
};

struct Colour {
    std::uint8_t red, green, blue;
    std::string_view name;
};

inline constexpr std::array<Colour, 5> palette{{{0x22, 0x2B, 0x3A, "#222b3a"},
                                                {0xE6, 0xEA, 0xF0, "#e6eaf0"},
                                                {0xC6, 0x1A, 0x1A, "#c61a1a"},
                                                {0xFF, 0x9A, 0x3C, "#ff9a3c"},
                                                {0xFF, 0xFF, 0xFF, "#ffffff"}}};

Shade shadeof(const FusePicture& picture, std::size_t row, std::size_t column);

}  // namespace keld2::host
