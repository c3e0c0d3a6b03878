// Chip images in files, by the file name's ending.
#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace keld2::host {

// Bytes that stand together, from address on.
struct Segment {
    std::uint32_t address = 0;
    std::vector<std::uint8_t> bytes;
};

using Image = std::vector<Segment>;

// A raw file is one segment at address 0. Throws HostError: 66 when the file cannot be opened, 65
// when its content or its ending cannot be used.
Image loadimage(const std::filesystem::path& path);

}  // namespace keld2::host
