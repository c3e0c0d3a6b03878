#include "sim/tap.h"

#include <array>

namespace keld2::sim {

namespace {

using enum TapState;

struct Successors {
    TapState low;   // with TMS 0
    TapState high;  // with TMS 1
};

constexpr std::array<Successors, 16> successors{{
    {.low = runtestidle, .high = testlogicreset},  // Test-Logic-Reset
    {.low = runtestidle, .high = selectdr},        // Run-Test/Idle
    {.low = capturedr, .high = selectir},          // Select-DR-Scan
    {.low = shiftdr, .high = exit1dr},             // Capture-DR
    {.low = shiftdr, .high = exit1dr},             // Shift-DR
    {.low = pausedr, .high = updatedr},            // Exit1-DR
    {.low = pausedr, .high = exit2dr},             // Pause-DR
    {.low = shiftdr, .high = updatedr},            // Exit2-DR
    {.low = runtestidle, .high = selectdr},        // Update-DR
    {.low = captureir, .high = testlogicreset},    // Select-IR-Scan
    {.low = shiftir, .high = exit1ir},             // Capture-IR
    {.low = shiftir, .high = exit1ir},             // Shift-IR
    {.low = pauseir, .high = updateir},            // Exit1-IR
    {.low = pauseir, .high = exit2ir},             // Pause-IR
    {.low = shiftir, .high = updateir},            // Exit2-IR
    {.low = runtestidle, .high = selectdr},        // Update-IR
}};

}  // namespace

TapState next(TapState state, bool tms) {
    const Successors& row = successors.at(static_cast<std::size_t>(state));
    return tms ? row.high : row.low;
}

}  // namespace keld2::sim
