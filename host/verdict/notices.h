// What the user of a run has to know beside how it ended.
#pragma once

#include <string>
#include <vector>

#include "host/verdict/verdict.h"

namespace keld2::host {

// A chip of another device that was let pass; content that an empty socket or a protected chip
// would show, too.
std::vector<std::string> noticesof(const RunRequest& request, const RunReport& report,
                                   const Verdict& verdict);

}  // namespace keld2::host
