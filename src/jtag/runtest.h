// RUNTEST statements: read, then executed. Each family understands its own forms and gives the
// clocks in its own way: as byte clocks and pulses, or as a pause.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "jtag/lines.h"

namespace keld2 {

inline constexpr std::int32_t mostclocks = 100'000'000;  // of a RUNTEST

struct RuntestStatement {
    enum class State { none, idle, drpause, irpause };
    struct Pause {
        bool longticks = false;  // milliseconds, else microseconds
        std::int32_t ticks = 0;
    };
    State state = State::none;
    std::int32_t clocks = 0;          // 0 to mostclocks
    std::optional<Pause> pause = {};  // the seconds, where the family uses them
};

// line: the statement's one line, as it stands in the file. Fault: "TCK" or, where the seconds are
// used, "SEC" is missing, the count is no 32-bit integer or above mostclocks, the last word before
// "SEC" is no number. Negative counts and seconds count as 0.
RuntestStatement readruntest(RuntestKind kind, std::string_view line);

// Queues the statement by the family's kind; nothing is run. pwte: pwte[0].
void executeruntest(QueuedLines& lines, DevCore& devcore, const RuntestStatement& statement,
                    std::int32_t pwte);

}  // namespace keld2
