// Between image files and a device's main buffer.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "host/catalogue/device.h"
#include "host/files/imagefile.h"
#include "host/run/devicerun.h"

namespace keld2::host {

// The content of a file, as it goes into a device's main buffer.
struct DeviceData {
    std::filesystem::path path;
    std::vector<BufferPart> parts;
    std::uint64_t size = 0;                 // bytes (of a fuse map: fuses) that the file gives
    std::vector<const DeviceRange*> given;  // ranges that the file gives something of
    std::optional<bool> secured;            // a fuse map's wish for the security fuse

    bool gives(std::string_view writtenby) const;
};

// Reads a file and checks it against the device: format, fuse count, addresses. Throws HostError:
// 66 when it cannot be opened, 65 with what is wrong and what was expected.
DeviceData loaddata(const Device& device, const std::filesystem::path& path,
                    std::optional<FileFormat> format);
// Whether the data are enough for the steps. Throws HostError (65).
void checkdata(const Device& device, const DeviceData& data,
               const std::vector<const Operation*>& steps);
// What the data ask for that none of the steps does, a sentence each.
std::vector<std::string> notices(const DeviceData& data,
                                 const std::vector<const Operation*>& steps);

// The format of a file that is to be written for the device. Throws HostError (65) when the ending
// names none, or one that cannot hold the device's content.
FileFormat outputformat(const Device& device, const std::filesystem::path& path,
                        std::optional<FileFormat> format);
// The text of that file, from the main buffer after a read.
std::string filetext(const Device& device, const std::vector<std::uint8_t>& buffer,
                     FileFormat format);

}  // namespace keld2::host
