#include "plugin/com/librarymodule.h"

#include "external/win32/closedcomponents.h"
#include "platform/win32/win32platform.h"

namespace keld2 {

Module& librarymodule() {
    static Win32Platform platform;
    static Module module(platform, closedcomponents());
    return module;
}

}  // namespace keld2
