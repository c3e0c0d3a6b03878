// keld2 algo make: simulated algorithm images for ARM devices.
#pragma once

#include "host/commands/deviceoptions.h"

namespace keld2::host {

// Adds the command to the program; options must outlive it, status takes the exit status.
void addalgocommands(CLI::App& program, const DeviceOptions& options, int& status);

}  // namespace keld2::host
