// A programmer that gives one wrong answer, and a watch over what a run leaves switched on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <set>

#include "host/programmer/sessionprogrammer.h"

namespace keld2::test {

enum class Fault {
    none,
    wrong,  // the answer that says no: refused, failed, not sent; of a register: all bits turned
    hang,   // of a bulk read: it never ends
    stop    // somebody asks for a stop at this answer
};

struct FaultPlan {
    Fault fault = Fault::none;
    std::size_t answer = 0;  // which one, from 1
};

// What was seen of a run.
struct FaultWatch {
    std::size_t answers = 0;               // of all operations that have one
    std::set<std::size_t> bulkreads = {};  // which of them
    bool unnoticed = false;  // the fault struck where no run looks: a frame's result, a register
    bool powered = false;    // since the last power-down
    bool queried = false;    // an ARM device's programmer has told its state since then
    int timers = 0;          // set and not killed
};

// watch outlives what the factory makes.
host::ProgrammerFactory faulty(host::ProgrammerFactory inner, FaultPlan plan, FaultWatch& watch);

}  // namespace keld2::test
