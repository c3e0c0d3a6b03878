// The machine that a run or a session is carried out on.
#pragma once

#include <filesystem>
#include <memory>

#include "platform/platform.h"

namespace keld2::host::os {

enum class Blocks {
    own,    // names that nobody else has: any number of hosts work side by side
    shared  // the plain names, by which components of other makers find them
};

// folder: the run's current folder. Boxes get the safe answer and forms are cancelled: a host that
// shows them wraps the machine.
std::unique_ptr<Platform> makemachine(const std::filesystem::path& folder = ".",
                                      Blocks blocks = Blocks::own);

}  // namespace keld2::host::os
