// One run of the plug-in on a device: what is asked, who listens, what came of it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/catalogue/device.h"
#include "host/os/machine.h"
#include "host/programmer/sessionprogrammer.h"
#include "host/run/difference.h"
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
    std::vector<BufferPart> data = {};  // laid over a blank buffer
    std::int32_t language = 0;          // offset of the language block
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
    // The text of a box about a foreign device code ends with the expected one.
    virtual BoxAnswer box(const Box& box) = 0;
    virtual bool stopasked() = 0;
};

// A device code that the plug-in has asked about, and that was not put right.
struct ForeignId {
    std::string read;      // digits, as the box shows them: "5A 4402"
    bool ignored = false;  // the user lets the run go on
};

// What a run has left behind; what it came to is told by its verdict.
struct RunReport {
    std::uint8_t result = 1;       // prgresult[0]
    bool finished = false;         // the end-of-run signal was given
    bool refused = false;          // the programmer was not ready
    bool modefailed = false;       // it could not be set up for the device
    bool incomplete = false;       // a component that drives it is missing; a box has named it
    bool boxended = false;         // a box was answered with Abort or Cancel
    bool stopgiven = false;        // the listener has asked for a stop
    std::size_t done = 0;          // steps that ended well, from the first on
    int percent = 0;               // of the operation at which the run ended
    Differences differences = {};  // where the chip held other than it was checked against
    std::optional<std::uint8_t> uniform = {};  // every byte that was checked had this value
    std::optional<ForeignId> foreignid = {};
    std::vector<std::string> log = {};      // all lines
    std::vector<std::uint8_t> buffer = {};  // the main buffer, after the run
    std::vector<ReadBack> readbacks = {};   // of each text that was played
};

// Runs the request through the plug-in on that programmer.
RunReport runondevice(const RunRequest& request, const ProgrammerFactory& makeprogrammer,
                      RunListener& listener);

}  // namespace keld2::host
