// Hexadecimal fields: the text's right end is byte 0, and bit 0 of byte 0 goes first.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace keld2 {

// Which digits of the last, incomplete byte of a field are used: none when the bits fill whole
// bytes, else one digit, or two.
enum class Tail { drive, stored };

// The bytes of nbits bits (1 or more) from a field. Byte i is made of the digits at length - 2i - 1
// and length - 2i, counted from 1 in text; length is the text's own or another's. An incomplete
// last byte is, for Tail::stored, one digit up to four bits and two beyond; for Tail::drive one
// digit where no more are there, else two. Digits that are missing or not hexadecimal are a fault.
// bytes is overwritten.
void decodefield(std::string_view text, std::size_t length, std::int32_t nbits, Tail tail,
                 std::vector<std::uint8_t>& bytes);

}  // namespace keld2
