#include "host/commands/devicejob.h"

#include <algorithm>
#include <chrono>
#include <iostream>
#include <iterator>
#include <memory>

#include "host/commands/interruptwatch.h"
#include "host/commands/runresult.h"
#include "host/files/distinctfiles.h"
#include "host/files/files.h"
#include "host/files/outputfile.h"
#include "host/hosterror.h"
#include "host/os/terminal.h"
#include "host/programmer/hardware.h"
#include "host/run/devicedata.h"
#include "host/run/log_differences.h"
#include "host/wave/waveprogrammer.h"

namespace keld2::host {

namespace {

[[noreturn]] void refuseusage(const std::string& message) {
    throw HostError(exitstatus::usage, message);
}

class DeviceCommand {
  public:
    DeviceCommand(const DeviceJob& job, const DeviceOptions& options)
        : job_(job),
          options_(options),
          device_(chosendevice(options)),
          steps_(job.steps.empty() ? device_.autosteps : job.steps),
          language_(languageoffset(options)),
          console_(consoleoptionsfor()) {}

    int run() {
        checksteps();
        if (reads())
            checkoutput(filenamed(job_.file), options_.force);
        else
            loadfile();
        texts_ = texts();
        const ProgrammerChoice choice = parseprogrammer(orelse(options_.programmer, "sim"));
        checkfiles(choice);
        if (options_.programmer.empty() || !options_.quiet) console_.say(described(choice));
        return runwith(choice);
    }

  private:
    static std::string orelse(const std::string& text, const char* otherwise) {
        return text.empty() ? otherwise : text;
    }
    bool reads() const { return !job_.sequence && steps_.front()->name == "read"; }

    ConsoleOptions consoleoptionsfor() const {
        ConsoleOptions console = consoleoptions(options_);
        console.differencesaside = true;
        return console;
    }

    void checksteps() {
        if (steps_.empty())
            refuseusage(device_.name +
                        " has no sequence of its own, expected --steps with some of " +
                        device_.operationlist());
        for (const Operation* step : steps_)
            if (!device_.has(*step))
                refuseusage(device_.name + " cannot do \"" + std::string(step->name) +
                            "\", expected one of " + device_.operationlist());
        if (job_.sequence) checksequence();
        if (reads()) format_ = outputformat(device_, filenamed(job_.file), fileformat(options_));
    }

    void checksequence() const {
        for (const Operation* step : steps_) {
            if (step->name == "read")
                refuseusage("read is no step of a sequence, expected the command \"read OUT\"");
            if (step->needsdata && job_.file.empty())
                refuseusage("no file for \"" + std::string(step->name) + "\", expected auto FILE");
        }
    }

    void checkfiles(const ProgrammerChoice& choice) const {
        const std::string& file = job_.svf.empty() ? job_.file : job_.svf;
        const auto path = file.empty() ? std::nullopt : std::optional(filenamed(file));
        checkdistinct({{.name = reads() ? "OUT" : "FILE", .path = path, .written = reads()},
                       {.name = "the chip image", .path = choice.image},
                       {.name = "--vcd", .path = options_.vcd, .written = true}});
    }

    void loadfile() {
        if (job_.file.empty()) return;
        data_ = loaddata(device_, filenamed(job_.file), fileformat(options_));
        checkdata(device_, *data_, steps_);
        for (const std::string& notice : notices(*data_, steps_)) console_.say(notice);
    }

    ProgrammerFactory programmerof(const ProgrammerChoice& choice) const {
        if (!options_.vcd) return chosen(choice, device_);
        const auto prgmode = static_cast<std::uint8_t>(device_.value("prgmode"));
        return choice.simulated ? wavedsimulated(choice, device_, *options_.vcd, prgmode)
                                : waved(hardware(), *options_.vcd, prgmode);
    }

    RunRequest requestfor(const ProgrammerChoice& choice) const {
        return {.device = device_,
                .steps = steps_,
                .sequence = job_.sequence,
                .data = parts(),
                .language = language_,
                .simulated = choice.simulated,
                .blocks = blocksof(choice),
                .texts = texts_};
    }

    int runwith(const ProgrammerChoice& choice) {
        const ProgrammerFactory makeprogrammer = programmerof(choice);
        const RunRequest request = requestfor(choice);
        return finish(request, watchedrun(request, makeprogrammer));
    }

    RunReport watchedrun(const RunRequest& request, const ProgrammerFactory& makeprogrammer) {
        const InterruptWatch stop;
        const auto start = std::chrono::steady_clock::now();
        RunReport report = runondevice(request, makeprogrammer, console_);
        seconds_ = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        return report;
    }

    // What the plug-in plays in each step, for devices that are worked by SVF texts.
    std::vector<std::string> texts() const {
        if (svf()) return {readtext(filenamed(*svf()))};
        return playedtexts(device_, steps_, parts());
    }
    std::optional<std::string> svf() const {
        return job_.svf.empty() ? std::nullopt : std::optional(job_.svf);
    }
    std::vector<BufferPart> parts() const {
        return data_ ? data_->parts : std::vector<BufferPart>{};
    }
    bool explains() const {
        return options_.explain.value_or(os::isterminal(os::Stream::output)) && !options_.json;
    }

    int finish(const RunRequest& request, const RunReport& report) {
        const Explanation explanation = explain(device_, texts_, report, svf());
        const Verdict verdict = verdictof(request, report, explanation);
        if (reads() && verdict.well())
            writeoutput(filenamed(job_.file), filetext(device_, report.buffer, format_),
                        options_.force);
        if (options_.json)
            std::cout << jsonof({.device = device_,
                                 .verdict = verdict,
                                 .explanation = explanation,
                                 .log = report.log,
                                 .file = job_.file,
                                 .seconds = seconds_})
                      << '\n';
        else
            std::ranges::copy_if(report.log, std::ostream_iterator<std::string>(std::cout, "\n"),
                                 isdifference);
        if (explains()) std::cout << told(explanation);
        std::cout.flush();
        for (const std::string& notice : verdict.notices) console_.say(notice);
        if (!options_.quiet || !verdict.well())
            console_.say(device_.name + ": " + headlineof(verdict));
        return verdict.status;
    }

    const DeviceJob& job_;
    const DeviceOptions& options_;
    Device device_;
    std::vector<const Operation*> steps_;
    std::int32_t language_;
    Console console_;
    std::optional<DeviceData> data_;
    std::vector<std::string> texts_;  // that are played, one a step
    FileFormat format_ = FileFormat::raw;
    double seconds_ = 0;
};

}  // namespace

int rundevicejob(const DeviceJob& job, const DeviceOptions& options) {
    return DeviceCommand(job, options).run();
}

}  // namespace keld2::host
