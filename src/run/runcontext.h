// RunContext: what a run works with. All references outlive the run.
#pragma once

#include "external/datstr.h"
#include "external/devcore.h"
#include "external/usbtransport.h"
#include "platform/platform.h"
#include "shared/notes.h"
#include "shared/sharedvariables.h"

namespace keld2 {

struct RunContext {
    SharedVariables& s;
    Platform& platform;
    DevCore& devcore;
    UsbTransport& usb;
    TextHelper& helper;
};

// Operation numbers: indices into MainmnuPrg.
namespace operation {
inline constexpr std::int16_t read = 2;
inline constexpr std::int16_t verify = 3;
inline constexpr std::int16_t blankcheck = 4;
inline constexpr std::int16_t compare = 5;
inline constexpr std::int16_t program = 6;
inline constexpr std::int16_t erase = 8;
inline constexpr std::int16_t configuration = 9;  // or secure
}  // namespace operation

// Status of internal procedures: 0 goes on.
namespace status {
inline constexpr int goon = 0;
inline constexpr int ended = 1;       // failed or stopped
inline constexpr int refused = 1;     // of hwstart: by readycheck
inline constexpr int modefailed = 2;  // of hwstart: in modeselect
}  // namespace status

}  // namespace keld2
