#include "host/files/textrecords.h"

#include "host/hosterror.h"

namespace keld2::host {

namespace {

constexpr char digitset[] = "0123456789ABCDEF";

std::string_view withoutend(std::string_view line) {
    while (!line.empty() && (line.back() == ' ' || line.back() == '\t')) line.remove_suffix(1);
    return line;
}

}  // namespace

std::vector<TextLine> textlines(std::string_view text) {
    std::vector<TextLine> lines;
    std::size_t number = 1;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
        const std::string_view line = withoutend(text.substr(0, end));
        if (!line.empty()) lines.push_back({number, line});
        const bool crlf = text.substr(end, 2) == "\r\n";
        text.remove_prefix(std::min(end + (crlf ? 2 : 1), text.size()));
        ++number;
    }
    return lines;
}

void refuseline(const std::string& name, std::size_t line, const std::string& message) {
    throw HostError(exitstatus::data, name + ":" + std::to_string(line) + ": " + message);
}

void refusefile(const std::string& name, const std::string& message) {
    throw HostError(exitstatus::data, name + ": " + message);
}

std::string hexdigits(std::uint64_t value, int digits) {
    std::string text;
    for (; digits > 0 || value != 0; value >>= 4, --digits)
        text.insert(text.begin(), digitset[value & 15]);
    return text;
}

void appendrecordbyte(std::string& out, std::uint8_t value) {
    out += digitset[value >> 4];
    out += digitset[value & 15];
}

int hexdigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

std::string shown(char c) {
    const auto code = static_cast<unsigned char>(c);
    if (code < 32 || code > 126) return "character " + std::to_string(code);
    return std::string("'") + c + "'";
}

std::string counted(std::uint64_t count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::vector<std::uint8_t> recordbytes(const std::string& name, const TextLine& line,
                                      std::size_t skip) {
    const std::string_view digits = line.text.substr(skip);
    std::vector<std::uint8_t> bytes((digits.size() + 1) / 2);
    for (std::size_t i = 0; i < digits.size(); ++i) {
        const int value = hexdigit(digits[i]);
        if (value < 0)
            refuseline(name, line.number,
                       shown(digits[i]) + " in column " + std::to_string(skip + i + 1) +
                           ", expected a hexadecimal digit");
        bytes[i / 2] = static_cast<std::uint8_t>(bytes[i / 2] * 16 + value);
    }
    if (digits.size() % 2 != 0)
        refuseline(name, line.number,
                   "record has " + std::to_string(digits.size()) +
                       " hexadecimal digits, expected an even number");
    return bytes;
}

}  // namespace keld2::host
