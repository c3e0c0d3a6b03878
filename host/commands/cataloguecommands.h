// keld2 devices list, search, info.
#pragma once

#include "host/commands/deviceoptions.h"

namespace keld2::host {

// Adds the commands to the program; options (of which --json counts) must outlive it, status takes
// the exit status.
void addcataloguecommands(CLI::App& program, const DeviceOptions& options, int& status);

}  // namespace keld2::host
