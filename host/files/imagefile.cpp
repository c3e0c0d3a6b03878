#include "host/files/imagefile.h"

#include "host/files/files.h"
#include "host/hosterror.h"

namespace keld2::host {

Image loadimage(const std::filesystem::path& path) {
    if (path.extension() != ".bin")
        throw HostError(exitstatus::data,
                        path.string() + ": the ending names no known format, expected .bin");
    return {Segment{.bytes = readbytes(path)}};
}

}  // namespace keld2::host
