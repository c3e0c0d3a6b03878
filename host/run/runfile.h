// A file that a run finds below its folder without lying there.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace keld2::host {

struct RunFile {
    std::vector<std::u16string> parts;  // folder names, then the file's
    std::vector<std::uint8_t> bytes;
    bool overriding = false;  // else a file that lies in the folder is preferred
};

}  // namespace keld2::host
