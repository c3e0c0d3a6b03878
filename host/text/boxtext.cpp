#include "host/text/boxtext.h"

#include <array>

#include "platform/numbers.h"

namespace keld2::host {

namespace {

constexpr std::array<std::string_view, 3> buttonnames{"ok", "okcancel", "abortretryignore"};
constexpr std::array<std::string_view, 4> iconnames{"none", "information", "question",
                                                    "exclamation"};
constexpr std::array<std::string_view, 5> answernames{"ok", "cancel", "abort", "retry", "ignore"};

void appendescaped(std::string& out, char c) {
    constexpr char digits[] = "0123456789abcdef";
    switch (c) {
        case '"':
            out += "\\\"";
            return;
        case '\\':
            out += "\\\\";
            return;
        case '\n':
            out += "\\n";
            return;
        case '\r':
            out += "\\r";
            return;
        case '\t':
            out += "\\t";
            return;
        default:
            break;
    }
    const auto code = static_cast<unsigned char>(c);
    if (code >= 32) {
        out += c;
    } else {
        out += "\\x";
        out += digits[code >> 4];
        out += digits[code & 15];
    }
}

}  // namespace

std::string_view nameof(BoxButtons buttons) {
    return buttonnames.at(static_cast<std::size_t>(buttons));
}

std::string_view nameof(BoxIcon icon) { return iconnames.at(static_cast<std::size_t>(icon)); }

std::string_view nameof(BoxAnswer answer) {
    return answernames.at(static_cast<std::size_t>(answer));
}

std::optional<BoxAnswer> boxanswerof(std::string_view name) {
    for (std::size_t i = 0; i < answernames.size(); ++i)
        if (answernames[i] == name) return static_cast<BoxAnswer>(i);
    return std::nullopt;
}

BoxAnswer defaultanswer(BoxButtons buttons) {
    return buttons == BoxButtons::abortretryignore ? BoxAnswer::abort : BoxAnswer::ok;
}

std::string quotedtext(const std::u16string& text) {
    std::string out = "\"";
    for (const char c : utf8(text)) appendescaped(out, c);
    return out += '"';
}

}  // namespace keld2::host
