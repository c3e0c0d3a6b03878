// What a run on a device that the plug-in works by SVF texts needs of the host, and what the host
// can tell of it behind: the texts, and the fuses at which one has failed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/run/devicerun.h"
#include "host/svf/svfexplain.h"

namespace keld2::host {

// The text of each step, made from the parts of a fuse map; none for a device that is worked in
// another way. Throws HostError (64) when the host does not know the device's instructions.
std::vector<std::string> playedtexts(const Device& device,
                                     const std::vector<const Operation*>& steps,
                                     const std::vector<BufferPart>& parts);

// Why the comparison of a played text has failed.
struct Explanation {
    struct Line {
        SvfMismatch mismatch;
        std::optional<std::int64_t> fuse;  // of the fuse map, where it is known
    };
    std::string text;                  // name of the text that was played
    std::vector<Line> lines;           // the first ones
    std::size_t count = 0;             // of all mismatches
    std::optional<SvfCode> code = {};  // of a chip whose device code is another
};

// Names the mismatches at which the last of the texts ended; empty unless the run has failed.
// file: the text that a user gave; none: the texts are those of playedtexts.
Explanation explain(const Device& device, const std::vector<std::string>& texts,
                    const RunReport& report, const std::optional<std::string>& file = {});

// A line a mismatch: "pldtmp.svf:17: row 3, bit 5: expected 1, read 0 (fuse 409)".
std::string told(const Explanation& explanation);

}  // namespace keld2::host
