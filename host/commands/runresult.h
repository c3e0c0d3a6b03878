// What a run came to, in words and as JSON.
#pragma once

#include <string>
#include <vector>

#include "host/run/devicerun.h"
#include "host/svf/playedtexts.h"

namespace keld2::host {

// A line of a compare's report.
struct Difference {
    std::string line;     // as the plug-in wrote it
    std::string address;  // digits as they stand: hexadecimal of bytes, decimal of fuses
    std::string chip;
    std::string buffer;
};

std::vector<Difference> differencesin(const std::vector<std::string>& log);

struct RunResult {
    const Device& device;
    std::vector<const Operation*> steps;
    const RunReport& report;
    std::vector<Difference> differences;
    Explanation explanation = {};
    std::string file;  // that was read or written; may be empty
    double seconds = 0;

    // The exit status of keld2: that of the run; a compare that found differences has failed.
    int status() const;
};

// "serial-4k: program ended well", "serial-4k: stopped in program at 43 %, done: erase, blank".
std::string summaryof(const RunResult& result);
std::string jsonof(const RunResult& result);

}  // namespace keld2::host
