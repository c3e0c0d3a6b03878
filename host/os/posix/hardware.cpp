#include "host/programmer/hardware.h"

#include "host/hosterror.h"

namespace keld2::host {

ProgrammerFactory hardware() {
    throw HostError(exitstatus::usage,
                    "-p hardware: the components that drive the programmer are libraries of "
                    "Windows, expected keld2.exe on the machine that has them, or -p sim here");
}

}  // namespace keld2::host
