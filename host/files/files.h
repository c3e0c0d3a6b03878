// Whole files, read and written with errors that name the file.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace keld2::host {

// The path of a name in UTF-8, whatever the system thinks of bare characters.
std::filesystem::path filenamed(std::string_view name);

// Throw HostError (exit 66) when the file cannot be opened, read or written.
std::vector<std::uint8_t> readbytes(const std::filesystem::path& path);
std::string readtext(const std::filesystem::path& path);
void writetext(const std::filesystem::path& path, std::string_view text);

}  // namespace keld2::host
