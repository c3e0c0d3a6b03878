// keld2 read, program, verify, blank, compare, erase, config, secure, auto.
#pragma once

#include "host/commands/deviceoptions.h"

namespace keld2::host {

// Adds the commands to the program; options must outlive it, status takes the exit status.
void adddevicecommands(CLI::App& program, const DeviceOptions& options, int& status);

}  // namespace keld2::host
