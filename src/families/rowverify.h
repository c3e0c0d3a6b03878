// The comparison of what came back from the chip with what the text expected, row by row.
#pragma once

#include <cstdint>

#include "families/svffamily.h"
#include "jtag/sdr.h"
#include "run/runcontext.h"

namespace keld2 {

// Where the bits of a row lie in the read-back: whole packed bytes, then a raw byte a bit.
struct RowLayout {
    std::int32_t whole;   // packed bytes
    std::int32_t raw;     // bytes with one bit each
    std::int32_t stride;  // bytes of a row
};
// width: bits of the row.
RowLayout rowlayout(std::int32_t width, bool bitwise);

// Whether this whole byte of a tolerant comparison may differ.
bool tolerated(std::int32_t width, std::int32_t row, std::int32_t byte);

// Runs the command list, fetches the read-back and compares rows first to last under their masks.
// An empty range still fetches. 0 all agree; 1 a mismatch, or a transfer failed. No note is
// written and no result set. tdomask: the TDO bit of a raw byte.
int verifyrows(const RunContext& run, const RowComparison& comparison, const SvfState& state,
               std::uint8_t tdomask, std::int32_t first, std::int32_t last);

}  // namespace keld2
