// The log lines of a run and the values of its result cell, as all runs write them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "shared/sharedvariables.h"

namespace keld2 {

// Values of prgresult[0].
namespace result {
inline constexpr std::uint8_t well = 0;
inline constexpr std::uint8_t failed = 1;
inline constexpr std::uint8_t stopped = 2;
inline constexpr std::uint8_t timedout = 3;
inline constexpr std::uint8_t badalgorithm = 4;  // ARM: the algorithm file is unusable
}  // namespace result

// The host's texts, by their index in prgnote.
namespace note {
inline constexpr std::int64_t before = 0;  // an operation's name in headline and caption
inline constexpr std::int64_t behind = 1;
inline constexpr std::int64_t well = 2;  // behind the name of an operation that ended so
inline constexpr std::int64_t failed = 3;
inline constexpr std::int64_t stopped = 4;  // a line of its own
inline constexpr std::int64_t reporttitle = 5;
inline constexpr std::int64_t armreporthead = 6;  // second line of the report of an ARM device
inline constexpr std::int64_t blankquestion = 7;  // after a failed blank check
inline constexpr std::int64_t blanktitle = 8;     // of the box that asks it
inline constexpr std::int64_t maker = 9;          // ahead of the digits of an id
inline constexpr std::int64_t device = 10;
inline constexpr std::int64_t reporthead = 11;
inline constexpr std::int64_t timedout = 12;  // a line of its own
inline constexpr std::int64_t count = 13;
}  // namespace note

// An operation's or stage's name as headline and caption show it.
std::u16string headline(SharedVariables& s, std::u16string_view what);
void appendlog(SharedVariables& s, std::u16string_view text);       // to MainRtstr[0], as it stands
void appendheadline(SharedVariables& s, std::u16string_view what);  // ">>", headline, LF
// The seconds since start (in seconds since midnight; may lie before it) as a run's last line.
void appendelapsed(SharedVariables& s, Platform& platform, double start);
// The line that tells how operation op ended; nothing for a result without a note.
void appendresult(SharedVariables& s, std::int16_t op, std::uint8_t ended);
// The title, the note head and the collected list, with LFs between, replace the log; the list
// empties.
void replacelogbyreport(SharedVariables& s, std::int64_t head);

// VCC of a verify margin in units of 10 mV: bvcc[0] up (sign 1) or down (sign -1) by
// wlverifyvcc[0] steps of 5 %, rounded.
std::int32_t marginvcc(SharedVariables& s, int sign);
// A VCC in units of 10 mV as the note of a verify stage: "(VCC: 5.25V) ".
std::u16string vccnote(std::int32_t vcc);

}  // namespace keld2
