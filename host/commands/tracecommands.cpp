#include "host/commands/tracecommands.h"

#include <iostream>
#include <memory>

#include "host/files/files.h"
#include "host/hosterror.h"
#include "host/tell/printing.h"

namespace keld2::host {

namespace {

struct Arguments {
    std::string file, other;
    int depth = 3;
};

void addshow(CLI::App& trace, int& status) {
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* command = trace.add_subcommand("show", "tells a trace in words");
    command->add_option("FILE", arguments->file, "a trace, as job --trace writes it")->required();
    command
        ->add_option("--depth", arguments->depth,
                     "levels to show: 1 operations, 2 their steps, 3 what a list holds (default), "
                     "up to the single lines")
        ->check(CLI::Range(1, 100));
    command->callback([arguments, &status] {
        showtrace(filenamed(arguments->file), arguments->depth, std::cout);
        std::cout.flush();
        status = exitstatus::well;
    });
}

void adddiff(CLI::App& trace, int& status) {
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* command = trace.add_subcommand(
        "diff", "tells the first difference of two traces; exit status 1 where they differ");
    command->add_option("A", arguments->file, "a trace")->required();
    command->add_option("B", arguments->other, "another one")->required();
    command->callback([arguments, &status] {
        const bool equal =
            comparetraces(filenamed(arguments->file), filenamed(arguments->other), std::cout);
        std::cout.flush();
        status = equal ? exitstatus::well : exitstatus::failed;
    });
}

}  // namespace

void addtracecommands(CLI::App& program, int& status) {
    CLI::App* trace = program.add_subcommand("trace", "tells what a trace says");
    trace->require_subcommand(1);
    addshow(*trace, status);
    adddiff(*trace, status);
}

}  // namespace keld2::host
