#include "host/cli/jobcommand.h"

#include <memory>

#include "host/hosterror.h"
#include "host/job/session.h"

namespace keld2::host {

namespace {

struct JobArguments {
    std::string job;
    std::optional<std::filesystem::path> replay;
    SessionOutput output;
    std::optional<std::filesystem::path> actions, formlog;  // of the editors
};

ProgrammerFactory simulated() {
    throw HostError(exitstatus::programfault,
                    "this build has no simulated programmer, expected --replay FILE");
}

int runjob(const JobArguments& arguments) {
    const Job job = readjob(arguments.job);
    const auto forms = makefrontend(arguments.actions, arguments.formlog);
    return runsession(job, arguments.replay ? replayed(*arguments.replay) : simulated(),
                      arguments.output, forms.get());
}

}  // namespace

void addjobcommand(CLI::App& program, int& status) {
    const auto arguments = std::make_shared<JobArguments>();
    SessionOutput& output = arguments->output;
    CLI::App* command = program.add_subcommand("job", "Makes one host session as a job file says");
    command->add_option("JOB.toml", arguments->job, "the job file")->required();
    command->add_option("--replay", arguments->replay, "answers that stand in for the programmer");
    command->add_option("--record", output.record, "writes what the programmer answered");
    command->add_option("--trace", output.trace, "writes every outward effect, one a line");
    command
        ->add_option("--trace-without", output.tracewithout,
                     "names of lines to leave out of the trace, such as checkbyte")
        ->delimiter(',')
        ->allow_extra_args(false);
    command->add_option("--dump", output.dump, "writes the results as JSON");
    CLI::Option* actions = command->add_option("--form", arguments->actions,
                                               "answers the editors, one JSON action a line");
    command->add_option("--form-log", arguments->formlog, "writes what the editors show as JSON")
        ->needs(actions);
    command->callback([arguments, &status] { status = runjob(*arguments); });
}

}  // namespace keld2::host
