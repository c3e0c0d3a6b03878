// The programmer itself, driven by the closed components that come with it.
#pragma once

#include "host/programmer/sessionprogrammer.h"

namespace keld2::host {

// Needs a machine with shared blocks. Throws HostError (64) where those components cannot exist; a
// component that is not installed is found when the run asks for it. Its making throws HostError
// (1) when another host has the blocks.
ProgrammerFactory hardware();

}  // namespace keld2::host
