// Waits for a bulk read, with the message loop served and a time-out armed.
#pragma once

#include <cstdint>
#include <functional>
#include <span>

#include "run/runcontext.h"

namespace keld2 {

// A one-shot time-out: its event runs from the message loop unless the object is gone before.
class Timeout {
  public:
    Timeout(Platform& platform, std::int32_t milliseconds, std::function<void()> event);
    ~Timeout();
    Timeout(const Timeout&) = delete;
    Timeout& operator=(const Timeout&) = delete;

  private:
    Platform& platform_;
    TimerId id_ = 0;
};

// Reads length bytes into ibuf2 with a wait of 5 seconds. 0 done, 1 failed or timed out; then
// prgresult[0] is 3 unless a stop, 2, stands there. Clears prgresult[0] first. A stop during the
// wait is left to the caller's next poll.
int ubulkread0(const RunContext& run, std::int16_t length);

// Reads length bytes into ibuf2 with two tries of 10 seconds each. 0 done; 1 failed, timed out or
// stopped; then prgresult[0] is 2 after a stop and else 0.
int ubulkread2(const RunContext& run, std::int32_t length);

}  // namespace keld2
