// One run of the plug-in on a device: what is asked, who listens, what came of it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/catalogue/device.h"
#include "host/os/machine.h"
#include "host/programmer/sessionprogrammer.h"
#include "host/run/readbacks.h"
#include "platform/platform.h"

namespace keld2::host {

// A part of the main buffer.
struct BufferPart {
    std::int64_t offset = 0;
    std::vector<std::uint8_t> bytes;
};

struct RunRequest {
    const Device& device;
    std::vector<const Operation*> steps;  // a sequence, when sequence is set; else just one
    bool sequence = false;
    std::vector<BufferPart> data;  // laid over a blank buffer
    std::int32_t language = 0;     // offset of the language block
    // Whether an ARM device finds a simulated algorithm image where the run's folder has none.
    bool simulated = false;
    os::Blocks blocks = os::Blocks::own;
    std::vector<std::string> texts = {};  // pldtmp.svf of each step, where the device plays texts
};

// Whoever shows the run. All calls come on the thread that runs it.
class RunListener {
  public:
    virtual ~RunListener() = default;
    virtual void logline(const std::string& line) = 0;  // UTF-8
    virtual void progress(int percent) = 0;             // at every service, and more often
    virtual void step(const std::string& caption) = 0;  // the run window's caption
    virtual BoxAnswer box(const Box& box) = 0;
    virtual bool stopasked() = 0;
};

struct RunReport {
    enum class Outcome {
        well,
        failed,
        stopped,
        timedout,
        badalgorithm,
        refused,     // the programmer was not ready
        modefailed,  // it could not be set up for the device
        incomplete,  // a component that drives the programmer is missing; a box has named it
        aborted,     // a box was answered so that the run ended before its first operation
        notserved    // the plug-in has nothing for the device
    };
    Outcome outcome = Outcome::failed;
    std::size_t done = 0;              // steps that ended well, from the first on
    int percent = 0;                   // of the operation at which the run ended
    std::vector<std::string> log;      // all lines
    std::vector<std::uint8_t> buffer;  // the main buffer, after the run
    std::vector<ReadBack> readbacks;   // of each text that was played
};

// The exit status of keld2 for an outcome.
int exitstatusof(RunReport::Outcome outcome);

// The lines of a compare's report among the log: ">> ADDRESS ...".
bool isdifference(const std::string& line);

// Runs the request through the plug-in on that programmer.
RunReport runondevice(const RunRequest& request, const ProgrammerFactory& makeprogrammer,
                      RunListener& listener);

}  // namespace keld2::host
