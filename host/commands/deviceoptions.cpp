#include "host/commands/deviceoptions.h"

#include "host/catalogue/catalogue.h"
#include "host/commands/pathoption.h"
#include "host/hosterror.h"
#include "host/run/hosttexts.h"
#include "host/text/boxtext.h"

namespace keld2::host {

void refuseoption(const std::string& option, const std::string& value,
                  const std::string& expected) {
    throw HostError(exitstatus::usage,
                    option + " " + value + ": is not known, expected " + expected);
}

void adddeviceoptions(CLI::App& program, DeviceOptions& options) {
    program.fallthrough();
    constexpr auto group = "Options of the commands on a device";
    program.add_option("-d,--device", options.device, "the device, as \"devices list\" names it")
        ->envname("KELD2_DEVICE")
        ->take_last()
        ->group(group);
    program
        .add_option("-p,--programmer", options.programmer,
                    "the programmer: sim[:image=FILE][,fault=FAULT]... or hardware (default: sim)")
        ->envname("KELD2_PROGRAMMER")
        ->take_last()
        ->group(group);
    program
        .add_option("--format", options.format,
                    "the format of the file: " + formatnames() + " (default: by its ending)")
        ->group(group);
    program
        .add_option("--language", options.language,
                    "language of the plug-in's texts: " + languagecodes())
        ->group(group);
    program.add_option("--progress", options.progress, "auto, bar, lines or none")->group(group);
    program
        .add_option("--on-box", options.onbox,
                    "answers questions: ok, cancel, abort, retry or ignore")
        ->group(group);
    addpath(program, "--vcd", options.vcd,
            "writes the socket's lines and supplies as a waveform, for a viewer")
        ->group(group);
    program.add_flag("-q,--quiet", options.quiet, "no log and no progress")->group(group);
    program.add_flag("--json", options.json, "the result as JSON on standard output")->group(group);
    program
        .add_flag_function(
            "--explain,!--no-explain",
            [&options](std::int64_t count) { options.explain = count > 0; },
            "names the bits at which a logic device failed (default: on a terminal)")
        ->group(group);
    program.add_flag("--force", options.force, "overwrites an existing file")->group(group);
}

Device chosendevice(const DeviceOptions& options) {
    if (options.device.empty())
        throw HostError(exitstatus::usage,
                        "no device, expected -d DEVICE or the environment variable KELD2_DEVICE");
    return Catalogue::standard().find(options.device);
}

ConsoleOptions consoleoptions(const DeviceOptions& options) {
    ConsoleOptions console;
    const auto style = progressstylenamed(options.progress);
    if (!style) refuseoption("--progress", options.progress, "auto, bar, lines or none");
    console.progress = *style;
    console.quiet = options.quiet;
    if (!options.onbox.empty()) {
        console.onbox = boxanswerof(options.onbox);
        if (!console.onbox)
            refuseoption("--on-box", options.onbox, "ok, cancel, abort, retry or ignore");
    }
    return console;
}

std::int32_t languageoffset(const DeviceOptions& options) {
    const auto offset = languagenamed(options.language);
    if (!offset) refuseoption("--language", options.language, "one of " + languagecodes());
    return *offset;
}

std::optional<FileFormat> fileformat(const DeviceOptions& options) {
    if (options.format.empty()) return std::nullopt;
    const auto format = formatnamed(options.format);
    if (!format) refuseoption("--format", options.format, formatnames());
    return format;
}

}  // namespace keld2::host
