// ReplayProgrammer: a replay file as the programmer of a session.
#pragma once

#include "host/programmer/sessionprogrammer.h"
#include "host/replay/virtualplatform.h"

namespace keld2::host {

class ReplayProgrammer final : public SessionProgrammer {
  public:
    // Reads the replay file; throws HostError as readreplay does.
    ReplayProgrammer(const std::filesystem::path& replay, const ProgrammerSetting& setting);

    Platform& platform() override { return platform_; }
    std::unique_ptr<DevCore> devcore(SharedVariables& s) override;
    std::unique_ptr<UsbTransport> transport(SharedVariables& s) override;
    bool usable() const override { return !guard_.abandoned(); }
    void finish() const override;

  private:
    std::filesystem::path job_;
    Replay replay_;
    VirtualTime time_;
    WaitGuard guard_;
    VirtualPlatform platform_;
};

}  // namespace keld2::host
