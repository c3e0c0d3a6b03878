// ArmPart: the firmware part of the simulated programmer that serves ARM devices.
#pragma once

#include <memory>

#include "sim/armengine.h"
#include "sim/programmer.h"

namespace keld2::sim {

// The revision that the simulated programmer reports; a host that expects another is told.
inline constexpr std::uint8_t armfirmware = 7;

// chip must outlive the part.
std::unique_ptr<FirmwarePart> makearmpart(DebugPort& chip, const Faults& faults);

}  // namespace keld2::sim
