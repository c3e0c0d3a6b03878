// checkbyte and checkword of a DevCore: bytes and words read from a chip against the main buffer,
// for programmers that leave them to the plug-in's side.
//
// mode 0 stores the value and answers 0; 1 compares and 2 checks blank (255): a mismatch leaves 1
// in prgresult[0] and answers 1. Mode 3 collects a report line of each mismatch in MainRtstr[1]
// and answers 0, until the report has reportlimit lines; then a mismatch answers 1. An address
// outside ibuffer leaves 1 in prgresult[0] and answers 1 in every mode.
#pragma once

#include <cstddef>
#include <cstdint>

#include "shared/sharedvariables.h"

namespace keld2 {

namespace checkmode {
inline constexpr int store = 0;
inline constexpr int compare = 1;
inline constexpr int blank = 2;
inline constexpr int report = 3;
}  // namespace checkmode

inline constexpr std::ptrdiff_t reportlimit = 256;  // lines

// value: the chip's byte, 0 to 255; address: a byte of ibuffer.
int checkbyte(SharedVariables& s, std::int16_t value, std::int32_t address, int mode);
// The same with the word at ibuffer[2 * address], low byte first.
int checkword(SharedVariables& s, std::uint8_t low, std::uint8_t high, std::int32_t address,
              int mode);

}  // namespace keld2
