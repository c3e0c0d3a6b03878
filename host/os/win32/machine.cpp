#include "host/os/machine.h"

#include <windows.h>

#include <atomic>
#include <string>

#include "platform/win32/win32platform.h"

namespace keld2::host::os {

namespace {

std::string ownscope() {
    static std::atomic<int> count{0};
    return "keld2-run-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(count++) +
           "-";
}

// The system's machine without windows of its own.
class HostMachine final : public Win32Platform {
  public:
    using Win32Platform::Win32Platform;

    BoxAnswer messagebox(const Box& box) override { return safeanswer(box.buttons); }
    void showform(Form&) override {}
};

}  // namespace

std::unique_ptr<Platform> makemachine(const std::filesystem::path& folder, Blocks blocks) {
    return std::make_unique<HostMachine>(
        Win32Options{.scope = blocks == Blocks::own ? ownscope() : "", .folder = folder.wstring()});
}

}  // namespace keld2::host::os
