// A file that appears whole or not at all.
#pragma once

#include <filesystem>
#include <string_view>

namespace keld2::host {

// Whether a result can go there, so that it is known before any work is done. Throws HostError
// (66) when the file exists and overwrite is not set, or when its folder cannot be written.
void checkoutput(const std::filesystem::path& path, bool overwrite);

// Writes text beside the file under another name, then puts it in its place. Throws HostError
// (66); then an older file of that name is as it was.
void writeoutput(const std::filesystem::path& path, std::string_view text, bool overwrite);

}  // namespace keld2::host
