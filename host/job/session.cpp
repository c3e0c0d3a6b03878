#include "host/job/session.h"

#include <memory>

#include "host/files/files.h"
#include "host/hosterror.h"
#include "host/job/dump.h"
#include "host/job/preparation.h"
#include "host/record/recordingprogrammer.h"
#include "host/replay/replayprogrammer.h"
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
    // Throws HostError when an editor could not be used as asked.
    void check() const {
        if (forms_ != nullptr) forms_->check();
    }

  private:
    FormFrontEnd* forms_;
};

class Session {
  public:
    Session(const Job& job, const ProgrammerFactory& makeprogrammer, const SessionOutput& output,
            FormFrontEnd* forms, os::Blocks blocks)
        : job_(job),
          output_(output),
          machine_(os::makemachine(job.folder, blocks)),
          host_(machine_->memory(), machine_->strings()),
          programmer_(makeprogrammer(
              {.job = job_.path, .machine = *machine_, .trace = trace_, .host = host_})),
          recording_(programmer_->platform(), recorder_, trace_, host_),
          editors_(recording_, forms),
          tracing_(editors_, trace_, host_) {
        if (output.trace) trace_.open(*output.trace);
        trace_.leaveout(output.tracewithout);
        for (const auto& path : {output.record, output.dump})
            if (path) writetext(*path, "");  // what cannot be written is found before the run
    }

    int run() {
        prepare(job_, host_);
        makecalls();
        trace_.flush();
        if (output_.record) writetext(*output_.record, recorder_.text());
        if (output_.dump) writetext(*output_.dump, dumptext(host_));
        programmer_->finish();
        const std::uint8_t result = host_.prgresult[0];
        return result <= exitstatus::badalgorithm ? result : exitstatus::failed;
    }

  private:
    void makecalls() {
        Module module(platform(), external());
        ClsKELD2 plugin(module);
        plugin.bufcomkeld2(job_.num);
        for (const JobCall& call : job_.calls) {
            if (!programmer_->usable()) return;
            carryout(call, plugin, job_.num);
            editors_.check();
        }
    }

    Platform& platform() { return tracing_; }

    External external() {
        return {.devcore = [this](SharedVariables& s) { return makedevcore(s); },
                .transport = [this](SharedVariables& s) { return maketransport(s); },
                .helper = programmer_->helper()};
    }

    std::unique_ptr<DevCore> makedevcore(SharedVariables& s) {
        std::unique_ptr<DevCore> device = programmer_->devcore(s);
        if (output_.record)
            device = std::make_unique<RecordingDevCore>(std::move(device), recorder_, s);
        return std::make_unique<TracingDevCore>(std::move(device), trace_, s);
    }

    std::unique_ptr<UsbTransport> maketransport(SharedVariables& s) {
        std::unique_ptr<UsbTransport> transport = programmer_->transport(s);
        if (output_.record)
            transport = std::make_unique<RecordingTransport>(std::move(transport), recorder_);
        return std::make_unique<TracingTransport>(std::move(transport), trace_, s);
    }

    const Job& job_;
    const SessionOutput& output_;
    TraceLog trace_;
    Recorder recorder_;
    std::unique_ptr<Platform> machine_;
    SharedVariables host_;
    std::unique_ptr<SessionProgrammer> programmer_;
    RecordingPlatform recording_;
    EditorPlatform editors_;
    TracingPlatform tracing_;
};

}  // namespace

int runsession(const Job& job, const ProgrammerFactory& makeprogrammer, const SessionOutput& output,
               FormFrontEnd* forms, os::Blocks blocks) {
    return Session(job, makeprogrammer, output, forms, blocks).run();
}

ProgrammerFactory replayed(std::filesystem::path replay) {
    return [replay = std::move(replay)](const ProgrammerSetting& setting) {
        return std::make_unique<ReplayProgrammer>(replay, setting);
    };
}

}  // namespace keld2::host
