// JSON as text.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace keld2::host {

// Indented by two. Bytes that are no UTF-8, as names and contents of files may hold, become the
// replacement character.
std::string jsontext(const nlohmann::ordered_json& json);

}  // namespace keld2::host
