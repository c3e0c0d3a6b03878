// A programmer whose run is attended on a terminal.
#pragma once

#include <optional>

#include "host/programmer/sessionprogrammer.h"

namespace keld2::host {

// The same programmer with somebody there: an interrupt from the keyboard stops the run at the
// next service of the message loop, a second one leaves the program; boxes are asked on the
// terminal, or answered with onbox.
ProgrammerFactory attended(ProgrammerFactory programmer, std::optional<BoxAnswer> onbox);

}  // namespace keld2::host
