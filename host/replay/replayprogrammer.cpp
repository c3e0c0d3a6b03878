#include "host/replay/replayprogrammer.h"

#include "host/hosterror.h"
#include "host/replay/replaydevice.h"

namespace keld2::host {

ReplayProgrammer::ReplayProgrammer(const std::filesystem::path& replay,
                                   const ProgrammerSetting& setting)
    : job_(setting.job),
      replay_(readreplay(replay, setting.job.parent_path())),
      platform_(setting.machine, {.replay = replay_,
                                  .time = time_,
                                  .guard = guard_,
                                  .trace = setting.trace,
                                  .s = setting.host}) {
    setting.trace.watch(
        [this](std::string_view name, std::string_view rest) { guard_.effect(name, rest); });
}

std::unique_ptr<DevCore> ReplayProgrammer::devcore(SharedVariables& s) {
    return std::make_unique<ReplayDevCore>(replay_, time_, s);
}

std::unique_ptr<UsbTransport> ReplayProgrammer::transport(SharedVariables&) {
    return std::make_unique<ReplayTransport>(replay_);
}

void ReplayProgrammer::finish() const {
    if (guard_.abandoned())
        throw HostError(exitstatus::data, job_.string() +
                                              ": the run is abandoned: " + guard_.wait() +
                                              " never ends, expected an answer that ends it");
}

}  // namespace keld2::host
