// What the engine will make of an SVF text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/svf/svfwalk.h"

namespace keld2::host {

struct SvfLine {
    std::int32_t line = 0;
    std::string what;
};

struct SvfCheck {
    std::int32_t lines = 0;  // that the run reads
    std::int64_t instructions = 0, drives = 0, reads = 0, replays = 0, waits = 0;  // statements
    std::int64_t shiftbits = 0;    // of instructions and data
    std::int64_t clocks = 0;       // of RUNTEST statements
    std::int64_t waiting = 0;      // µs, of RUNTEST statements
    std::int32_t rows = 0;         // stored
    std::int32_t compared = 0;     // of them; the device code counts
    std::int32_t firstrow = 0;     // that the device's comparison takes
    std::int32_t lastrow = 0;      // 0: as many as the text has
    std::vector<SvfLine> run;      // statements that run
    std::vector<SvfLine> skipped;  // lines without effect that lose nothing
    std::vector<SvfLine> lost;     // statements that would be lost, and why
    std::optional<SvfPlace> fault = {};
    std::string reason = {};

    bool usesall() const { return lost.empty() && !fault; }
};

SvfCheck checksvf(const LogicDevice& device, std::string_view text);

// The check in words, a line each. name: of the text's file. all: the statements that run, too.
std::string told(const SvfCheck& check, const std::string& name, bool all = false);

std::string jsonof(const SvfCheck& check, const std::string& name);

}  // namespace keld2::host
