// Texts that are not only read but played on whole sessions.
#pragma once

#include <string>
#include <string_view>

namespace keld2::fuzz {

// A replay text on a job: 'a' to 'e' behind a '#' at the text's begin chooses it. The record of the
// session gives the same session again.
std::string playreplay(std::string_view text);

// An SVF text on a device that the text's length chooses, on a programmer whose answers are the
// default ones. The run fails where the check says so and, as long as the text compares nothing,
// only there.
std::string playsvf(std::string_view text);

}  // namespace keld2::fuzz
