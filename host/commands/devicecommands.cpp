#include "host/commands/devicecommands.h"

#include <memory>
#include <sstream>

#include "host/commands/devicejob.h"
#include "host/commands/mapcommand.h"
#include "host/files/distinctfiles.h"
#include "host/files/files.h"
#include "host/hosterror.h"

namespace keld2::host {

namespace {

constexpr std::size_t moststeps = 11;  // that the plug-in's sequence holds

struct Arguments {
    std::string file;
    std::string steps;  // of auto; empty: those of the device
    std::string map;    // of read; a picture of the fuse map
};

std::vector<const Operation*> parsesteps(const std::string& text) {
    std::vector<const Operation*> steps;
    std::istringstream names(text);
    for (std::string name; std::getline(names, name, ',');) {
        const Operation* step = operationnamed(name);
        if (step == nullptr)
            throw HostError(exitstatus::usage, "--steps " + text + ": \"" + name +
                                                   "\" is no operation, expected some of " +
                                                   operationnames() + ", with commas between");
        steps.push_back(step);
    }
    if (steps.size() > moststeps)
        throw HostError(exitstatus::usage, "--steps: " + std::to_string(steps.size()) +
                                               " steps, expected at most " +
                                               std::to_string(moststeps));
    return steps;
}

void addoperation(CLI::App& program, const Operation& operation, const DeviceOptions& options,
                  int& status) {
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* command =
        program.add_subcommand(std::string(operation.name), std::string(operation.does));
    if (operation.needsdata)
        command->add_option("FILE", arguments->file, "the file with the chip's content")
            ->required();
    if (operation.name == "read") {
        command->add_option("OUT", arguments->file, "the file to write")->required();
        command->add_option("--map", arguments->map,
                            "draws the fuse map, too: a .png or .svg file");
    }
    command->callback([arguments, &operation, &options, &status] {
        if (!arguments->map.empty()) {
            checkdistinct({{.name = "OUT", .path = filenamed(arguments->file), .written = true},
                           {.name = "--map", .path = filenamed(arguments->map), .written = true}});
            checkmapoutput(options, filenamed(arguments->map));
        }
        status = rundevicejob({.steps = {&operation}, .file = arguments->file}, options);
        if (!arguments->map.empty() && status == exitstatus::well)
            drawmap(options, filenamed(arguments->file), filenamed(arguments->map));
    });
}

void addauto(CLI::App& program, const DeviceOptions& options, int& status) {
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* command = program.add_subcommand("auto", "carries out several operations in turn");
    command->add_option("FILE", arguments->file,
                        "the file with the chip's content, where a step needs one");
    command->add_option("--steps", arguments->steps,
                        "operations with commas between (default: those of the device)");
    command->callback([arguments, &options, &status] {
        status = rundevicejob(
            {.steps = parsesteps(arguments->steps), .sequence = true, .file = arguments->file},
            options);
    });
}

}  // namespace

void adddevicecommands(CLI::App& program, const DeviceOptions& options, int& status) {
    for (const Operation& operation : alloperations())
        addoperation(program, operation, options, status);
    addauto(program, options, status);
}

}  // namespace keld2::host
