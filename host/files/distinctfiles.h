// The files that one command names.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace keld2::host {

struct NamedFile {
    std::string name;  // as the user knows it: an option or what the file is
    std::optional<std::filesystem::path> path;
    bool written = false;
};

// Throws HostError (64) when something would be written over another file of the command. What is
// no file, as a terminal or the null device, takes all.
void checkdistinct(const std::vector<NamedFile>& files);

}  // namespace keld2::host
