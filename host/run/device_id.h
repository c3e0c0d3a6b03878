// The id by which a device's chip is told from others.
#pragma once

#include <string>

#include "host/catalogue/device.h"

namespace keld2::host {

// Whether a run reads an id and holds it against the device's.
bool checksid(const Device& device);
// The id that the chip should have, in digits as the plug-in shows them: maker and device code,
// "5A 44", or the code of a logic device, "0180D043". Empty where none is known.
std::string expectedid(const Device& device);

}  // namespace keld2::host
