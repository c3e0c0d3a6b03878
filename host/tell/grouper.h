// Grouper: gathers lines that belong together into steps. One for each way in which a chip is
// worked: a test access port, a strobed byte port, parallel lines.
#pragma once

#include "host/tell/step.h"
#include "host/tell/traceline.h"

namespace keld2::host {

class Grouper {
  public:
    virtual ~Grouper() = default;
    // Takes a register, bus or pause line; the steps that end with it go to done.
    virtual void take(const TraceLine& line, const StepSink& done) = 0;
    // Ends what is begun.
    virtual void close(const StepSink& done) = 0;
};

}  // namespace keld2::host
