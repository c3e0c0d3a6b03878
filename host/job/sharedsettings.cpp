#include "host/job/sharedsettings.h"

#include <array>
#include <optional>
#include <stdexcept>

#include "host/toml/tomlfile.h"
#include "platform/numbers.h"

namespace keld2::host {

namespace {

// What an element type takes.
struct TypeRow {
    ElementType type;
    std::int64_t least = 0;
    std::int64_t most = 0;  // of the integer types
    std::string_view expected;
};

constexpr std::array typerows{
    TypeRow{ElementType::byte, 0, 255, "an integer from 0 to 255"},
    TypeRow{ElementType::i16, -32768, 32767, "an integer from -32768 to 32767"},
    TypeRow{ElementType::i32, -2147483648LL, 2147483647,
            "an integer from -2147483648 to 2147483647"},
    TypeRow{ElementType::f64, 0, 0, "a number"},
    TypeRow{ElementType::flag, -1, 1, "true or false"},
    TypeRow{ElementType::string, 0, 0, "a text"},
};

const TypeRow& typerow(ElementType type) {
    for (const TypeRow& row : typerows)
        if (row.type == type) return row;
    throw std::logic_error("element type without a row");
}

SharedValue element(const TomlFile& source, const std::string& key, const toml::node& node,
                    ElementType type) {
    const TypeRow& row = typerow(type);
    switch (type) {
        case ElementType::string:
            return utf16(source.text(key, node, row.expected));
        case ElementType::f64: {
            const auto value = node.value<double>();
            if (!node.is_number() || !value) source.wrongkind(key, node, row.expected);
            return *value;
        }
        case ElementType::flag: {
            if (const auto* flag = node.as_boolean()) return std::int64_t{flag->get() ? -1 : 0};
            const std::int64_t value = source.integer(key, node, row.least, row.most, row.expected);
            return std::int64_t{value != 0 ? -1 : 0};
        }
        default:
            return source.integer(key, node, row.least, row.most, row.expected);
    }
}

std::optional<std::size_t> rowof(std::string_view name) {
    for (std::size_t i = 0; i < blocktable.size(); ++i)
        if (blocktable[i].name == name) return i;
    return std::nullopt;
}

SharedSetting setting(const TomlFile& source, std::string_view name, const toml::node& node) {
    const std::string key = "[shared] " + std::string(name);
    const auto row = rowof(name);
    if (!row) source.raise(key, node, "is no shared variable", "the name of one");
    const BlockRow& block = blocktable[*row];
    SharedSetting result{.row = *row, .values = {}};
    const toml::array* list = node.as_array();
    if (list == nullptr) {
        result.values.push_back(element(source, key, node, block.type));
        return result;
    }
    if (block.count != 0 && list->size() > block.count)
        source.raise(key, node, std::to_string(list->size()) + " elements",
                     "at most " + std::to_string(block.count));
    result.values.reserve(list->size());
    for (std::size_t i = 0; i < list->size(); ++i)
        result.values.push_back(
            element(source, key + "[" + std::to_string(i) + "]", *list->get(i), block.type));
    return result;
}

template <typename T>
void put(SharedVariable<T>& variable, std::int64_t index, const SharedValue& value) {
    if constexpr (std::is_same_v<T, double>)
        variable[index] = std::get<double>(value);
    else
        variable[index] = static_cast<T>(std::get<std::int64_t>(value));
}

void put(SharedTexts& variable, std::int64_t index, const SharedValue& value) {
    variable[index] = std::get<std::u16string>(value);
}

}  // namespace

std::vector<SharedSetting> sharedsettings(const TomlFile& source) {
    std::vector<SharedSetting> settings;
    for (const auto& [key, value] : source.section("shared"))
        settings.push_back(setting(source, key.str(), value));
    return settings;
}

std::int64_t settingof(const std::vector<SharedSetting>& settings, std::string_view name,
                       std::int64_t otherwise) {
    for (const SharedSetting& one : settings)
        if (blocktable[one.row].name == name && !one.values.empty())
            return std::get<std::int64_t>(one.values[0]);
    return otherwise;
}

void apply(const SharedSetting& setting, SharedVariables& s) {
    const auto fill = [&](auto* variable) {
        std::int64_t index = 0;
        for (const SharedValue& value : setting.values)
            if (index < variable->size()) put(*variable, index++, value);
    };
    std::visit(fill, s.variable(setting.row));
}

}  // namespace keld2::host
