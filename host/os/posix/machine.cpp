#include "host/os/machine.h"

#include <unistd.h>

#include <atomic>
#include <string>

#include "platform/posix/posixplatform.h"

namespace keld2::host::os {

namespace {

// Blocks that a killed host has left behind go first.
std::string ownscope() {
    static std::atomic<int> count{0};
    removeleftovers("keld2-run-");
    return "keld2-run-" + std::to_string(::getpid()) + "-" + std::to_string(count++) + "-";
}

}  // namespace

std::unique_ptr<Platform> makemachine(const std::filesystem::path& folder, Blocks blocks) {
    return std::make_unique<PosixPlatform>(
        PosixOptions{.scope = blocks == Blocks::own ? ownscope() : "", .folder = folder});
}

}  // namespace keld2::host::os
