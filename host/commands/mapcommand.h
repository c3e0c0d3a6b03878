// keld2 map: a fuse map as a picture, or as text blocks on the terminal.
#pragma once

#include <filesystem>

#include "host/commands/deviceoptions.h"

namespace keld2::host {

// Adds the command to the program; options must outlive it, status takes the exit status.
void addmapcommand(CLI::App& program, const DeviceOptions& options, int& status);

// Draws the map of a file for the chosen device into out (.png or .svg). Throws HostError: 64 when
// the device has no fuse map or the ending is another, 65 and 66 by the files.
void drawmap(const DeviceOptions& options, const std::filesystem::path& file,
             const std::filesystem::path& out);
// The same checks, before any work is done.
void checkmapoutput(const DeviceOptions& options, const std::filesystem::path& out);

}  // namespace keld2::host
