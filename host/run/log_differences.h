// The differences that the plug-in finds by itself and tells in its log.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/run/difference.h"

namespace keld2::host {

// The lines of a compare's report: ">> ADDRESS      CHIP         BUFFER".
bool isdifference(const std::string& line);

// Of a run's log: the lines of a report about fuses, and the place that a failed verify, blank
// check or program names. language: offset of the language block.
Differences differences_in_log(const std::vector<std::string>& log, bool fuses,
                               std::int32_t language);

}  // namespace keld2::host
