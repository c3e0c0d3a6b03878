#include "host/forms/formscript.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <string_view>

#include "host/files/files.h"
#include "host/hosterror.h"
#include "platform/numbers.h"

namespace keld2::host {

namespace {

using nlohmann::json;
using Kind = FormAction::Kind;

constexpr std::uint64_t mostnumber = 2147483647;

// An action's name and what stands behind it.
struct ActionRow {
    std::string_view name;
    Kind kind;
    std::size_t fewest, most;  // elements of the array
    std::string_view expected;
};

constexpr std::array actionrows{
    ActionRow{"caret", Kind::caret, 3, 4,
              R"(["caret", BOX, POSITION] or ["caret", BOX, POSITION, LENGTH])"},
    ActionRow{"key", Kind::key, 3, 3, R"(["key", BOX, CHARACTER] with a text of one character)"},
    ActionRow{"keydown", Kind::keydown, 3, 3, R"(["keydown", BOX, CODE])"},
    ActionRow{"choose", Kind::choose, 3, 3, R"(["choose", COMBO, INDEX])"},
    ActionRow{"select", Kind::select, 2, 2, R"(["select", OPTION])"},
    ActionRow{"ok", Kind::ok, 1, 1, R"(["ok"])"},
    ActionRow{"cancel", Kind::cancel, 1, 1, R"(["cancel"])"},
};
constexpr std::string_view anyaction =
    "a JSON array that begins with caret, key, keydown, choose, select, ok or cancel";

// What is wrong with a line and what was expected.
struct Complaint {
    std::string wrong;
    std::string_view expected;
};

std::int64_t number(const json& value, const ActionRow& row) {
    const bool fits = value.is_number_unsigned() && value.get<std::uint64_t>() <= mostnumber;
    if (!fits)
        throw Complaint{value.dump() + " is no whole number from 0 to 2147483647", row.expected};
    return value.get<std::int64_t>();
}

// A character beyond 16 bits stands as its first half: no box takes either.
char16_t character(const json& value, const ActionRow& row) {
    const std::u16string text = value.is_string() ? utf16(value.get<std::string>()) : u"";
    const bool pair = text.size() == 2 && text[0] >= 0xD800 && text[0] < 0xDC00;
    if (text.size() != 1 && !pair) throw Complaint{value.dump() + " is no character", row.expected};
    return text[0];
}

const ActionRow& rowof(const json& line) {
    const bool named = line.is_array() && !line.empty() && line[0].is_string();
    if (!named) throw Complaint{"no action", anyaction};
    const auto name = line[0].get<std::string>();
    const auto row = std::ranges::find(actionrows, name, &ActionRow::name);
    if (row == actionrows.end()) throw Complaint{"there is no action " + name, anyaction};
    if (line.size() < row->fewest || line.size() > row->most)
        throw Complaint{std::to_string(line.size()) + " elements", row->expected};
    return *row;
}

FormAction parseaction(const std::string& text) {
    const json line = json::parse(text, nullptr, false);
    const ActionRow& row = rowof(line);
    FormAction action;
    action.kind = row.kind;
    if (line.size() > 1) {
        if (!line[1].is_string()) throw Complaint{line[1].dump() + " is no name", row.expected};
        action.control = line[1].get<std::string>();
    }
    if (row.kind == Kind::key)
        action.character = character(line[2], row);
    else if (line.size() > 2)
        action.number = number(line[2], row);
    if (line.size() > 3) action.selection = number(line[3], row);
    return action;
}

bool closes(const FormAction& action) {
    return action.kind == Kind::ok || action.kind == Kind::cancel;
}

void addline(FormScript& script, const std::string& text, std::int64_t number) {
    if (text.find_first_not_of(" \t\r") == std::string::npos) {
        script.editors.emplace_back();
        return;
    }
    std::vector<FormAction>& actions = script.editors.back();
    if (!actions.empty() && closes(actions.back()))
        throw Complaint{"an action behind the one that closes the editor", "a blank line"};
    actions.push_back(parseaction(text));
    actions.back().line = number;
}

}  // namespace

FormScript readformscript(const std::filesystem::path& path) {
    const std::string content = readtext(path);
    FormScript script{.path = path, .editors = {{}}};
    std::int64_t number = 0;
    for (std::size_t from = 0; from < content.size();) {
        const std::size_t end = std::min(content.find('\n', from), content.size());
        try {
            addline(script, content.substr(from, end - from), ++number);
        } catch (const Complaint& complaint) {
            throw HostError(exitstatus::data, path.string() + ":" + std::to_string(number) + ": " +
                                                  complaint.wrong + ", expected " +
                                                  std::string(complaint.expected));
        }
        from = end + 1;
    }
    return script;
}

}  // namespace keld2::host
