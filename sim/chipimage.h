// The non-volatile state of a simulated chip in an image file, so that what one process programs
// another one reads.
//
// The file begins with lines of text: "keld2 chip image 1", "device NAME", one
// "section NAME BYTES CRC" for each section (CRC-32 in eight hexadecimal digits), "data"; the bytes
// of the sections follow. It is replaced whole or not at all.
#pragma once

#include <filesystem>
#include <span>
#include <string>

#include "sim/chip.h"

namespace keld2::sim {

// Reads the file into the sections, which have to be those of the file in name, size and order.
// False when there is no such file. Throws RunFault (file, what is wrong, what was expected) when
// it cannot be read or belongs to another device or is damaged; the sections are then unchanged.
bool loadimage(const std::filesystem::path& file, const std::string& device,
               std::span<const StateSection> sections);

// Writes the file: to a temporary one beside it first, which takes its place when it is safe on
// the disk. Throws RunFault.
void saveimage(const std::filesystem::path& file, const std::string& device,
               std::span<const StateSection> sections);

}  // namespace keld2::sim
