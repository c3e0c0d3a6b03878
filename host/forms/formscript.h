// What a script does in the editors of a session: one action a line, as a JSON array; a blank
// line ends one editor's actions and begins the next one's.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace keld2::host {

struct FormAction {
    enum class Kind { caret, key, keydown, choose, select, ok, cancel };
    Kind kind = Kind::cancel;
    std::string control;         // of all but ok and cancel
    std::int64_t number = 0;     // caret: position; keydown: key code; choose: index
    std::int64_t selection = 0;  // caret: characters selected
    char16_t character = 0;      // key
    std::int64_t line = 0;       // in the file, from 1
};

struct FormScript {
    std::filesystem::path path;
    std::vector<std::vector<FormAction>> editors;  // in the order in which they open
};

// Throws HostError: 66 when the file cannot be opened, 65 with the line, what is wrong in it and
// what was expected.
FormScript readformscript(const std::filesystem::path& path);

}  // namespace keld2::host
