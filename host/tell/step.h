// Step: what a stretch of a trace does, in words, with its parts.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace keld2::host {

struct Step {
    std::string words;
    std::int64_t first = 0, last = 0;  // lines of the trace, from 1
    std::vector<Step> parts = {};      // in their order; empty for a single line

    // Appends a part and stretches over it.
    void add(Step part) {
        if (first == 0) first = part.first;
        last = part.last > last ? part.last : last;
        parts.push_back(std::move(part));
    }
};

using StepSink = std::function<void(Step)>;

}  // namespace keld2::host
