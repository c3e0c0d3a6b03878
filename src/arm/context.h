// ArmContext: what a run of an ARM device works with. All references outlive the run.
#pragma once

#include <cstdint>
#include <span>

#include "external/datstr.h"
#include "external/devcore.h"
#include "external/usbtransport.h"
#include "platform/platform.h"
#include "shared/notes.h"
#include "shared/operations.h"
#include "shared/sharedvariables.h"

namespace keld2 {

// Bytes of the read-back area: the largest image and the byte that follows it.
inline constexpr std::size_t imagereadbacksize = 131072 + 1;

struct ArmContext {
    SharedVariables& s;
    Platform& platform;
    DevCore& devcore;
    UsbTransport& usb;
    TextHelper& helper;
    // Target of the image's read-back, imagereadbacksize bytes. A transport may go on writing into
    // it after a run that was stopped, so it outlives the run and the transport.
    std::span<std::uint8_t> readback;
};

// Status of the ARM procedures: 1 sends the run to the exit that takes the power off.
namespace armstatus {
inline constexpr int goon = 0;
inline constexpr int brokenoff = 1;
}  // namespace armstatus

}  // namespace keld2
