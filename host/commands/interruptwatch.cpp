#include "host/commands/interruptwatch.h"

#include <atomic>

#include "host/hosterror.h"

namespace keld2::host {

namespace {

// An interrupt's handler gets no argument of ours: this is the one place that it can reach.
std::atomic<int>& interrupts() {
    static std::atomic<int> count{0};
    return count;
}

void oninterrupt() {
    if (interrupts().fetch_add(1) > 0) os::leave(exitstatus::stopped);
}

}  // namespace

InterruptWatch::InterruptWatch() : interrupts_((interrupts() = 0, oninterrupt)) {}

bool InterruptWatch::asked() { return interrupts() > 0; }

}  // namespace keld2::host
