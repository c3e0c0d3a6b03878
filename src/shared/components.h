// The components beside the plug-in, as a host hands them in.
#pragma once

#include <functional>
#include <memory>

#include "platform/fault.h"
#include "shared/sharedvariables.h"

namespace keld2 {

class DevCore;
class UsbTransport;
class TextHelper;

// Each is asked for on first use and kept; it gets the plug-in's own views of the shared blocks.
// A factory that cannot deliver throws ComponentMissing.
struct External {
    std::function<std::unique_ptr<DevCore>(SharedVariables&)> devcore;
    std::function<std::unique_ptr<UsbTransport>(SharedVariables&)> transport;
    std::function<std::unique_ptr<TextHelper>()> helper = {};  // empty: the plain one
};

// A component could not be created; what() names it.
class ComponentMissing : public RunFault {
  public:
    using RunFault::RunFault;
};

}  // namespace keld2
