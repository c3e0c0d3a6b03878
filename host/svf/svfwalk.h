// An SVF text as the engine goes through it, without a programmer: which lines count, which rows
// are stored and when rows are compared.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/svf/logicdevice.h"
#include "jtag/runtest.h"
#include "jtag/sdrstatement.h"
#include "jtag/sir.h"
#include "jtag/svfrows.h"

namespace keld2::host {

struct SvfPlace {
    std::int32_t line = 1;
    std::int32_t column = 1;
};

// A read-back that the run fetches and compares.
struct SvfFetch {
    bool code = false;       // the check of the device code
    std::int32_t line = 0;   // behind which it is made; 0: at the end of the text
    std::int32_t first = 0;  // rows; none when last is below
    std::int32_t last = -1;
};

// Rows as the run has stored them, and the statements that did, by row.
struct SvfStored {
    struct Source {
        std::int32_t line = 0;
        std::int32_t bits = 0;
    };
    SvfRows rows;
    std::vector<Source> sources;
    std::int32_t rowcount = 0;
    std::int32_t rowmark = 0;
};

class SvfListener {
  public:
    virtual ~SvfListener() = default;
    virtual void skipped(std::int32_t /*line*/, std::string_view /*text*/) {}
    virtual void sir(std::int32_t /*line*/, const SirStatement&) {}
    // row: the number of the row that is stored, if one is.
    virtual void sdr(std::int32_t /*line*/, const SdrStatement&, std::int32_t /*row*/) {}
    virtual void runtest(std::int32_t /*line*/, const RuntestStatement&) {}
    virtual void fetch(const SvfFetch&, const SvfStored&, const SdrStatement&) {}
};

struct SvfEnd {
    std::int32_t lines = 0;              // that the run reads
    bool beyondlimit = false;            // the text goes on, but the run reads no further
    std::optional<SvfPlace> fault = {};  // the run fails here
    std::string reason = {};
    SvfStored stored;
};

// Goes through the text as a run that meets no mismatch.
SvfEnd walksvf(const LogicDevice& device, std::string_view text, SvfListener& listener);

}  // namespace keld2::host
