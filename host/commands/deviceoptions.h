// The options that the commands on a device share.
#pragma once

#include <CLI/CLI.hpp>

#include <filesystem>
#include <optional>
#include <string>

#include "host/catalogue/device.h"
#include "host/commands/console.h"
#include "host/files/imagefile.h"
#include "host/programmer/programmer.h"

namespace keld2::host {

struct DeviceOptions {
    std::string device;
    std::string programmer;  // empty: the simulated one
    std::string language = "en";
    std::string progress = "auto";
    std::string onbox;   // empty: boxes are asked
    std::string format;  // empty: by the file name's ending
    bool quiet = false;
    bool json = false;
    bool force = false;
    std::optional<std::filesystem::path> vcd;  // the run as a waveform
    std::optional<bool> explain;               // none: on a terminal
};

// Adds the options to the program; they may stand before and behind the command.
void adddeviceoptions(CLI::App& program, DeviceOptions& options);

// What is wrong with an option's value, and what was expected, as HostError (64).
[[noreturn]] void refuseoption(const std::string& option, const std::string& value,
                               const std::string& expected);

// The options' values. Throw HostError (64) with what is wrong and what was expected; 65 for a
// device that the catalogue does not have.
Device chosendevice(const DeviceOptions& options);
ConsoleOptions consoleoptions(const DeviceOptions& options);
std::int32_t languageoffset(const DeviceOptions& options);
std::optional<FileFormat> fileformat(const DeviceOptions& options);

}  // namespace keld2::host
