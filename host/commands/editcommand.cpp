#include "host/commands/editcommand.h"

#include <algorithm>
#include <iostream>
#include <memory>

#include "host/commands/pathoption.h"
#include "host/files/outputfile.h"
#include "host/hosterror.h"
#include "host/run/devicedata.h"
#include "host/run/editrun.h"

namespace keld2::host {

namespace {

struct Arguments {
    Editor editor = Editor::config;
    std::filesystem::path file;
    std::optional<std::filesystem::path> actions, formlog;
};

Device editeddevice(const DeviceOptions& options, Editor editor) {
    Device device = chosendevice(options);
    if (!canedit(device, editor))
        throw HostError(exitstatus::usage,
                        device.name + (editor == Editor::config
                                           ? " has no configuration bytes that can be edited"
                                           : " has no user code that can be edited"));
    return device;
}

// The bytes of a segment from first to behind last, as far as it has them.
void addpart(ImageBuilder& builder, const Segment& segment, std::int64_t first, std::int64_t last) {
    const std::int64_t from = std::max<std::int64_t>(first, segment.address);
    const std::int64_t end = std::min(last, static_cast<std::int64_t>(segment.end()));
    if (from >= end) return;
    builder.add(static_cast<std::uint32_t>(from), segment.bytes.data() + (from - segment.address),
                static_cast<std::size_t>(end - from), 0);
}

// The file's image with a range as it stands in the buffer; all other bytes stay.
Image withrange(const Image& image, const DeviceRange& range,
                const std::vector<std::uint8_t>& buffer) {
    ImageBuilder builder(range.name);
    for (const Segment& segment : image.segments) {
        addpart(builder, segment, 0, range.file);
        addpart(builder, segment, range.fileend(), INT64_MAX);
    }
    builder.add(static_cast<std::uint32_t>(range.file), buffer.data() + range.buffer,
                static_cast<std::size_t>(range.length), 0);
    Image changed = image;
    changed.segments = builder.finish();
    return changed;
}

std::string editedtext(const Device& device, const std::filesystem::path& file, FileFormat format,
                       const std::vector<std::uint8_t>& buffer) {
    if (format == FileFormat::jedec) {
        FuseMap map = loadfusemap(file);
        const auto code = buffer.begin() + static_cast<std::ptrdiff_t>(device.value("tlength"));
        map.usercode = std::string(code, code + usercodecells);
        return writejedec(map);
    }
    Image image = loadimage(file, format);
    for (const DeviceRange& range : device.ranges)
        if (range.writtenby == "config") image = withrange(image, range, buffer);
    return imagetext(image, format);
}

int runedit(const Arguments& arguments, const DeviceOptions& options) {
    const Device device = editeddevice(options, arguments.editor);
    const DeviceData data = loaddata(device, arguments.file, fileformat(options));
    const FileFormat format = outputformat(device, arguments.file, fileformat(options));
    std::vector<std::uint8_t> buffer = blankbuffer(device);
    for (const BufferPart& part : data.parts)
        std::copy(part.bytes.begin(), part.bytes.end(),
                  buffer.begin() + static_cast<std::ptrdiff_t>(part.offset));
    const auto front = makefrontend(arguments.actions, arguments.formlog);
    const auto edited =
        editbuffer(device, arguments.editor, buffer, languageoffset(options), *front);
    if (edited)
        writeoutput(arguments.file, editedtext(device, arguments.file, format, *edited), true);
    if (!options.quiet)
        std::cerr << "keld2: " << arguments.file.string()
                  << (edited ? " has been written\n" : " stays as it is\n");
    return exitstatus::well;
}

void addeditor(CLI::App& command, const char* name, const char* does, Editor editor,
               const DeviceOptions& options, int& status) {
    const auto arguments = std::make_shared<Arguments>();
    arguments->editor = editor;
    CLI::App* sub = command.add_subcommand(name, does);
    addpath(*sub, "FILE", arguments->file, "the file with the chip's content; OK writes it back")
        ->required();
    CLI::Option* actions =
        addpath(*sub, "--form", arguments->actions, "answers the editor, one JSON action a line");
    addpath(*sub, "--form-log", arguments->formlog, "writes what the editor shows as JSON")
        ->needs(actions);
    sub->callback([arguments, &options, &status] { status = runedit(*arguments, options); });
}

}  // namespace

void addeditcommand(CLI::App& program, const DeviceOptions& options, int& status) {
    CLI::App* command =
        program.add_subcommand("edit", "edits what a file holds beside the program");
    command->require_subcommand(1);
    addeditor(*command, "config", "the configuration bytes", Editor::config, options, status);
    addeditor(*command, "usercode", "the user code of a fuse map", Editor::usercode, options,
              status);
}

}  // namespace keld2::host
