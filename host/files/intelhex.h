// Intel HEX files.
//
// Read: record types 00 to 05, in any order and with gaps. Data of a record run on linearly behind
// an extended linear address (04), and wrap within the 64 KiB segment behind a segment address
// (02).
#pragma once

#include <string>
#include <string_view>

#include "host/files/segments.h"

namespace keld2::host {

// name: of the file, for messages. Throws HostError (65) with line, what is wrong and what was
// expected.
Image readintelhex(std::string_view text, const std::string& name);
// Records of 16 bytes with extended linear addresses where they are needed.
std::string writeintelhex(const Image& image);

}  // namespace keld2::host
