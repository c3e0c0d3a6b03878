// The command line of keld2.
#pragma once

namespace keld2::host {

// Carries out the command line and answers the exit status. Messages go to standard error.
int runcli(int argc, const char* const* argv);

}  // namespace keld2::host
