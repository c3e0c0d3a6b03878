// What a run came to, as JSON.
#pragma once

#include <string>
#include <vector>

#include "host/verdict/verdict.h"

namespace keld2::host {

struct RunResult {
    const Device& device;
    const Verdict& verdict;
    const Explanation& explanation;
    const std::vector<std::string>& log;
    std::string file;  // that was read or written; may be empty
    double seconds = 0;
};

std::string jsonof(const RunResult& result);

}  // namespace keld2::host
