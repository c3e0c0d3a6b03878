// A fuse map as a picture: rows and columns as in the chip, differences against a second map.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace keld2::host {

struct FusePicture {
    std::size_t width = 1;      // fuses of a row
    std::string cells;          // '0' or '1' for each fuse, fuse 0 first
    std::vector<bool> differs;  // by fuse; empty: there is no second map

    std::size_t rows() const { return (cells.size() + width - 1) / width; }
    std::size_t differences() const;
};

// against: a second map, empty for none; a fuse that only one of them has differs.
// width: fuses of a row; 0 chooses the divisor of the count that is nearest to a square.
FusePicture makepicture(std::string_view fuses, std::string_view against, std::size_t width);

// A programmed fuse (0) is dark, an unprogrammed one light; a difference is red or orange by it.
std::string svgof(const FusePicture& picture);
std::string pngof(const FusePicture& picture);
// Two rows a line, in half blocks; with colour, differences stand out by terminal escapes,
// without, their row numbers follow below.
std::string textof(const FusePicture& picture, bool colour);

}  // namespace keld2::host
