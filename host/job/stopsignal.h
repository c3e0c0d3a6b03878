// StopSignal: an interrupt from the keyboard stops the run, a second one leaves the program.
#pragma once

#include "platform/platformdecorator.h"
#include "shared/sharedvariables.h"

namespace keld2::host {

// While it lives, SIGINT writes 2 to prgresult[0] at the next service; the next SIGINT ends the
// process with exit status 2.
class StopSignal final : public PlatformDecorator {
  public:
    StopSignal(Platform& inner, SharedVariables& s);  // s: the host's views
    ~StopSignal() override;

    void service() override;

  private:
    SharedVariables& s_;
    void (*before_)(int);
};

}  // namespace keld2::host
