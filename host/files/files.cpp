#include "host/files/files.h"

#include <cerrno>
#include <fstream>
#include <system_error>

#include "host/hosterror.h"

namespace keld2::host {

namespace {

[[noreturn]] void refuse(const std::filesystem::path& path, const char* what, int error) {
    std::string message = path.string() + ": " + what;
    if (error != 0) message += std::string(": ") + std::generic_category().message(error);
    throw HostError(exitstatus::nofile, message);
}

constexpr std::streamsize blocklength = 1 << 20;
constexpr std::size_t most = std::size_t{1} << 30;  // bytes; devices have no end

template <typename Content>
Content readwhole(const std::filesystem::path& path) {
    if (std::filesystem::is_directory(path)) refuse(path, "cannot be opened", EISDIR);
    errno = 0;
    std::ifstream in(path, std::ios::binary);
    if (!in) refuse(path, "cannot be opened", errno);
    Content content;
    for (std::vector<char> block(blocklength); in;) {
        in.read(block.data(), blocklength);
        content.insert(content.end(), block.begin(), block.begin() + in.gcount());
        if (content.size() > most) refuse(path, "is larger than 1 GiB", 0);
    }
    if (in.bad()) refuse(path, "cannot be read", errno);
    return content;
}

}  // namespace

std::filesystem::path filenamed(std::string_view name) {
    return std::u8string(name.begin(), name.end());
}

std::vector<std::uint8_t> readbytes(const std::filesystem::path& path) {
    return readwhole<std::vector<std::uint8_t>>(path);
}

std::string readtext(const std::filesystem::path& path) { return readwhole<std::string>(path); }

void writetext(const std::filesystem::path& path, std::string_view text) {
    errno = 0;
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (!out) refuse(path, "cannot be written", errno);
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    out.close();
    if (!out) refuse(path, "cannot be written", errno);
}

}  // namespace keld2::host
