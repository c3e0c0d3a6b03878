// Operation numbers: what the host asks for in prgresult[1] and autoprg, and indices into
// MainmnuPrg.
#pragma once

#include <cstdint>

namespace keld2::operation {

inline constexpr std::int16_t autoprogram = 0;  // the sequence of autoprg
inline constexpr std::int16_t read = 2;
inline constexpr std::int16_t verify = 3;
inline constexpr std::int16_t blankcheck = 4;
inline constexpr std::int16_t compare = 5;
inline constexpr std::int16_t program = 6;
inline constexpr std::int16_t erase = 8;
inline constexpr std::int16_t configuration = 9;  // or secure, by the family

}  // namespace keld2::operation
