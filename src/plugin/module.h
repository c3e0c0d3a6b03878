// Module: all that lives between the calls of ClsKELD2.
//
// The library holds one for its automation class; a host or a test makes as many as it likes.
#pragma once

#include <functional>
#include <memory>

#include "external/datstr.h"
#include "external/devcore.h"
#include "external/usbtransport.h"
#include "platform/platform.h"
#include "shared/sharedvariables.h"

namespace keld2 {

// The components beside the plug-in. Each is asked for on first use and kept; it gets the
// plug-in's own views of the shared blocks. A factory that cannot deliver throws ComponentMissing.
struct External {
    std::function<std::unique_ptr<DevCore>(SharedVariables&)> devcore;
    std::function<std::unique_ptr<UsbTransport>(SharedVariables&)> transport;
    std::function<std::unique_ptr<TextHelper>()> helper;  // empty: the plain one
};

// A component could not be created; what() names it.
class ComponentMissing : public RunFault {
  public:
    using RunFault::RunFault;
};

class Module {
  public:
    Module(Platform& platform, External external);
    ~Module();
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

    Platform& platform() { return platform_; }
    SharedVariables& variables() { return variables_; }
    DevCore& devcore();
    UsbTransport& transport();
    TextHelper& helper();
    // Whether DevCore has been created already.
    bool hasdevcore() const { return devcore_ != nullptr; }

  private:
    Platform& platform_;
    External external_;
    SharedVariables variables_;
    std::unique_ptr<DevCore> devcore_;
    std::unique_ptr<UsbTransport> transport_;
    std::unique_ptr<TextHelper> helper_;
};

}  // namespace keld2
