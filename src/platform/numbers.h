// Checked arithmetic and number texts, as all rooms use them.
#pragma once

#include <cstdint>
#include <string>

namespace keld2 {

// Nearest integer, ties to even. Throws RunFault when x is no number or does not fit 32 bits.
std::int32_t roundint32(double x);
std::int64_t roundint64(double x);  // the same in 64 bits
// The low 32 bits must hold the value; throws RunFault otherwise.
std::int32_t checkedint32(std::int64_t x);
// The value must lie in 0 to 255; throws RunFault otherwise.
std::uint8_t checkedbyte(std::int64_t x);

// A number as it is written by default: a leading blank when not negative, no trailing zeros:
// 5.25 gives " 5.25", 5 gives " 5", 0.95 gives " 0.95".
std::u16string numbertext(double x);
// "0.00" with a point: the elapsed seconds of a run. Negative values count as 0.
std::u16string secondstext(double seconds);
// Upper-case hexadecimal without leading zeros; negative values as 32-bit two's complement.
std::u16string hextext(std::int32_t x);
// Decimal with leading zeros to at least six digits.
std::u16string sixdigits(std::int32_t x);

std::u16string utf16(const std::string& utf8);  // ill-formed input gives U+FFFD
std::string utf8(const std::u16string& utf16);  // lone surrogates give U+FFFD

}  // namespace keld2
