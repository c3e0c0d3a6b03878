#include "jtag/svftext.h"

#include <algorithm>
#include <charconv>

#include "platform/fault.h"

namespace keld2 {

namespace {

constexpr std::size_t clearedinfront = 21;

bool isspace(char c) { return static_cast<unsigned char>(c) < 33; }

char capital(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

template <typename Integer>
Integer readinteger(std::string_view text) {
    std::string_view digits = Trim(text);
    if (digits.starts_with('+') && !digits.starts_with("+-")) digits.remove_prefix(1);
    Integer value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc{} || end != digits.data() + digits.size())
        throw RunFault("\"" + std::string(text) + "\" is no integer of " +
                       std::to_string(8 * sizeof(Integer)) + " bits");
    return value;
}

}  // namespace

std::string_view LTrim(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    return text;
}

std::string_view Trim(std::string_view text) {
    text = LTrim(text);
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string_view ClearTAB(std::string_view text) {
    for (std::size_t i = 0; i < clearedinfront && !text.empty() && isspace(text.front()); ++i)
        text.remove_prefix(1);
    while (!text.empty() && isspace(text.back())) text.remove_suffix(1);
    if (text.empty()) throw RunFault("text expected, but there is none", "ClearTAB");
    return text;
}

std::string_view popdata(std::string_view text) {
    text.remove_prefix(requireword(text, "(") + 1);
    return text.substr(0, requireword(text, ")"));
}

std::size_t requireword(std::string_view text, std::string_view word) {
    const std::size_t position = text.find(word);
    if (position == std::string_view::npos)
        throw RunFault("\"" + std::string(word) + "\" is missing");
    return position;
}

bool holdsword(std::string_view text, std::string_view word) {
    return text.find(word) != std::string_view::npos;
}

bool beginswith(std::string_view text, std::string_view word) {
    return text.size() >= word.size() && std::equal(word.begin(), word.end(), text.begin(),
                                                    [](char w, char c) { return w == capital(c); });
}

std::int16_t readint16(std::string_view text) { return readinteger<std::int16_t>(text); }
std::int32_t readint32(std::string_view text) { return readinteger<std::int32_t>(text); }

}  // namespace keld2
