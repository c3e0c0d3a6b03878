// Why a run over an SVF text has failed: the bits that came back other than the text expects.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/run/readbacks.h"
#include "host/svf/logicdevice.h"

namespace keld2::host {

struct SvfMismatch {
    bool code = false;      // in the check of the device code
    std::int32_t line = 0;  // of the text, from 1; 0: of no statement
    std::int32_t row = 0;   // as the run counts stored rows, from 0
    std::int32_t bit = 0;   // of the row, the one shifted first is 0
    bool expected = false;
    bool read = false;
};

// The device code of a text and of a chip that has another, in hexadecimal.
struct SvfCode {
    std::string expected, read;
};

struct SvfExplained {
    std::vector<SvfMismatch> mismatches;
    std::optional<SvfCode> code;  // where the check of the device code has failed
};

// The mismatches, under the masks and tolerances of the run, of the comparison at which it ended:
// in all rows that had been fetched by then.
SvfExplained explainsvf(const LogicDevice& device, std::string_view text, const ReadBack& readback);

}  // namespace keld2::host
