// Difference: a place at which the chip holds other than the file, or than a blank chip.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace keld2::host {

enum class CellUnit {
    byte,
    word,  // two bytes, low byte first in the main buffer
    fuse
};

struct Difference {
    CellUnit unit = CellUnit::byte;
    std::int64_t address = 0;    // of the device, counted in its units, from 0
    std::uint32_t chip = 0;      // what the chip holds
    std::uint32_t expected = 0;  // what the file, or a blank chip, holds there
};

// "000064", "12": six digits at the least, hexadecimal, of a fuse decimal; a value in as many
// digits as its unit has.
std::string addressdigits(const Difference& difference);
std::string valuedigits(CellUnit unit, std::uint32_t value);
// The cells of the main buffer that the difference is about.
std::vector<std::int64_t> cellsof(const Difference& difference);

struct Differences {
    static constexpr std::size_t most = 256;  // that are kept, and that a compare lists

    bool listed = false;        // by a compare, which goes on behind each; else a check ended at it
    bool againstblank = false;  // a blank chip was expected, not a file's content
    std::vector<Difference> first = {};
    std::size_t count = 0;  // of all that were seen

    bool empty() const { return count == 0; }
    void add(const Difference& difference);
};

}  // namespace keld2::host
