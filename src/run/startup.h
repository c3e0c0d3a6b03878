// The common head of the hardware start-up, as all run windows share it.
#pragma once

#include "run/runcontext.h"

namespace keld2 {

// Ready check, mode, supplies, ground and VCC pins with their pauses. 0 ready, 1 refused by
// readycheck, 2 failed in modeselect. poweron is called right before the first supply is set.
template <typename PowerOn>
int startuphead(const RunContext& run, PowerOn poweron);

// setvccpin with on (1 or 0) for bvccpin[0] and, when there is one, bvccpin[1].
void switchvccpins(const RunContext& run, std::uint8_t on);
// The supplies and pins of the head, after its two checks.
void powersocket(const RunContext& run);

template <typename PowerOn>
int startuphead(const RunContext& run, PowerOn poweron) {
    if (run.devcore.readycheck() == 1) return status::refused;
    if (run.devcore.modeselect(run.s.figmode[0]) == 2) return status::modefailed;
    poweron();
    powersocket(run);
    return status::goon;
}

}  // namespace keld2
