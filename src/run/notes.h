// The log lines and the percent cell of a run.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "plugin/texts/texts.h"
#include "run/runcontext.h"
#include "shared/notes.h"

namespace keld2 {

inline constexpr std::size_t loglimit = 1500;  // characters; a longer log starts over

// The plug-in's own text in the host's language.
std::u16string owntext(SharedVariables& s, TextId id);

void restartlonglog(SharedVariables& s);  // empties a log of more than loglimit characters

// Percent of chip address a within the job, into prgmode[1]; 0 when the job has no length.
void writepercent(SharedVariables& s, std::int32_t a);

}  // namespace keld2
