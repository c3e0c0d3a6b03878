#include "host/job/jobcall.h"

#include <array>
#include <charconv>
#include <optional>
#include <stdexcept>

namespace keld2::host {

namespace {

using Method = JobCall::Method;

// A method by name, with the range of its argument; a method without one has no range.
struct MethodRow {
    std::string_view name;
    Method method;
    std::string_view expected;  // the call as it has to be written
    std::optional<std::pair<std::int64_t, std::int64_t>> range = std::nullopt;
    std::size_t leastwords = 1;
};

constexpr std::array methods{
    MethodRow{"runKeld2Prg", Method::runKeld2Prg, "runKeld2Prg"},
    MethodRow{"editfigkeld2", Method::editfigkeld2, "editfigkeld2"},
    MethodRow{"usercode", Method::usercode, "usercode"},
    MethodRow{"bufcomkeld2", Method::bufcomkeld2,
              "bufcomkeld2 or bufcomkeld2 NUM, from -32768 to 32767", std::pair{-32768, 32767}},
    MethodRow{"freesharebufferkeld2", Method::freesharebufferkeld2, "freesharebufferkeld2"},
    MethodRow{"keld2warn", Method::keld2warn, "keld2warn NO, from 0 to 255", std::pair{0, 255}, 2},
    MethodRow{"sinitkeld2", Method::sinitkeld2, "sinitkeld2"},
};

[[noreturn]] void refuse(std::string_view text, std::string_view expected) {
    throw std::invalid_argument("\"" + std::string(text) + "\" is no call, expected " +
                                std::string(expected));
}

std::vector<std::string_view> words(std::string_view text) {
    std::vector<std::string_view> found;
    for (std::size_t at = 0; (at = text.find_first_not_of(' ', at)) != text.npos;) {
        const std::size_t end = std::min(text.find(' ', at), text.size());
        found.push_back(text.substr(at, end - at));
        at = end;
    }
    return found;
}

std::optional<std::int64_t> number(std::string_view word) {
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc{} || end != word.data() + word.size()) return std::nullopt;
    return value;
}

const MethodRow* find(std::string_view name) {
    for (const MethodRow& row : methods)
        if (row.name == name) return &row;
    return nullptr;
}

}  // namespace

JobCall parsecall(std::string_view text) {
    const std::vector<std::string_view> parts = words(text);
    const MethodRow* row = parts.empty() ? nullptr : find(parts[0]);
    if (row == nullptr)
        refuse(text,
               "runKeld2Prg, editfigkeld2, usercode, bufcomkeld2, freesharebufferkeld2, keld2warn "
               "or sinitkeld2");
    const std::size_t mostwords = row->range ? 2 : 1;
    if (parts.size() < row->leastwords || parts.size() > mostwords) refuse(text, row->expected);
    JobCall call{.method = row->method};
    if (parts.size() > 1) {
        call.argument = number(parts[1]);
        if (!call.argument || *call.argument < row->range->first ||
            *call.argument > row->range->second)
            refuse(text, row->expected);
    }
    return call;
}

std::vector<JobCall> defaultcalls() {
    return {{.method = Method::sinitkeld2},
            {.method = Method::keld2warn, .argument = 0},
            {.method = Method::runKeld2Prg}};
}

void carryout(const JobCall& call, ClsKELD2& plugin, std::int16_t num) {
    switch (call.method) {
        case Method::runKeld2Prg:
            return plugin.runKeld2Prg(true);
        case Method::editfigkeld2:
            return plugin.editfigkeld2();
        case Method::usercode:
            return plugin.usercode();
        case Method::bufcomkeld2:
            return plugin.bufcomkeld2(static_cast<std::int16_t>(call.argument.value_or(num)));
        case Method::freesharebufferkeld2:
            return plugin.freesharebufferkeld2();
        case Method::keld2warn:
            return plugin.keld2warn(static_cast<std::uint8_t>(call.argument.value_or(0)));
        case Method::sinitkeld2:
            return plugin.sinitkeld2();
    }
}

}  // namespace keld2::host
