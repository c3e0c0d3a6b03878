// What a job writes into the shared blocks before the plug-in is asked for anything.
#pragma once

#include "host/job/jobfile.h"
#include "shared/sharedvariables.h"

namespace keld2::host {

// Maps the blocks of the job's host instance into s, sets the shared variables, maps the main
// buffer with the size that they ask for, and fills it. A block that cannot be made is left out.
void prepare(const Job& job, SharedVariables& s);

}  // namespace keld2::host
