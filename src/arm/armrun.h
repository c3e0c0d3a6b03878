// armrun: one run of an ARM device, from its first hardware call to its last.
//
// The programmer does the device work by itself: the run loads an algorithm image into it, hands
// over the configuration bytes, checks the device code where that is asked for, carries out the
// operation in prgresult[1] and turns the outcome into notes (MainRtstr[0]), percent (prgmode[1])
// and result (prgresult[0]). It does not clear prgresult[0]: the host does.
//
// A fault within the run ends it with result 3; only ComponentMissing leaves.
#pragma once

#include "arm/profile.h"

namespace keld2 {

void armrun(const ArmContext& c, const ArmProfile& profile);

}  // namespace keld2
