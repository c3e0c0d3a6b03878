// The state that a session leaves, as JSON.
#pragma once

#include <string>

#include "shared/sharedvariables.h"

namespace keld2::host {

// s: the host's views.
std::string dumptext(SharedVariables& s);

}  // namespace keld2::host
