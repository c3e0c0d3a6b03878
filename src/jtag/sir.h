// SIR statements: read, then executed. Only bit count and TDI value of a SIR are used; what
// stands behind the value's bracket is ignored.
#pragma once

#include <cstdint>
#include <string_view>

#include "jtag/lines.h"

namespace keld2 {

struct SirStatement {
    std::int16_t bits = 0;   // 0 or below: none is shifted
    std::int16_t value = 0;  // 0 to 7FFF; shifted bit 0 first, zeros behind its last bit
};

// line: the statement's one line, as it stands in the file. Fault: "TDI" or a bracket is missing,
// the count is no 16-bit integer, the value no hexadecimal number up to 7FFF.
SirStatement readsir(std::string_view line);

// Queues the statement; nothing is run. Ends in Update-IR with TMS high or, in some families, in
// Run-Test/Idle.
void SIRdate(QueuedLines& lines, DevCore& devcore, const SirStatement& statement);

}  // namespace keld2
