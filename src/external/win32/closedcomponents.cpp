#include "external/win32/closedcomponents.h"

#include "external/win32/closedlibraries.h"
#include "external/win32/latebounddevcore.h"

namespace keld2 {

External closedcomponents() {
    return {.devcore = [](SharedVariables&) { return std::make_unique<LateBoundDevCore>(); },
            .transport = [](SharedVariables&) { return std::make_unique<ClosedTransport>(); },
            .helper = [] { return std::make_unique<ClosedTextHelper>(); }};
}

}  // namespace keld2
