// Ctrl-C as the Stop button.
#pragma once

#include "host/os/interrupts.h"

namespace keld2::host {

// While it lives, the first interrupt asks for a stop; a second one ends the
// process at once with the exit status of a stop. Only one may live at a time.
class InterruptWatch {
  public:
    InterruptWatch();

    static bool asked();

  private:
    os::Interrupts interrupts_;
};

}  // namespace keld2::host
