#include "host/commands/jobcommand.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <memory>

#include "host/catalogue/catalogue.h"
#include "host/commands/attendedprogrammer.h"
#include "host/commands/pathoption.h"
#include "host/files/distinctfiles.h"
#include "host/hosterror.h"
#include "host/job/session.h"
#include "host/profile/profile.h"
#include "host/programmer/hardware.h"
#include "host/wave/waveprogrammer.h"

namespace keld2::host {

namespace {

struct JobArguments {
    std::string job;
    std::optional<std::filesystem::path> replay;
    SessionOutput output;
    std::optional<std::filesystem::path> actions, formlog;  // of the editors
    bool profile = false;
};

// The chip is the one that the job's numbers and supply pins are meant for.
bool fits(const Device& device, const Job& job) {
    constexpr std::array variables{"prgmode", "tlength", "bvccpin", "bgndpin"};
    return std::ranges::all_of(variables, [&](std::string_view variable) {
        return device.value(variable) == settingof(job.shared, variable);
    });
}

// The device whose chip is in the socket.
Device deviceof(const Job& job, const DeviceOptions& options) {
    const Catalogue catalogue = Catalogue::standard();
    if (!options.device.empty()) return catalogue.find(options.device);
    for (const std::string& name : catalogue.names())
        if (Device device = catalogue.find(name); fits(device, job)) return device;
    throw HostError(exitstatus::data, job.path.string() +
                                          ": no device of the catalogue has its prgmode, tlength, "
                                          "bvccpin and bgndpin, expected -d DEVICE for the chip in "
                                          "the simulated programmer's socket, or --replay FILE");
}

ProgrammerFactory simulatedfor(const Job& job, const ProgrammerChoice& choice,
                               const DeviceOptions& options, std::uint8_t prgmode) {
    const Device device = deviceof(job, options);
    return options.vcd ? wavedsimulated(choice, device, *options.vcd, prgmode)
                       : simulated(choice, device);
}

ProgrammerFactory programmerof(const Job& job, const ProgrammerChoice& choice,
                               const JobArguments& arguments, const DeviceOptions& options) {
    const auto prgmode = static_cast<std::uint8_t>(settingof(job.shared, "prgmode"));
    const auto watched = [&](const ProgrammerFactory& programmer) {
        return options.vcd ? waved(programmer, *options.vcd, prgmode) : programmer;
    };
    if (arguments.replay) return watched(replayed(*arguments.replay));
    return attended(
        choice.simulated ? simulatedfor(job, choice, options, prgmode) : watched(hardware()),
        consoleoptions(options).onbox);
}

void checkfiles(const JobArguments& arguments, const DeviceOptions& options,
                const ProgrammerChoice& choice) {
    checkdistinct({{.name = "the job", .path = filenamed(arguments.job)},
                   {.name = "--replay", .path = arguments.replay},
                   {.name = "--form", .path = arguments.actions},
                   {.name = "the chip image", .path = choice.image},
                   {.name = "--record", .path = arguments.output.record, .written = true},
                   {.name = "--trace", .path = arguments.output.trace, .written = true},
                   {.name = "--dump", .path = arguments.output.dump, .written = true},
                   {.name = "--form-log", .path = arguments.formlog, .written = true},
                   {.name = "--vcd", .path = options.vcd, .written = true}});
}

int runjob(const JobArguments& arguments, const DeviceOptions& options) {
    const ProgrammerChoice choice = parseprogrammer(
        options.programmer.empty() || arguments.replay ? "sim" : options.programmer);
    checkfiles(arguments, options, choice);
    const Job job = readjob(filenamed(arguments.job));
    const auto forms = makefrontend(arguments.actions, arguments.formlog);
    ProgrammerFactory programmer = programmerof(job, choice, arguments, options);
    Profile profile;
    if (arguments.profile) programmer = profiled(std::move(programmer), profile);
    const int status = runsession(job, programmer, arguments.output, forms.get(), blocksof(choice));
    if (arguments.profile && options.json)
        std::cout << profilejson(profile) << std::endl;
    else if (arguments.profile)
        std::cerr << profiletable(profile);
    return status;
}

}  // namespace

void addjobcommand(CLI::App& program, const DeviceOptions& options, int& status) {
    const auto arguments = std::make_shared<JobArguments>();
    SessionOutput& output = arguments->output;
    CLI::App* command = program.add_subcommand("job", "makes one host session as a job file says");
    command->add_option("JOB.toml", arguments->job, "the job file")->required();
    addpath(*command, "--replay", arguments->replay, "answers that stand in for the programmer");
    addpath(*command, "--record", output.record, "writes what the programmer answered");
    addpath(*command, "--trace", output.trace, "writes every outward effect, one a line");
    command
        ->add_option("--trace-without", output.tracewithout,
                     "names of lines to leave out of the trace, such as checkbyte")
        ->delimiter(',')
        ->allow_extra_args(false);
    addpath(*command, "--dump", output.dump, "writes the results as JSON");
    command->add_flag("--profile", arguments->profile,
                      "tells where the run's time goes; with --json as JSON on standard output");
    CLI::Option* actions = addpath(*command, "--form", arguments->actions,
                                   "answers the editors, one JSON action a line");
    addpath(*command, "--form-log", arguments->formlog, "writes what the editors show as JSON")
        ->needs(actions);
    command->callback([arguments, &options, &status] { status = runjob(*arguments, options); });
}

}  // namespace keld2::host
