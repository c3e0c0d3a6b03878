// The closed components of the Windows host: DevCore by its ProgID, tq8io.dll and tq5io.dll by
// name.
#pragma once

#include "shared/components.h"

namespace keld2 {

// Each is created or loaded on first use; one that is not there throws ComponentMissing.
External closedcomponents();

}  // namespace keld2
