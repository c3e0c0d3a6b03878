#include "host/commands/svfcommands.h"

#include <iostream>
#include <memory>

#include "host/commands/boxes.h"
#include "host/commands/devicejob.h"
#include "host/commands/interruptwatch.h"
#include "host/files/files.h"
#include "host/files/outputfile.h"
#include "host/hosterror.h"
#include "host/run/devicedata.h"
#include "host/svf/svfcheck.h"
#include "host/svf/svftask.h"
#include "platform/numbers.h"

namespace keld2::host {

namespace {

struct Arguments {
    std::string task, data, layout = "A2", file;
    bool anyway = false;      // plays a text that loses statements or fails
    bool statements = false;  // tells of those that run, too
};

int make(const Arguments& arguments, const DeviceOptions& options) {
    const Device device = chosendevice(options);
    const LogicDevice logic = logicdevice(device);
    const auto task = tasknamed(arguments.task);
    if (!task) refuseoption("--operation", arguments.task, "one of " + tasknames());
    const auto layout = layoutnamed(arguments.layout);
    if (!layout) refuseoption("--layout", arguments.layout, "one of " + layoutnames());
    if (needsdata(*task) && arguments.data.empty())
        throw HostError(exitstatus::usage,
                        "no DATA, expected the file with the chip's content for " + arguments.task);
    std::vector<BufferPart> data;
    if (needsdata(*task))
        data = loaddata(device, filenamed(arguments.data), fileformat(options)).parts;
    const std::string text = makesvf(logic, *task, cellsfrom(data), *layout);
    if (arguments.file.empty())
        std::cout << text;
    else
        writeoutput(filenamed(arguments.file), text, options.force);
    return exitstatus::well;
}

SvfCheck checkfile(const std::string& file, const DeviceOptions& options) {
    return checksvf(logicdevice(chosendevice(options)), readtext(filenamed(file)));
}

int check(const Arguments& arguments, const DeviceOptions& options) {
    const SvfCheck result = checkfile(arguments.file, options);
    std::cout << (options.json ? jsonof(result, arguments.file) + "\n"
                               : told(result, arguments.file, arguments.statements));
    return result.usesall() ? exitstatus::well : exitstatus::data;
}

// Whether a text is to be played though not all of it would have its effect.
bool askanyway(const std::string& why, const DeviceOptions& options) {
    const InterruptWatch interrupts;  // an interrupt takes the safe answer
    TerminalBoxes boxes(consoleoptions(options).onbox, stderr);
    const Box box{.buttons = BoxButtons::okcancel,
                  .title = u"keld2",
                  .text = utf16(why + ". Play it all the same?")};
    return boxes.answer(box) == BoxAnswer::ok;
}

int play(const Arguments& arguments, const DeviceOptions& options) {
    const SvfCheck result = checkfile(arguments.file, options);
    if (!result.usesall()) {
        std::cerr << told(result, arguments.file);
        const std::string why =
            arguments.file +
            (result.fault ? ": the run would fail at line " + std::to_string(result.fault->line)
                          : ": not all of it would be played");
        if (!arguments.anyway && !askanyway(why, options))
            throw HostError(exitstatus::data, why + "; --anyway plays it all the same");
    }
    return rundevicejob({.steps = {operationnamed("program")}, .file = {}, .svf = arguments.file},
                        options);
}

void addmake(CLI::App& svf, const DeviceOptions& options, int& status) {
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* command = svf.add_subcommand("make", "writes the text of an operation");
    command->add_option("--operation", arguments->task, tasknames())->required();
    command->add_option("--layout", arguments->layout,
                        "how reads lie over lines: " + layoutnames() + " (default: A2)");
    command->add_option("DATA", arguments->data, "the file with the chip's content");
    command->add_option("-o,--output", arguments->file, "the file to write (default: to stdout)");
    command->callback([arguments, &options, &status] { status = make(*arguments, options); });
}

}  // namespace

void addsvfcommands(CLI::App& program, const DeviceOptions& options, int& status) {
    CLI::App* svf = program.add_subcommand("svf", "makes the texts by which logic devices work");
    svf->require_subcommand(1);
    addmake(*svf, options, status);

    const auto arguments = std::make_shared<Arguments>();
    CLI::App* checking =
        program.add_subcommand("check", "tells what a run would make of an SVF text");
    checking->add_option("FILE", arguments->file, "the text")->required();
    checking->add_flag("--statements", arguments->statements, "lists those that run, too");
    checking->callback([arguments, &options, &status] { status = check(*arguments, options); });

    CLI::App* playing = program.add_subcommand("play", "plays an SVF text on the device");
    playing->add_option("FILE", arguments->file, "the text")->required();
    playing->add_flag("--anyway", arguments->anyway, "even if not all of it would be played");
    playing->callback([arguments, &options, &status] { status = play(*arguments, options); });
}

}  // namespace keld2::host
