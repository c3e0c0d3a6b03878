// SDR statements: read into values, with every digit that they use, before anything is queued.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "jtag/svfreader.h"
#include "jtag/svfrows.h"

namespace keld2 {

// Bit counts that make a statement a drive, whatever it says about TDO.
struct DriveException {
    std::int32_t fuses = 0;  // tlength[0]; 0: any
    std::int32_t bits = 0;
};

// How one family reads its SDR statements.
struct SdrRules {
    std::span<const DriveException> drives = {};
    bool replays = false;       // 34, 50 and 82 bits shift and sample in one
    bool unfinishedtdo = true;  // a layout with TDO on an unfinished first line is understood
    RowLimits limits = {};
};

extern const SdrRules sdrrules80;  // families 80 to 91
extern const SdrRules sdrrules92;  // families 92 and 93
extern const SdrRules sdrrules94;  // families 94 and 95
extern const SdrRules sdrrules50;  // family 50

struct SdrStatement {
    enum class Kind {
        givenup,  // nothing is queued
        drive,    // tdi
        read,     // the row, if stored
        replay    // tdi and the row, if stored
    };
    Kind kind = Kind::givenup;
    std::int16_t nbits = 0;            // 1 to 32767
    std::vector<std::uint8_t> tdi;     // bit 0 of byte 0 first
    bool counted = false;              // a row is counted
    std::vector<std::uint8_t> expect;  // what the row stores, from entry 0 on; may be empty
    std::vector<std::uint8_t> mask;
};

// Reads the statement that begins in reader's svfline into statement, whose buffers are used
// again. fuses: tlength[0]. row: the index at which a row would be stored. All that is wrong with
// the statement is a RunFault.
void readsdr(SvfReader& reader, const SdrRules& rules, std::int32_t fuses, std::int32_t row,
             SdrStatement& statement);

}  // namespace keld2
