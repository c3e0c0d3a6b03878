// The log lines and the percent cell of a run.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "plugin/texts/texts.h"
#include "run/runcontext.h"

namespace keld2 {

inline constexpr std::size_t loglimit = 1500;  // characters; a longer log starts over

// The plug-in's own text in the host's language.
std::u16string owntext(SharedVariables& s, TextId id);

// prgnote[0], what, prgnote[1]: an operation's or stage's name as headline and caption show it.
std::u16string headline(SharedVariables& s, std::u16string_view what);
void appendlog(SharedVariables& s, std::u16string_view text);       // to MainRtstr[0], as it stands
void appendheadline(SharedVariables& s, std::u16string_view what);  // ">>", headline, LF
void restartlonglog(SharedVariables& s);  // empties a log of more than loglimit characters
// The line that tells how operation op ended, by prgresult[0].
void appendresult(SharedVariables& s, std::int16_t op);
// prgnote[5], LF, prgnote[headindex], LF and the collected list replace the log; the list empties.
void replacelogbyreport(SharedVariables& s, std::int64_t headindex);

// VCC of a verify margin in units of 10 mV: bvcc[0] up (sign 1) or down (sign -1) by
// wlverifyvcc[0] steps of 5 %, rounded.
std::int32_t marginvcc(SharedVariables& s, int sign);

// Percent of chip address a within the job, into prgmode[1]; 0 when the job has no length.
void writepercent(SharedVariables& s, std::int32_t a);

}  // namespace keld2
