#include "sim/chipspec.h"

#include "platform/fault.h"

namespace keld2::sim {

namespace {

constexpr std::int64_t mostmillivolts = 30000;
constexpr std::int64_t mostmicroseconds = 1'000'000'000;

std::string range(std::int64_t least, std::int64_t most) {
    return std::to_string(least) + " to " + std::to_string(most);
}

}  // namespace

void SpecReader::refuse(const std::string& key, const std::string& what) const {
    throw RunFault("key '" + key + "' " + what, "simulated chip of " + spec_.device);
}

const SpecValue& SpecReader::value(const std::string& key) {
    known_.insert(key);
    const auto found = spec_.values.find(key);
    if (found == spec_.values.end()) refuse(key, "is missing");
    return found->second;
}

std::int64_t SpecReader::integer(const std::string& key, std::int64_t least, std::int64_t most) {
    const auto* number = std::get_if<std::int64_t>(&value(key));
    if (number == nullptr) refuse(key, "is no integer, expected " + range(least, most));
    if (*number < least || *number > most)
        refuse(key, "is " + std::to_string(*number) + ", expected " + range(least, most));
    return *number;
}

std::int64_t SpecReader::integer(const std::string& key, std::int64_t least, std::int64_t most,
                                 std::int64_t otherwise) {
    known_.insert(key);
    return has(key) ? integer(key, least, most) : otherwise;
}

std::vector<std::int64_t> SpecReader::integers(const std::string& key, std::int64_t least,
                                               std::int64_t most) {
    const SpecValue& found = value(key);
    if (std::holds_alternative<std::int64_t>(found)) return {integer(key, least, most)};
    const auto* list = std::get_if<std::vector<std::int64_t>>(&found);
    if (list == nullptr) refuse(key, "is no list of integers");
    for (const std::int64_t number : *list)
        if (number < least || number > most)
            refuse(key, "holds " + std::to_string(number) + ", expected " + range(least, most));
    return *list;
}

std::string SpecReader::text(const std::string& key) {
    const auto* found = std::get_if<std::string>(&value(key));
    if (found == nullptr) refuse(key, "is no text");
    return *found;
}

SupplyNeeds SpecReader::supplies() {
    SupplyNeeds needs;
    for (const std::int64_t pin : integers("gndpin", 1, 255))
        needs.gndpins.push_back(static_cast<std::uint8_t>(pin));
    for (const std::int64_t pin : integers("vccpin", 1, 255))
        needs.vccpins.push_back(static_cast<std::uint8_t>(pin));
    needs.vccmin = static_cast<std::int32_t>(integer("vccmin", 0, mostmillivolts));
    needs.vccmax = static_cast<std::int32_t>(integer("vccmax", needs.vccmin, mostmillivolts));
    needs.vpppin = static_cast<std::uint8_t>(integer("vpppin", 0, 255, 0));
    if (needs.vpppin == 0) return needs;
    needs.vppmin = static_cast<std::int32_t>(integer("vppmin", 0, mostmillivolts));
    needs.vppmax = static_cast<std::int32_t>(integer("vppmax", needs.vppmin, mostmillivolts));
    return needs;
}

std::uint64_t SpecReader::microseconds(const std::string& key) {
    return static_cast<std::uint64_t>(integer(key, 0, mostmicroseconds)) * microsecond;
}

void SpecReader::finish() const {
    std::string expected;
    for (const std::string& key : known_) expected += (expected.empty() ? "" : ", ") + key;
    for (const auto& [key, unused] : spec_.values)
        if (!known_.contains(key)) refuse(key, "is unknown, expected one of " + expected);
}

}  // namespace keld2::sim
