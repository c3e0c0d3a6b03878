// Cases as text that a source includes from tests/data: "[SUBJECT]" begins those of a subject, each
// of them a line TEXT => ANSWER. In both stand \n, \r, \t, \0 and \s for line end, carriage return,
// tab, NUL and blank. A line that begins with # is a comment.
#pragma once

#include <array>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace keld2::testing {

struct TextCase {
    std::string subject, text, answer;
};

inline std::string unescaped(std::string_view text) {
    constexpr std::array<std::pair<char, char>, 5> meanings{
        {{'n', '\n'}, {'r', '\r'}, {'t', '\t'}, {'0', '\0'}, {'s', ' '}}};
    std::string meant;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool escaped = text[i] == '\\' && i + 1 < text.size();
        char c = text[escaped ? ++i : i];
        for (const auto& [name, meaning] : meanings)
            if (escaped && c == name) c = meaning;
        meant += c;
    }
    return meant;
}

inline std::vector<TextCase> readcases(std::string_view file) {
    constexpr std::string_view arrow = " =>";
    std::vector<TextCase> cases;
    std::string_view subject;
    for (std::size_t end = 0; end != file.npos; file.remove_prefix(end + 1)) {
        end = file.find('\n');
        const std::string_view line = file.substr(0, end);
        if (line.starts_with('[')) subject = line.substr(1, line.find(']') - 1);
        if (!line.empty() && line[0] != '#' && line[0] != '[') {
            const std::size_t at = line.rfind(arrow);
            if (at == line.npos) throw std::runtime_error("no answer: " + std::string(line));
            const std::size_t answer = std::min(at + arrow.size() + 1, line.size());
            cases.push_back({std::string(subject), unescaped(line.substr(0, at)),
                             unescaped(line.substr(answer))});
        }
        if (end == file.npos) break;
    }
    return cases;
}

}  // namespace keld2::testing
