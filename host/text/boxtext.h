// Boxes and texts as the trace and the replay write them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/platform.h"

namespace keld2::host {

std::string_view nameof(BoxButtons buttons);
std::string_view nameof(BoxIcon icon);
std::string_view nameof(BoxAnswer answer);
std::optional<BoxAnswer> boxanswerof(std::string_view name);

// What a box answers where nobody says otherwise: ok, or abort where there is no ok.
BoxAnswer defaultanswer(BoxButtons buttons);

// In double quotes, as UTF-8, with \", \\, \n, \r, \t and \xNN for other characters below 32.
std::string quotedtext(const std::u16string& text);

}  // namespace keld2::host
