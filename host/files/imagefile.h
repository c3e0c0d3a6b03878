// Chip images in files: raw bytes, Intel HEX, S-records, JEDEC fuse maps.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "host/files/jedec.h"
#include "host/files/segments.h"

namespace keld2::host {

enum class FileFormat { raw, intelhex, srecord, jedec };

// By its name on the command line: bin, hex, srec, jed.
std::optional<FileFormat> formatnamed(std::string_view name);
// The names as a sentence: "bin, hex, srec or jed".
std::string formatnames();
// By the file name's ending, of either case. Throws HostError (65) when it names no format.
FileFormat formatof(const std::filesystem::path& path);

// A raw file is one segment at address 0; of a fuse map the cells are given. Without a format the
// ending tells it. Throw HostError: 66 when the file cannot be opened, 65 when its ending or its
// content cannot be used.
Image loadimage(const std::filesystem::path& path, std::optional<FileFormat> format = {});
FuseMap loadfusemap(const std::filesystem::path& path);

// The bytes of a file of that format; not jedec. In a raw file fill stands for what no segment
// gives; its first byte has the address 0.
std::string imagetext(const Image& image, FileFormat format, std::uint8_t fill = 255);

}  // namespace keld2::host
