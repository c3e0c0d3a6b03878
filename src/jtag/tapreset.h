// The TAP resets: fixed moves of the lines that bring a chip's TAP to Run-Test/Idle.
#pragma once

#include <cstdint>
#include <span>

#include "jtag/lines.h"

namespace keld2 {

enum class TapStep {
    tmshigh,
    tmslow,
    tckhigh,
    tcklow,
    tdihigh,
    tdilow,
    pinrefresh,
    pulses,     // n of them
    waitshort,  // queued, n short ticks
    waitlong,   // queued, n long ticks
    run         // the command list is sent
};

struct TapMove {
    TapStep step;
    std::int32_t n = 0;
};

using TapReset = std::span<const TapMove>;

extern const TapReset svfreset80;
extern const TapReset svfreset84;  // of the fixed logic family too
extern const TapReset svfreset87;
extern const TapReset svfreset90;
extern const TapReset svfreset94;

// Queues a reset; one that ends with a run sends it.
void playtapreset(QueuedLines& lines, DevCore& devcore, TapReset reset);

}  // namespace keld2
