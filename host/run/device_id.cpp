#include "host/run/device_id.h"

#include "host/arm/armdevice.h"
#include "host/files/textrecords.h"

namespace keld2::host {

namespace {

bool asksid(const Device& device) {
    return device.value("chipidtestmode") != 0 &&
           (device.value("compid") != 0 || device.value("typeid") != 0);
}

std::string bytedigits(std::int64_t value) {
    return hexdigits(static_cast<std::uint64_t>(value & 255), 2);
}

// The last byte read stands first.
std::string fusecode(const Device& device) {
    if (const auto code = device.sim["code"].value<std::int64_t>())
        return hexdigits(static_cast<std::uint64_t>(*code), 8);
    std::string digits;
    if (const toml::array* bytes = device.sim["code"].as_array())
        for (std::size_t i = bytes->size(); i > 0; --i)
            digits += bytedigits(bytes->get(i - 1)->value_or(std::int64_t{0}));
    return digits;
}

}  // namespace

bool checksid(const Device& device) {
    if (device.content == Content::fuses) return true;
    return asksid(device) && (isarm(device) || device.value("compid") != 0);
}

std::string expectedid(const Device& device) {
    if (device.content == Content::fuses) return fusecode(device);
    if (!asksid(device)) return {};
    return bytedigits(device.value("compid")) + ' ' + bytedigits(device.value("typeid"));
}

}  // namespace keld2::host
