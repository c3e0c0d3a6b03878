// Options of the command line that name files.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

#include "host/files/files.h"

namespace keld2::host {

// path: takes the file that is named, as a path or an optional one; outlives the parsing.
template <typename Path>
CLI::Option* addpath(CLI::App& command, const std::string& name, Path& path,
                     const std::string& description) {
    return command.add_option_function<std::string>(
        name, [&path](const std::string& given) { path = filenamed(given); }, description);
}

}  // namespace keld2::host
