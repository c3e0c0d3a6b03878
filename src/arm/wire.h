// The wire layer of ARM runs: command frames, the status record, bulk transfers.
//
// A frame is built in place in ubuf1: the bytes that it names are written, every other byte keeps
// what an earlier frame left there. The answer of the programmer, the status record, is in ibuf1.
#pragma once

#include <cstdint>
#include <string>

#include "arm/profile.h"

namespace keld2 {

// Byte 0 of the status record.
inline constexpr std::uint8_t armdone = 0x64;  // 100 percent ends a step

// Byte 1 of the status record; anything else: running.
namespace armstate {
inline constexpr std::uint8_t stopped = 0x1E;  // after a stop frame
inline constexpr std::uint8_t failed = 0xFA;
}  // namespace armstate

// Byte 2 of the status record while an operation runs.
namespace armphase {
inline constexpr std::uint8_t erase = 0x1E;
inline constexpr std::uint8_t blankcheck = 0x28;
inline constexpr std::uint8_t program = 0x32;
inline constexpr std::uint8_t verify = 0x3C;
inline constexpr std::uint8_t configuration = 0x46;
inline constexpr std::uint8_t secure = 0x50;
}  // namespace armphase

// --- frames; the results of those that return nothing are not looked at ----------------------

void sendannounce(const ArmContext& c);       // a RunFault when the sum of wsign exceeds a byte
void sendimagewrite(const ArmContext& c);     // the next bulk write is the algorithm image
void sendimageread(const ArmContext& c);      // the next bulk read returns the image
void sendfirmwarequery(const ArmContext& c);  // the revision comes in byte 2 of the record
void senddevicecode(const ArmContext& c);
void sendstop(const ArmContext& c);
// Starts operation op on one RAM block. mark: 0x80 in the bank byte.
void sendoperation(const ArmContext& c, std::uint8_t op, std::int32_t block = 0, bool mark = false);
// The next bulk writes fill the programmer's RAM. Stores the transport's result in prgresult[0]
// and returns it: 1 failed.
int sendwriteselect(const ArmContext& c, std::uint8_t side);
// The next bulk reads empty the programmer's RAM. Only the low byte of bulk is sent.
void sendreadselect(const ArmContext& c, std::int32_t bulk);
// Side of the programmer's RAM for the bank in rambknum[0].
std::uint8_t bankside(const ArmContext& c);
inline constexpr std::uint8_t programside = 2;  // of the family that does not look at the bank

// --- status record -------------------------------------------------------------------------------

// Clears bytes 0 to last of the record, before an operation frame.
void clearrecord(const ArmContext& c, int last);
// Serves the message loop and fetches the newest record. False: the connection has failed.
bool nextrecord(const ArmContext& c);
bool stopasked(const ArmContext& c);
// The stop rule of Read, Compare and Verify, for the record at hand. True: the operation is left.
bool obeysstop(const ArmJob& job);
// Fields of a failure, two digits a byte, the most significant byte first.
std::u16string addressdigits(const ArmContext& c);
std::u16string devicedata(const ArmContext& c);  // one byte with words of one byte, else two
std::u16string bufferdata(const ArmContext& c);
// value as eight digits.
std::u16string longdigits(const ArmContext& c, std::uint32_t value);
// The device address of a failure.
std::uint32_t failureaddress(const ArmContext& c);

// --- bulk transfers ------------------------------------------------------------------------------

enum class ArmReadState { running, done, failed };
ArmReadState readstate(const ArmContext& c);
// Reads length bytes into ibuffer at address (mode 0) or to the start of ibuf2, in two attempts.
// 0 done; 1 failed twice, or 2 or 3 stands in prgresult[0], which it never writes itself.
int armbulkread(const ArmContext& c, std::int16_t mode, std::int32_t address, std::int32_t length);
// Sends a bulk of the main buffer. Stores the transport's result in prgresult[0] and returns it.
int sendbulk(const ArmContext& c, const ArmBulk& bulk);

}  // namespace keld2
