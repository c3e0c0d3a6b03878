// What the readers of text image files share: numbered lines, hexadecimal records, messages.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace keld2::host {

struct TextLine {
    std::size_t number = 0;  // from 1
    std::string_view text;   // without its end and trailing blanks
};

// CR, LF and CR LF end a line. Empty lines are left out.
std::vector<TextLine> textlines(std::string_view text);

// Throw HostError (65): "NAME:LINE: MESSAGE" and "NAME: MESSAGE".
[[noreturn]] void refuseline(const std::string& name, std::size_t line, const std::string& message);
[[noreturn]] void refusefile(const std::string& name, const std::string& message);

// Upper-case hexadecimal with leading zeros to at least digits digits.
std::string hexdigits(std::uint64_t value, int digits);
void appendrecordbyte(std::string& out, std::uint8_t value);

// The value of a hexadecimal digit of either case, -1 for another character.
int hexdigit(char c);
// A character as messages show it.
std::string shown(char c);
// "1 byte", "2 bytes".
std::string counted(std::uint64_t count, const std::string& noun);

// The bytes of a record, whose digits begin at column skip of the line. Throws HostError for
// another character and for an odd number of digits.
std::vector<std::uint8_t> recordbytes(const std::string& name, const TextLine& line,
                                      std::size_t skip);

}  // namespace keld2::host
