#include "host/job/session.h"

#include <memory>

#include "host/files/files.h"
#include "host/hosterror.h"
#include "host/job/dump.h"
#include "host/job/preparation.h"
#include "host/machine/localmachine.h"
#include "host/replay/replaydevice.h"
#include "host/replay/virtualplatform.h"
#include "host/trace/tracelog.h"
#include "host/trace/tracingdevcore.h"
#include "host/trace/tracingplatform.h"
#include "host/trace/tracingtransport.h"
#include "plugin/clskeld2.h"

namespace keld2::host {

namespace {

// The machine with the editors that the session's user sees.
class EditorPlatform final : public PlatformDecorator {
  public:
    EditorPlatform(Platform& inner, FormFrontEnd* forms)
        : PlatformDecorator(inner), forms_(forms) {}
    void showform(Form& form) override {
        if (forms_ != nullptr) forms_->show(form);
    }

  private:
    FormFrontEnd* forms_;
};

class ReplaySession {
  public:
    ReplaySession(const Job& job, const SessionOptions& options)
        : job_(job),
          options_(options),
          replay_(readreplay(*options.replay, job.path.parent_path())),
          machine_(job.folder),
          host_(machine_.memory(), machine_.strings()),
          virtual_(
              machine_,
              {.replay = replay_, .time = time_, .guard = guard_, .trace = trace_, .s = host_}),
          editors_(virtual_, options.forms),
          platform_(editors_, trace_, host_) {
        if (options.trace) trace_.open(*options.trace);
        trace_.leaveout(options.tracewithout);
        trace_.watch(
            [this](std::string_view name, std::string_view rest) { guard_.effect(name, rest); });
    }

    int run() {
        if (options_.dump) writetext(*options_.dump, "");
        prepare(job_, host_);
        makecalls();
        trace_.flush();
        if (options_.dump) writetext(*options_.dump, dumptext(host_));
        if (guard_.abandoned())
            throw HostError(exitstatus::data, job_.path.string() +
                                                  ": the run is abandoned: " + guard_.wait() +
                                                  " goes on without end, expected an answer that "
                                                  "ends it");
        return statusof(host_.prgresult[0]);
    }

  private:
    void makecalls() {
        Module module(platform_, external());
        ClsKELD2 plugin(module);
        plugin.bufcomkeld2(job_.num);
        for (const JobCall& call : job_.calls) {
            if (guard_.abandoned()) return;
            carryout(call, plugin);
            if (options_.forms != nullptr) options_.forms->check();
        }
    }

    External external() {
        return {.devcore = [this](SharedVariables& s) -> std::unique_ptr<DevCore> {
                    return std::make_unique<TracingDevCore>(
                        std::make_unique<ReplayDevCore>(replay_, time_, s), trace_, s);
                },
                .transport = [this](SharedVariables& s) -> std::unique_ptr<UsbTransport> {
                    return std::make_unique<TracingTransport>(
                        std::make_unique<ReplayTransport>(replay_), trace_, s);
                },
                .helper = {}};
    }

    static int statusof(std::uint8_t result) {
        return result <= exitstatus::badalgorithm ? result : exitstatus::failed;
    }

    const Job& job_;
    const SessionOptions& options_;
    Replay replay_;
    VirtualTime time_;
    WaitGuard guard_;
    TraceLog trace_;
    LocalMachine machine_;
    SharedVariables host_;
    VirtualPlatform virtual_;
    EditorPlatform editors_;
    TracingPlatform platform_;
};

}  // namespace

int runsession(const Job& job, const SessionOptions& options) {
    if (options.replay) return ReplaySession(job, options).run();
    throw HostError(exitstatus::programfault,
                    "this build has no simulated programmer, expected --replay FILE");
}

}  // namespace keld2::host
