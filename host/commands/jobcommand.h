// keld2 job: one host session.
#pragma once

#include "host/commands/deviceoptions.h"

namespace keld2::host {

// Adds the command to the program; status takes its exit status. options: the chip and the
// simulated programmer of a job without a replay.
void addjobcommand(CLI::App& program, const DeviceOptions& options, int& status);

}  // namespace keld2::host
