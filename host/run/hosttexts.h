// The texts that the host writes into the shared variables.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/catalogue/device.h"

namespace keld2::host {

// The offset of a language block by the language's code: en, zh-cn, zh-tw, ko, pl, it, nl, pt, tr,
// hu, ru.
std::optional<std::int32_t> languagenamed(std::string_view code);
std::string languagecodes();  // "en, zh-cn, ..."

// Sets Language, the note texts and the operations' names.
void writetexts(SharedVariables& s, const Device& device, std::int32_t language);

}  // namespace keld2::host
