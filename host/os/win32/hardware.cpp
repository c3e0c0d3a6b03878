#include "host/programmer/hardware.h"

#include <windows.h>
//
#include <objbase.h>

#include "external/win32/closedcomponents.h"
#include "host/hosterror.h"

namespace keld2::host {

namespace {

constexpr auto anyhostsblock = "queltaibuffer66";  // the one whose name has no number in it

// Automation objects for this thread.
class Automation {
  public:
    Automation() : result_(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
    ~Automation() {
        if (SUCCEEDED(result_)) CoUninitialize();
    }
    Automation(const Automation&) = delete;
    Automation& operator=(const Automation&) = delete;

  private:
    HRESULT result_;
};

class HardwareProgrammer final : public SessionProgrammer {
  public:
    explicit HardwareProgrammer(Platform& machine) : machine_(machine) {
        if (const MemoryHandle other = machine.memory().open(anyhostsblock)) {
            machine.memory().close(other);
            throw HostError(exitstatus::failed,
                            "-p hardware: another program works with the programmer, expected "
                            "that it is ended first");
        }
    }

    Platform& platform() override { return machine_; }
    std::unique_ptr<DevCore> devcore(SharedVariables& s) override { return components_.devcore(s); }
    std::unique_ptr<UsbTransport> transport(SharedVariables& s) override {
        return components_.transport(s);
    }
    std::function<std::unique_ptr<TextHelper>()> helper() override { return components_.helper; }

  private:
    Platform& machine_;
    Automation automation_;
    External components_ = closedcomponents();
};

}  // namespace

ProgrammerFactory hardware() {
    return [](const ProgrammerSetting& setting) {
        return std::make_unique<HardwareProgrammer>(setting.machine);
    };
}

}  // namespace keld2::host
