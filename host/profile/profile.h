// Profile: where the time of a run goes.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "host/programmer/sessionprogrammer.h"

namespace keld2::host {

struct Profile {
    // One use of time. programmer: the programmer's own time, by what its steps take and pauses
    // say; real: what passed here.
    struct Share {
        std::int64_t calls = 0;  // queued ones when their list runs
        std::chrono::nanoseconds programmer{0};
        std::chrono::nanoseconds real{0};
    };
    Share loop;       // services of the message loop, in which transfers are waited for
    Share transfers;  // frames, status records, bulk data
    Share waits;      // pauses, queued or not
    Share pulses;     // registers, shifts and bus cycles; the running of lists
    std::chrono::nanoseconds total{0};  // real time of the session

    // What is left of the session: the plug-in and the host themselves.
    std::chrono::nanoseconds host() const {
        return total - loop.real - transfers.real - waits.real - pulses.real;
    }
};

std::string profiletable(const Profile& profile);
std::string profilejson(const Profile& profile);

// The same programmer, with its calls counted and timed in profile, which outlives the session.
ProgrammerFactory profiled(ProgrammerFactory programmer, Profile& profile);

}  // namespace keld2::host
