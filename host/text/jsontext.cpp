#include "host/text/jsontext.h"

#include <nlohmann/json.hpp>

namespace keld2::host {

std::string jsontext(const nlohmann::ordered_json& json) {
    return json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

}  // namespace keld2::host
