// keld2 job: one host session.
#pragma once

#include <CLI/CLI.hpp>

namespace keld2::host {

// Adds the command to the program; status takes its exit status.
void addjobcommand(CLI::App& program, int& status);

}  // namespace keld2::host
