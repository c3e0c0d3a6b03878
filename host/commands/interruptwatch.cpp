#include "host/commands/interruptwatch.h"

#include <unistd.h>

#include <atomic>

#include "host/hosterror.h"

namespace keld2::host {

namespace {

// A signal handler gets no argument of ours: this is the one place that it can reach.
std::atomic<int>& interrupts() {
    static std::atomic<int> count{0};
    return count;
}

extern "C" void oninterrupt(int) {
    if (interrupts().fetch_add(1) > 0) ::_exit(exitstatus::stopped);
}

}  // namespace

InterruptWatch::InterruptWatch() {
    interrupts() = 0;
    struct sigaction action {};
    action.sa_handler = oninterrupt;
    ::sigaction(SIGINT, &action, &oldinterrupt_);
    ::sigaction(SIGTERM, &action, &oldterminate_);
}

InterruptWatch::~InterruptWatch() {
    ::sigaction(SIGINT, &oldinterrupt_, nullptr);
    ::sigaction(SIGTERM, &oldterminate_, nullptr);
}

bool InterruptWatch::asked() { return interrupts() > 0; }

}  // namespace keld2::host
