// Verdict: what a run on a device came to. It is made here, once, of all that the run has left
// behind; bars, boxes, JSON, exit statuses and summaries are told from it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/run/devicerun.h"
#include "host/svf/playedtexts.h"

namespace keld2::host {

struct Verdict {
    enum class Outcome {
        well,
        different,  // a compare ended in order and has listed differences
        failed,
        stopped,
        timedout,
        badalgorithm,
        foreignid,   // the chip's device code is that of another device, or none can be read
        refused,     // the programmer was not ready
        modefailed,  // it could not be set up for the device
        incomplete,  // a component that drives the programmer is missing
        aborted,     // a box was answered so that the run ended before its first operation
        notserved    // the plug-in has nothing for the device
    };
    // How it is to be shown: open is neither passed nor failed.
    enum class Mark { good, bad, open };

    Outcome outcome = Outcome::failed;
    int status = 1;                            // the exit status of keld2
    std::vector<const Operation*> steps = {};  // that were asked for
    std::size_t done = 0;                      // of them, from the first on
    int percent = 0;                           // of the operation at which the run ended
    Differences differences = {};              // of the check that failed, or that a compare lists
    std::optional<ForeignId> foreignid = {};
    std::string expectedid = {};            // of the device; empty where none is known
    std::vector<std::string> notices = {};  // what has to be known beside it, a sentence each

    bool well() const { return outcome == Outcome::well; }
    Mark mark() const;
};

// explanation: why a played text has failed; empty for other devices.
Verdict verdictof(const RunRequest& request, const RunReport& report,
                  const Explanation& explanation = {});

// "well", "different", "timed out": as JSON names it.
std::string_view wordof(Verdict::Outcome outcome);
// "program ended well", "failed in verify at 2 %, at 000064: the chip holds 00, the file 08".
std::string headlineof(const Verdict& verdict);

}  // namespace keld2::host
