#include "host/commands/algocommands.h"

#include <iostream>
#include <memory>

#include "host/arm/armdevice.h"
#include "host/files/files.h"
#include "host/files/outputfile.h"
#include "host/hosterror.h"
#include "platform/numbers.h"

namespace keld2::host {

namespace {

struct Arguments {
    std::string folder = ".";
    std::string output;  // empty: where a run in the folder looks for it
};

// Where a run in the folder looks for the image; its folders are made.
std::filesystem::path placeof(const RunFile& file, const std::filesystem::path& folder) {
    std::filesystem::path path = folder;
    for (const std::u16string& part : file.parts) path /= part;
    std::error_code fault;
    std::filesystem::create_directories(path.parent_path(), fault);
    if (fault)
        throw HostError(exitstatus::nofile,
                        path.parent_path().string() + ": cannot be made: " + fault.message());
    return path;
}

int make(const Arguments& arguments, const DeviceOptions& options) {
    const Device device = chosendevice(options);
    const RunFile file = algorithmfile(device, device.autosteps);
    const std::filesystem::path path = arguments.output.empty()
                                           ? placeof(file, filenamed(arguments.folder))
                                           : filenamed(arguments.output);
    writeoutput(path, std::string(file.bytes.begin(), file.bytes.end()), options.force);
    if (!options.quiet) std::cout << path.string() << '\n';
    return exitstatus::well;
}

}  // namespace

void addalgocommands(CLI::App& program, const DeviceOptions& options, int& status) {
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* algo = program.add_subcommand("algo", "algorithm images of ARM devices");
    algo->require_subcommand(1);
    CLI::App* command = algo->add_subcommand(
        "make", "writes the simulated image of a device, to look at and change");
    command->add_option("--folder", arguments->folder,
                        "the run's folder: the image goes where a run there looks for it");
    command->add_option("-o,--output", arguments->output, "the file to write instead");
    command->callback([arguments, &options, &status] { status = make(*arguments, options); });
}

}  // namespace keld2::host
