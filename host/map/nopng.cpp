#include "host/hosterror.h"
#include "host/map/fusepicture.h"

namespace keld2::host {

std::string pngof(const FusePicture&) {
    throw HostError(exitstatus::usage, "this program draws no PNG pictures, expected .svg");
}

}  // namespace keld2::host
