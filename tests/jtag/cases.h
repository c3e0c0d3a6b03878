// Cases as lines of a file below tests/data that a source includes: "[SUBJECT]" begins those of a
// subject, each of them is TEXT => ANSWER. In both, \n, \r, \t, \0 and \s stand for line end,
// carriage return, tab, NUL and blank. A line that begins with # is a comment.
#pragma once

#include <sstream>
#include <string>
#include <vector>

namespace keld2::testing {

struct TextCase {
    std::string subject, text, answer;
};

inline std::string unescaped(const std::string& text) {
    using namespace std::string_literals;
    const std::string meanings = "?n\nr\rt\t0\0s "s;
    std::string meant;
    for (std::size_t i = 0; i < text.size(); ++i)
        meant += text[i] == '\\' ? meanings.at(meanings.find(text.at(++i)) + 1) : text[i];
    return meant;
}

inline std::vector<TextCase> readcases(const std::string& file) {
    std::vector<TextCase> cases;
    std::istringstream in(file);
    std::string subject;
    for (std::string line; std::getline(in, line);) {
        if (line.starts_with('[')) {
            subject = line.substr(1, line.find(']') - 1);
        } else if (!line.empty() && line[0] != '#') {
            const std::size_t arrow = line.rfind(" =>");
            const std::string answer = arrow + 3 < line.size() ? line.substr(arrow + 4) : "";
            cases.push_back({subject, unescaped(line.substr(0, arrow)), unescaped(answer)});
        }
    }
    return cases;
}

}  // namespace keld2::testing
