// An SVF run: one operation, played from the text that the host has laid down.
#pragma once

#include "families/svffamily.h"
#include "jtag/lines.h"
#include "jtag/svfreader.h"
#include "run/runcontext.h"

namespace keld2 {

// Plays pldtmp.svf of the current folder. state keeps the stored rows between the operations of
// one run. Any run-time error, a missing text, a wrong device code and a row that differs leave 1
// in prgresult[0].
void svfrun(const RunContext& run, const SvfProcedure& procedure, LineLevels& levels,
            SvfState& state);

}  // namespace keld2
