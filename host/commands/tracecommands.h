// keld2 trace: what a trace says, in words.
#pragma once

#include <CLI/CLI.hpp>

namespace keld2::host {

// Adds the commands to the program; status takes their exit status.
void addtracecommands(CLI::App& program, int& status);

}  // namespace keld2::host
