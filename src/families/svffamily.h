// How the SVF families play a text: the table of run procedures, and the geometry of their rows.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "jtag/sdr.h"
#include "jtag/sdrstatement.h"
#include "jtag/tapreset.h"

namespace keld2 {

// Rows that a fuse count verifies: the last row's number.
struct RowTotal {
    std::int32_t fuses;  // tlength[0]
    std::int32_t rows;
};

// Width of a row in bits, by fuse count.
struct RowWidth {
    std::int32_t fuses;
    std::int32_t bits;
};

// Which comparison a family makes of the read-back.
struct RowComparison {
    std::span<const RowWidth> widths;
    std::int64_t framelength = 8;  // of the frame that asks for the read-back
    bool bitwise = false;          // a raw byte for every bit; bits behind whole bytes are left out
    bool tolerant = false;         // some whole bytes may differ
};

struct SvfProcedure {
    // When the rows are compared, beside the end of the text.
    enum class Interim {
        none,
        half,     // once half of the rows are stored, the first half; at the end, the second
        once208,  // of one fuse count, when 208 rows are stored
        rolling   // whenever the read-back fills; nothing after a text beyond the line limit
    };
    std::span<const std::uint8_t> families;  // prgmode[0]
    const TapReset* reset;
    const SdrRules* sdrrules;
    bool sdr95 = false;
    CodeCheck codecheck = {};
    std::int32_t linelimit = 10000;
    std::span<const RowTotal> totals;
    std::int32_t firstrow = 1;       // of the comparison at the end of the text
    std::int32_t leastrowcount = 0;  // stored rows below which nothing is compared
    const RowComparison* comparison;
    Interim interim = Interim::none;
    bool progressbylines = false;  // percent of 10000 lines, not of the text's length
};

// The procedure of a family byte; nullptr when it plays no text.
const SvfProcedure* findsvfprocedure(std::uint8_t family);
std::span<const SvfProcedure> svfprocedures();

// The last row that a fuse count verifies; 0 for a count that the family does not know.
std::int32_t rowtotal(const SvfProcedure& procedure, std::int32_t fuses);
// Bits of a row; 0 for a count that the comparison does not know.
std::int32_t rowwidth(const RowComparison& comparison, std::int32_t fuses);

}  // namespace keld2
