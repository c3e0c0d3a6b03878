// A device of the catalogue: what the host knows of a chip.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "host/catalogue/operations.h"
#include "host/job/sharedsettings.h"
#include "host/toml/tomlfile.h"

namespace keld2::host {

// A part of the chip's content: where it stands in files and in the main buffer, in bytes. Of a
// fuse map each fuse is a byte.
struct DeviceRange {
    std::string name;
    std::int64_t file = 0;
    std::int64_t buffer = 0;
    std::int64_t length = 0;
    std::string writtenby;  // program, config, or empty: read only

    std::int64_t fileend() const { return file + length; }
};

enum class Content {
    bytes,  // files hold bytes
    fuses   // files are fuse maps; the buffer holds a character a fuse
};

struct Device {
    std::string name;  // of the file, without its ending
    std::filesystem::path path;
    std::string description;  // one line
    Content content = Content::bytes;
    std::vector<SharedSetting> shared;
    std::vector<const Operation*> operations;  // in the order of the device file
    std::vector<const Operation*> autosteps;
    std::vector<DeviceRange> ranges;  // in address order
    toml::table sim;                  // as it stands; kind says which chip is simulated

    bool has(const Operation& operation) const;
    std::string operationlist() const;  // "read, verify, ..."
    std::int64_t value(std::string_view variable) const { return settingof(shared, variable); }
    std::int64_t fileend() const;     // behind the last address that a file can have
    std::int64_t buffersize() const;  // bytes of the main buffer
};

// Throws HostError: 66 when the file cannot be opened, 65 with file, line, key, what is wrong and
// what was expected.
Device readdevice(const std::filesystem::path& path);

}  // namespace keld2::host
