// Helpers on the text of a statement. Lines are bytes as they stand in the file; blank means the
// character 32 alone. All errors are RunFault.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace keld2 {

// Without the blanks in front, or at both ends.
std::string_view LTrim(std::string_view text);
std::string_view Trim(std::string_view text);

// Takes characters with a code below 33 from both ends: up to 21 in front, any number behind.
// Fault when nothing is left.
std::string_view ClearTAB(std::string_view text);

// The characters between the first "(" and the first ")" behind it. Fault when one is missing.
std::string_view popdata(std::string_view text);

// The position of word, with exact case. Fault when text does not hold it.
std::size_t requireword(std::string_view text, std::string_view word);
bool holdsword(std::string_view text, std::string_view word);
// Whether text begins with word, without regard to case. word is in capitals.
bool beginswith(std::string_view text, std::string_view word);

// Decimal digits with an optional sign, blanks around them allowed. Fault for anything else, and
// for a value that the type does not hold.
std::int16_t readint16(std::string_view text);
std::int32_t readint32(std::string_view text);

}  // namespace keld2
