// keld2 svf make, check, play: the texts by which logic devices are worked.
#pragma once

#include "host/commands/deviceoptions.h"

namespace keld2::host {

// Adds the commands to the program; options must outlive it, status takes the exit status.
void addsvfcommands(CLI::App& program, const DeviceOptions& options, int& status);

}  // namespace keld2::host
