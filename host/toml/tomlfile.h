// A TOML file, and what is wrong with it: every message names file, line and key.
#pragma once

#include <toml++/toml.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace keld2::host {

class TomlFile {
  public:
    // Throws HostError: 66 when the file cannot be opened, 65 when it is no TOML text.
    explicit TomlFile(std::filesystem::path path);

    const std::filesystem::path& path() const { return path_; }
    const toml::table& root() const { return root_; }

    // Throw HostError (65): "FILE:LINE: KEY: WRONG, expected EXPECTED".
    [[noreturn]] void raise(const std::string& key, const toml::node& node,
                            const std::string& wrong, std::string_view expected) const;
    [[noreturn]] void wrongkind(const std::string& key, const toml::node& node,
                                std::string_view expected) const;
    [[noreturn]] void missing(const std::string& key, std::string_view expected) const;

    // Values, checked: an integer from least to most, a text, a table, an array.
    std::int64_t integer(const std::string& key, const toml::node& node, std::int64_t least,
                         std::int64_t most, std::string_view expected) const;
    std::string text(const std::string& key, const toml::node& node,
                     std::string_view expected) const;
    const toml::table& table(const std::string& key, const toml::node& node) const;
    const toml::array& array(const std::string& key, const toml::node& node,
                             std::string_view expected) const;

    // The table [name] of the root; an empty one when there is none.
    const toml::table& section(const std::string& name) const;
    // A key of the table [name] that is none of keys is refused. whose: "a job", "a device".
    void allowonly(const std::string& name, const toml::table& table,
                   const std::vector<std::string_view>& keys, std::string_view whose) const;
    // The same for the root.
    void allowsections(const std::vector<std::string_view>& names, std::string_view whose) const;

  private:
    std::filesystem::path path_;
    toml::table root_;
    toml::table none_;
};

}  // namespace keld2::host
