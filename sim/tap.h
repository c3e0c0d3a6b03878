// The test access port's state machine: sixteen states, moved by TMS at each rising edge of TCK.
#pragma once

#include <cstdint>

namespace keld2::sim {

enum class TapState : std::uint8_t {
    testlogicreset,
    runtestidle,
    selectdr,
    capturedr,
    shiftdr,
    exit1dr,
    pausedr,
    exit2dr,
    updatedr,
    selectir,
    captureir,
    shiftir,
    exit1ir,
    pauseir,
    exit2ir,
    updateir
};

// The state behind a rising edge of TCK.
TapState next(TapState state, bool tms);

}  // namespace keld2::sim
