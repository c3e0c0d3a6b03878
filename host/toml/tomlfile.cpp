#include "host/toml/tomlfile.h"

#include <algorithm>

#include "host/files/files.h"
#include "host/hosterror.h"

namespace keld2::host {

namespace {

std::string kindname(const toml::node& node) {
    if (node.is_table()) return "a table";
    if (node.is_array()) return "an array";
    if (node.is_string()) return "a text";
    if (node.is_integer()) return "an integer";
    if (node.is_floating_point()) return "a number with a fraction";
    if (node.is_boolean()) return "true or false";
    return "a date or time";
}

toml::table parsed(const std::filesystem::path& path) {
    try {
        return toml::parse(readtext(path), path.string());
    } catch (const toml::parse_error& error) {
        throw HostError(exitstatus::data,
                        path.string() + ":" + std::to_string(error.source().begin.line) +
                            ": is no TOML text: " + std::string(error.description()));
    }
}

bool contains(const std::vector<std::string_view>& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace

TomlFile::TomlFile(std::filesystem::path path) : path_(std::move(path)), root_(parsed(path_)) {}

void TomlFile::raise(const std::string& key, const toml::node& node, const std::string& wrong,
                     std::string_view expected) const {
    std::string message = path_.string();
    if (node.source().begin.line != 0) message += ":" + std::to_string(node.source().begin.line);
    message += ": " + key + ": " + wrong;
    if (!expected.empty()) message += ", expected " + std::string(expected);
    throw HostError(exitstatus::data, message);
}

void TomlFile::wrongkind(const std::string& key, const toml::node& node,
                         std::string_view expected) const {
    raise(key, node, "is " + kindname(node), expected);
}

void TomlFile::missing(const std::string& key, std::string_view expected) const {
    throw HostError(exitstatus::data, path_.string() + ": " + key + ": is missing, expected " +
                                          std::string(expected));
}

std::int64_t TomlFile::integer(const std::string& key, const toml::node& node, std::int64_t least,
                               std::int64_t most, std::string_view expected) const {
    const auto* value = node.as_integer();
    if (value == nullptr) wrongkind(key, node, expected);
    if (value->get() < least || value->get() > most)
        raise(key, node, std::to_string(value->get()) + " is out of range", expected);
    return value->get();
}

std::string TomlFile::text(const std::string& key, const toml::node& node,
                           std::string_view expected) const {
    const auto* value = node.as_string();
    if (value == nullptr) wrongkind(key, node, expected);
    return value->get();
}

const toml::table& TomlFile::table(const std::string& key, const toml::node& node) const {
    const toml::table* table = node.as_table();
    if (table == nullptr) wrongkind(key, node, "the table [" + key + "]");
    return *table;
}

const toml::array& TomlFile::array(const std::string& key, const toml::node& node,
                                   std::string_view expected) const {
    const toml::array* array = node.as_array();
    if (array == nullptr) wrongkind(key, node, expected);
    return *array;
}

const toml::table& TomlFile::section(const std::string& name) const {
    const toml::node* node = root_.get(name);
    return node == nullptr ? none_ : table(name, *node);
}

void TomlFile::allowonly(const std::string& name, const toml::table& table,
                         const std::vector<std::string_view>& keys, std::string_view whose) const {
    std::string expected;
    for (const std::string_view key : keys)
        expected += (expected.empty() ? "" : ", ") + std::string(key);
    for (const auto& [key, value] : table)
        if (!contains(keys, key.str()))
            raise("[" + name + "] " + std::string(key.str()), value,
                  "is no key of " + std::string(whose), "one of " + expected);
}

void TomlFile::allowsections(const std::vector<std::string_view>& names,
                             std::string_view whose) const {
    std::string expected;
    for (const std::string_view name : names) {
        if (!expected.empty()) expected += name == names.back() ? " or " : ", ";
        expected += "[" + std::string(name) + "]";
    }
    for (const auto& [key, value] : root_)
        if (!contains(names, key.str()))
            raise(std::string(key.str()), value, "is no part of " + std::string(whose), expected);
}

}  // namespace keld2::host
