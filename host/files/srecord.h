// Motorola S-record files.
//
// Read: header S0, data S1 to S3, counts S5 and S6, ends S7 to S9; S4 is refused. A file is
// whole when its last record is an end or a count.
#pragma once

#include <string>
#include <string_view>

#include "host/files/segments.h"

namespace keld2::host {

// name: of the file, for messages. Throws HostError (65) with line, what is wrong and what was
// expected.
Image readsrecord(std::string_view text, const std::string& name);
// Records of 16 bytes with the shortest addresses that reach the image's end, a header and a count.
std::string writesrecord(const Image& image);

}  // namespace keld2::host
