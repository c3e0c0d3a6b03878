// keld2 edit: a file's configuration bytes or user code, in the plug-in's own editors.
#pragma once

#include "host/commands/deviceoptions.h"

namespace keld2::host {

// Adds the command to the program; options must outlive it, status takes the exit status.
void addeditcommand(CLI::App& program, const DeviceOptions& options, int& status);

}  // namespace keld2::host
