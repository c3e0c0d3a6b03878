#include "sim/faults.h"

#include <array>
#include <charconv>
#include <optional>

#include "platform/fault.h"

namespace keld2::sim {

namespace {

constexpr const char* forms =
    "refuse[=COUNT], modefail[=COUNT], bulkfail[=COUNT], bulkhang[=COUNT], transferfail[=COUNT], "
    "sendfail[=COUNT], stuck=ADDRESS:BIT[:LEVEL], wrongid, nopower, weak=ADDRESS, "
    "phasefail=PHASE:ADDRESS, neverdone or nostop";

struct CountedRow {
    std::string_view name;
    CountedFault Faults::*fault;
};

constexpr std::array counted{
    CountedRow{"refuse", &Faults::refuse},
    CountedRow{"modefail", &Faults::modefail},
    CountedRow{"bulkfail", &Faults::bulkfail},
    CountedRow{"bulkhang", &Faults::bulkhang},
    CountedRow{"transferfail", &Faults::transferfail},
    CountedRow{"sendfail", &Faults::sendfail},
};

struct PlainRow {
    std::string_view name;
    bool& (*fault)(Faults& faults);
};

constexpr std::array plain{
    PlainRow{"wrongid", [](Faults& f) -> bool& { return f.wrongid; }},
    PlainRow{"nopower", [](Faults& f) -> bool& { return f.nopower; }},
    PlainRow{"neverdone", [](Faults& f) -> bool& { return f.arm.neverdone; }},
    PlainRow{"nostop", [](Faults& f) -> bool& { return f.arm.nostop; }},
};

[[noreturn]] void refuse(std::string_view text, const std::string& expected) {
    throw RunFault("cannot be understood, expected " + expected,
                   "fault '" + std::string(text) + "'");
}

std::optional<std::uint32_t> number(std::string_view digits) {
    const bool hexadecimal = digits.starts_with("0x") || digits.starts_with("0X");
    if (hexadecimal) digits.remove_prefix(2);
    std::uint32_t value = 0;
    const char* end = digits.data() + digits.size();
    const auto [behind, error] = std::from_chars(digits.data(), end, value, hexadecimal ? 16 : 10);
    if (error != std::errc{} || behind != end) return {};
    return value;
}

// Cuts text at the first colon and answers what stood before it.
std::string_view cutfield(std::string_view& text) {
    const std::size_t colon = text.find(':');
    const std::string_view field = text.substr(0, colon);
    text = colon == std::string_view::npos ? std::string_view{} : text.substr(colon + 1);
    return field;
}

StuckBit stuckbit(std::string_view text, std::string_view value) {
    std::string_view rest = value;
    const auto address = number(cutfield(rest));
    const auto bit = number(cutfield(rest));
    const bool haslevel = !rest.empty();
    const auto level = haslevel ? number(cutfield(rest)) : 0U;
    if (!address || !bit || *bit > 7 || !level || *level > 1 || !rest.empty() ||
        value.ends_with(':'))
        refuse(text, "stuck=ADDRESS:BIT[:LEVEL] with BIT 0 to 7 and LEVEL 0 or 1");
    return {.address = *address, .bit = static_cast<std::uint8_t>(*bit), .level = *level == 1};
}

std::uint32_t weakbyte(std::string_view text, std::string_view value) {
    const auto address = number(value);
    if (!address) refuse(text, "weak=ADDRESS");
    return *address;
}

void failphase(ArmFaults& faults, std::string_view text, std::string_view value) {
    const auto phase = phasenamed(cutfield(value));
    const auto address = number(value);
    if (!phase || !address)
        refuse(text, "phasefail=PHASE:ADDRESS with PHASE one of " + allphases());
    faults.failphase = phase;
    faults.failaddress = *address;
}

void aim(CountedFault& fault, std::string_view text, std::optional<std::string_view> value) {
    if (!value) return fault.aim(1, true);
    std::string_view digits = *value;
    const bool onwards = digits.ends_with('+');
    if (onwards) digits.remove_suffix(1);
    const auto count = number(digits);
    if (!count || *count == 0) refuse(text, "a count from 1, with + behind it for all later calls");
    fault.aim(*count, onwards);
}

}  // namespace

void addfault(Faults& faults, std::string_view text) {
    const std::size_t equals = text.find('=');
    const std::string_view name = text.substr(0, equals);
    std::optional<std::string_view> value;
    if (equals != std::string_view::npos) value = text.substr(equals + 1);
    for (const CountedRow& row : counted)
        if (row.name == name) return aim(faults.*row.fault, text, value);
    for (const PlainRow& row : plain) {
        if (row.name != name) continue;
        if (value) refuse(text, std::string(name) + " without a value");
        row.fault(faults) = true;
        return;
    }
    if (name == "stuck" && value) return faults.stuck.push_back(stuckbit(text, *value));
    if (name == "weak" && value) return faults.weak.push_back(weakbyte(text, *value));
    if (name == "phasefail" && value) return failphase(faults.arm, text, *value);
    refuse(text, forms);
}

}  // namespace keld2::sim
