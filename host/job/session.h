// One host session: the blocks, the plug-in, the calls of a job, and what comes of them.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "host/forms/formfrontend.h"
#include "host/job/jobfile.h"
#include "host/os/machine.h"
#include "host/programmer/sessionprogrammer.h"

namespace keld2::host {

// What a session writes and leaves out. No path: nothing is written.
struct SessionOutput {
    std::optional<std::filesystem::path> record;
    std::optional<std::filesystem::path> trace;
    std::vector<std::string> tracewithout = {};  // names of lines that are left out
    std::optional<std::filesystem::path> dump;
};

// Runs the job to its end on the programmer that makeprogrammer gives, and answers the exit status
// that its result stands for. Throws HostError when a file cannot be used, and (exit 65) when the
// run waits for something that never comes; trace, record and dump are written all the same.
// forms shows the editors; nullptr: they are cancelled.
int runsession(const Job& job, const ProgrammerFactory& makeprogrammer, const SessionOutput& output,
               FormFrontEnd* forms = nullptr, os::Blocks blocks = os::Blocks::own);

// A programmer that answers from a replay file.
ProgrammerFactory replayed(std::filesystem::path replay);

}  // namespace keld2::host
