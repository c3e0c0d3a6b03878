// Ctrl-C as the Stop button.
#pragma once

#include <csignal>

namespace keld2::host {

// While it lives, the first interrupt (SIGINT, SIGTERM) asks for a stop; a second one ends the
// process at once with the exit status of a stop. Only one may live at a time.
class InterruptWatch {
  public:
    InterruptWatch();
    ~InterruptWatch();
    InterruptWatch(const InterruptWatch&) = delete;
    InterruptWatch& operator=(const InterruptWatch&) = delete;

    static bool asked();

  private:
    struct sigaction oldinterrupt_ {};
    struct sigaction oldterminate_ {};
};

}  // namespace keld2::host
