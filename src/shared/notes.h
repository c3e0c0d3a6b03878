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

// prgnote[0], what, prgnote[1]: an operation's or stage's name as headline and caption show it.
std::u16string headline(SharedVariables& s, std::u16string_view what);
void appendlog(SharedVariables& s, std::u16string_view text);       // to MainRtstr[0], as it stands
void appendheadline(SharedVariables& s, std::u16string_view what);  // ">>", headline, LF
// The seconds since start (in seconds since midnight; may lie before it) as a run's last line.
void appendelapsed(SharedVariables& s, Platform& platform, double start);
// prgnote[5], LF, prgnote[headindex], LF and the collected list replace the log; the list empties.
void replacelogbyreport(SharedVariables& s, std::int64_t headindex);

// VCC of a verify margin in units of 10 mV: bvcc[0] up (sign 1) or down (sign -1) by
// wlverifyvcc[0] steps of 5 %, rounded.
std::int32_t marginvcc(SharedVariables& s, int sign);
// A VCC in units of 10 mV as the note of a verify stage: "(VCC: 5.25V) ".
std::u16string vccnote(std::int32_t vcc);

}  // namespace keld2
