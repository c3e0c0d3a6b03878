#include "host/os/process.h"

#include <unistd.h>

#include <cerrno>

namespace keld2::host::os {

std::vector<std::string> arguments(int argc, const char* const* argv) {
    return {argv, argv + argc};
}

std::filesystem::path programfile() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error);
}

std::error_code folderfault(const std::filesystem::path& folder) {
    if (::access(folder.c_str(), W_OK) == 0) return {};
    return {errno, std::generic_category()};
}

TextStreams::TextStreams() = default;
TextStreams::~TextStreams() = default;

}  // namespace keld2::host::os
