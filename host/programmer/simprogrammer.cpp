#include "host/hosterror.h"
#include "host/programmer/programmer.h"

namespace keld2::host {

ProgrammerFactory simulated(const ProgrammerChoice&, const Device& device) {
    throw HostError(exitstatus::data,
                    device.path.string() + ": [sim]: this build has no simulated programmer");
}

}  // namespace keld2::host
