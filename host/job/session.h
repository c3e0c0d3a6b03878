// One host session: the blocks, the plug-in, the calls of a job, and what comes of them.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "host/forms/formfrontend.h"
#include "host/job/jobfile.h"

namespace keld2::host {

struct SessionOptions {
    std::optional<std::filesystem::path> replay;  // without it: the simulated programmer
    std::optional<std::filesystem::path> record;
    std::optional<std::filesystem::path> trace;
    std::vector<std::string> tracewithout;  // names of lines that are left out
    std::optional<std::filesystem::path> dump;
    // Shows editors; nullptr: they are cancelled.
    FormFrontEnd* forms = nullptr;
};

// Runs the job to its end and answers the exit status that its result stands for. Throws HostError
// when a file cannot be used, and (exit 65) when the run waits for something that never comes.
int runsession(const Job& job, const SessionOptions& options);

}  // namespace keld2::host
