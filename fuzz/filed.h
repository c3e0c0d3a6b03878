// Texts as files in a folder of the fuzzers' own, which goes with the program.
#pragma once

#include "tests/common/madefolder.h"

namespace keld2::fuzz {

// The path of a file that is not there: a file written over is flushed to the disk, which takes
// longer than what is done with it.
inline std::filesystem::path fresh(std::string_view name) {
    static const test::MadeFolder folder;
    std::filesystem::remove(folder / name);
    return folder / name;
}

inline std::filesystem::path filed(std::string_view text, std::string_view name = "text") {
    std::filesystem::path path = fresh(name);
    host::writetext(path, text);
    return path;
}

}  // namespace keld2::fuzz
