// The words for a single line of a trace.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "host/tell/step.h"
#include "host/tell/traceline.h"

namespace keld2::host {

std::string wordsof(const TraceLine& line);
// What a frame to the programmer asks for.
std::string framewords(std::span<const std::uint8_t> frame);
// The line as a step without parts; without words where the line has no text.
Step leafof(const TraceLine& line);

// "0x00FF", with that many digits at least.
std::string hexwords(std::uint64_t value, int digits);
// "250 us", "100 ms", "1.5 s".
std::string timewords(std::int64_t microseconds);
// Of a pause, queued or not; 0 for other calls.
std::int64_t pauseof(const TraceLine& line);
// "1 byte", "3 bytes".
std::string counted(std::int64_t count, const std::string& noun);

}  // namespace keld2::host
