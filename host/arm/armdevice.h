// What a host does for an ARM device beside filling the shared variables: the algorithm image, and
// the data file of devices that take their data from one.
#pragma once

#include <cstdint>
#include <vector>

#include "host/catalogue/device.h"
#include "host/run/runfile.h"
#include "sim/armalgorithm.h"

namespace keld2::host {

bool isarm(const Device& device);

// The simulated image for the device: its geometry by the shared variables, its phases by the
// operations. autosteps are those of the auto sequence.
sim::ArmAlgorithm algorithmof(const Device& device, const std::vector<const Operation*>& autosteps);

// The image as the run finds it where its folder has none. s: the device's shared variables.
RunFile algorithmfile(const Device& device, const std::vector<const Operation*>& autosteps,
                      SharedVariables& s);

// The same without a run.
RunFile algorithmfile(const Device& device, const std::vector<const Operation*>& autosteps);

// Whether Program takes its data from a file; that file, from the main buffer.
bool takesfile(SharedVariables& s);
RunFile datafile(SharedVariables& s);

}  // namespace keld2::host
