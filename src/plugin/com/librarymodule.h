// The library's single Module: what lives from load to unload.
#pragma once

#include "plugin/module.h"

namespace keld2 {

// Made on first use, with the platform and the closed components of Windows.
Module& librarymodule();

}  // namespace keld2
