#include "host/commands/mapcommand.h"

#include <iostream>
#include <memory>

#include "host/commands/pathoption.h"
#include "host/files/outputfile.h"
#include "host/hosterror.h"
#include "host/map/fusepicture.h"
#include "host/os/terminal.h"
#include "host/run/devicedata.h"

namespace keld2::host {

namespace {

struct Arguments {
    std::filesystem::path file, out, against;
};

Device fusedevice(const DeviceOptions& options) {
    Device device = chosendevice(options);
    if (device.content != Content::fuses)
        throw HostError(exitstatus::usage,
                        device.name + " has no fuse map, expected a logic device");
    return device;
}

// The fuses of a file, those that it leaves out unprogrammed.
std::string fusesof(const Device& device, const std::filesystem::path& file,
                    std::optional<FileFormat> format) {
    const DeviceData data = loaddata(device, file, format);
    std::string fuses(static_cast<std::size_t>(device.value("tlength")), '1');
    for (const BufferPart& part : data.parts)
        for (std::size_t i = 0; i < part.bytes.size(); ++i)
            if (const std::size_t at = static_cast<std::size_t>(part.offset) + i; at < fuses.size())
                fuses[at] = (part.bytes[i] & 1) != 0 ? '1' : '0';
    return fuses;
}

std::size_t rowwidth(const Device& device) {
    return static_cast<std::size_t>(device.sim["width"].value_or<std::int64_t>(0));
}

FusePicture pictureof(const DeviceOptions& options, const Arguments& arguments) {
    const Device device = fusedevice(options);
    const std::string against = arguments.against.empty()
                                    ? std::string{}
                                    : fusesof(device, arguments.against, fileformat(options));
    return makepicture(fusesof(device, arguments.file, fileformat(options)), against,
                       rowwidth(device));
}

void checkending(const std::filesystem::path& out) {
    if (out.extension() != ".png" && out.extension() != ".svg")
        throw HostError(exitstatus::usage,
                        out.string() + ": unknown kind of picture, expected .png or .svg");
}

void writepicture(const FusePicture& picture, const std::filesystem::path& out, bool overwrite) {
    checkending(out);
    writeoutput(out, out.extension() == ".png" ? pngof(picture) : svgof(picture), overwrite);
}

int runmap(const Arguments& arguments, const DeviceOptions& options) {
    const FusePicture picture = pictureof(options, arguments);
    if (arguments.out.empty())
        std::cout << textof(picture, os::isterminal(os::Stream::output));
    else
        writepicture(picture, arguments.out, options.force);
    if (!options.quiet) {
        std::cerr << "keld2: " << picture.rows() << " rows of " << picture.width << " fuses";
        if (!arguments.against.empty()) std::cerr << ", " << picture.differences() << " differ";
        std::cerr << "\n";
    }
    return exitstatus::well;
}

}  // namespace

void addmapcommand(CLI::App& program, const DeviceOptions& options, int& status) {
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* command =
        program.add_subcommand("map", "draws a fuse map, rows and columns as in the chip");
    addpath(*command, "FILE", arguments->file, "the file with the fuse map")->required();
    addpath(*command, "OUT", arguments->out, "the picture, .png or .svg (default: text blocks)");
    addpath(*command, "--against", arguments->against, "a second file; differences are coloured");
    command->callback([arguments, &options, &status] { status = runmap(*arguments, options); });
}

void checkmapoutput(const DeviceOptions& options, const std::filesystem::path& out) {
    fusedevice(options);
    checkending(out);
    checkoutput(out, options.force);
}

void drawmap(const DeviceOptions& options, const std::filesystem::path& file,
             const std::filesystem::path& out) {
    writepicture(pictureof(options, {.file = file, .out = out, .against = {}}), out, options.force);
}

}  // namespace keld2::host
