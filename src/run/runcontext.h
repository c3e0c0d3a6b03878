// RunContext: what a run works with. All references outlive the run.
#pragma once

#include "external/datstr.h"
#include "external/devcore.h"
#include "external/usbtransport.h"
#include "platform/platform.h"
#include "shared/notes.h"
#include "shared/operations.h"
#include "shared/sharedvariables.h"

namespace keld2 {

struct RunContext {
    SharedVariables& s;
    Platform& platform;
    DevCore& devcore;
    UsbTransport& usb;
    TextHelper& helper;
};

// Status of internal procedures: 0 goes on.
namespace status {
inline constexpr int goon = 0;
inline constexpr int ended = 1;       // failed or stopped
inline constexpr int refused = 1;     // of hwstart: by readycheck
inline constexpr int modefailed = 2;  // of hwstart: in modeselect
}  // namespace status

}  // namespace keld2
