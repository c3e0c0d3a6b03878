#include "host/cli/jobcommand.h"

#include <memory>

#include "host/job/session.h"

namespace keld2::host {

namespace {

struct JobArguments {
    std::string job;
    SessionOptions options;
    std::optional<std::filesystem::path> actions, formlog;  // of the editors
};

int runjob(JobArguments& arguments) {
    const Job job = readjob(arguments.job);
    const auto forms = makefrontend(arguments.actions, arguments.formlog);
    arguments.options.forms = forms.get();
    return runsession(job, arguments.options);
}

}  // namespace

void addjobcommand(CLI::App& program, int& status) {
    const auto arguments = std::make_shared<JobArguments>();
    SessionOptions& options = arguments->options;
    CLI::App* command = program.add_subcommand("job", "Makes one host session as a job file says");
    command->add_option("JOB.toml", arguments->job, "the job file")->required();
    command->add_option("--replay", options.replay, "answers that stand in for the programmer");
    command->add_option("--record", options.record, "writes what the programmer answered");
    command->add_option("--trace", options.trace, "writes every outward effect, one a line");
    command
        ->add_option("--trace-without", options.tracewithout,
                     "names of lines to leave out of the trace, such as checkbyte")
        ->delimiter(',')
        ->allow_extra_args(false);
    command->add_option("--dump", options.dump, "writes the results as JSON");
    CLI::Option* actions = command->add_option("--form", arguments->actions,
                                               "answers the editors, one JSON action a line");
    command->add_option("--form-log", arguments->formlog, "writes what the editors show as JSON")
        ->needs(actions);
    command->callback([arguments, &status] { status = runjob(*arguments); });
}

}  // namespace keld2::host
