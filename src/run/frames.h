// Short command frames to the programmer, built in ubuf1.
//
// A frame sets the bytes that it names and sends a given length; every other byte keeps what an
// earlier frame or start-up left there.
#pragma once

#include <cstdint>

#include "run/runcontext.h"

namespace keld2 {

namespace framekind {
inline constexpr std::uint8_t readback = 10;
inline constexpr std::uint8_t fastblock = 11;
inline constexpr std::uint8_t listmode = 13;
}  // namespace framekind

// Mode byte of the programmer's list engine.
namespace listmode {
inline constexpr std::uint8_t run = 42;    // list jobs of the serial and JTAG families
inline constexpr std::uint8_t fixed = 10;  // the fixed logic family
inline constexpr std::uint8_t off = 0;
}  // namespace listmode

// Bytes of a read-back block: 16384 data bytes and one end byte.
inline constexpr std::int16_t readbacklength = 16385;
inline constexpr std::int32_t readbackdata = 16384;
// Block length for the USB side, written to ubuflg[0].
inline constexpr std::int16_t usbblocklength = 16368;

// The first length bytes of ubuf1 as they stand; the result of the transport is not looked at.
void sendframe(const RunContext& run, std::int64_t length);
// Kind 13: ubuf1[0], [1] set, 15 bytes sent; ubuf1[4] to [14] carry the parameter record.
void sendlistmode(const RunContext& run, std::uint8_t mode);
// Kind 10 with 16, 64: arms the read-back for one block. 8 bytes; the row comparison of two
// families sends 15.
void armreadback(const RunContext& run, std::int64_t length = 8);
// Kind 10 with 0, 0: resets the read-back. 8 bytes.
void resetreadback(const RunContext& run);

}  // namespace keld2
