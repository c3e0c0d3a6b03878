#include "host/run/devicedata.h"

#include <algorithm>

#include "host/files/textrecords.h"

namespace keld2::host {

namespace {

constexpr int addressdigits = 4;  // at least

std::string span(std::int64_t first, std::int64_t last) {
    return hexdigits(static_cast<std::uint64_t>(first), addressdigits) + " to " +
           hexdigits(static_cast<std::uint64_t>(last), addressdigits);
}

// The addresses that a file can have: "0000 to 0FFF, 2000 to 2001".
std::string addresses(const Device& device) {
    std::string list;
    for (std::size_t i = 0; i < device.ranges.size();) {
        const std::int64_t first = device.ranges[i].file;
        std::int64_t end = first;
        for (; i < device.ranges.size() && device.ranges[i].file <= end; ++i)
            end = device.ranges[i].fileend();
        list += (list.empty() ? "" : ", ") + span(first, end - 1);
    }
    return list;
}

void checkformat(const Device& device, const std::filesystem::path& path, FileFormat format) {
    const bool fuses = format == FileFormat::jedec;
    if (fuses == (device.content == Content::fuses)) return;
    refusefile(path.string(), fuses ? "is a fuse map, " + device.name + " holds bytes; expected " +
                                          ".bin, .hex, .ihx, .s19, .srec or .mot"
                                    : "is no fuse map, which " + device.name +
                                          " needs; expected "
                                          ".jed");
}

// Lays the segment's bytes from address on into the range that holds it; answers how many.
std::size_t lay(const DeviceRange& range, const Segment& segment, std::int64_t address,
                DeviceData& data) {
    const auto from = static_cast<std::size_t>(address - segment.address);
    const auto room = static_cast<std::size_t>(range.fileend() - address);
    const std::size_t count = std::min(room, segment.bytes.size() - from);
    const auto first = segment.bytes.begin() + static_cast<std::ptrdiff_t>(from);
    data.parts.push_back({range.buffer + (address - range.file),
                          {first, first + static_cast<std::ptrdiff_t>(count)}});
    if (data.given.empty() || data.given.back() != &range) data.given.push_back(&range);
    return count;
}

void takesegment(const Device& device, const Segment& segment, DeviceData& data) {
    std::int64_t address = segment.address;
    for (const DeviceRange& range : device.ranges)
        if (address >= range.file && address < range.fileend() &&
            static_cast<std::uint64_t>(address) < segment.end())
            address += static_cast<std::int64_t>(lay(range, segment, address, data));
    if (static_cast<std::uint64_t>(address) != segment.end())
        refusefile(data.path.string(),
                   "bytes " + span(address, static_cast<std::int64_t>(segment.end()) - 1) +
                       " lie outside " + device.name + ", expected addresses " + addresses(device));
}

Image fusecells(const Device& device, DeviceData& data) {
    const FuseMap map = loadfusemap(data.path);
    const auto expected = static_cast<std::size_t>(device.ranges.at(0).length);
    if (map.fuses.size() != expected)
        refusefile(data.path.string(), counted(map.fuses.size(), "fuse") + ", expected " +
                                           std::to_string(expected) + " for " + device.name);
    data.secured = map.secured;
    return cellsof(map);
}

// The first address of the range that no part gives.
std::optional<std::int64_t> firstmissing(const DeviceRange& range, const DeviceData& data) {
    std::int64_t at = range.buffer;
    for (const BufferPart& part : data.parts)
        if (part.offset <= at)
            at = std::max(at, part.offset + static_cast<std::int64_t>(part.bytes.size()));
    if (at >= range.buffer + range.length) return std::nullopt;
    return range.file + (at - range.buffer);
}

void checkprogramdata(const Device& device, const DeviceData& data, const Operation& step) {
    if (data.gives("program")) return;
    std::string names;
    for (const DeviceRange& range : device.ranges)
        if (range.writtenby == "program") names += (names.empty() ? "" : " or ") + range.name;
    refusefile(data.path.string(), "holds nothing to " + std::string(step.name) +
                                       ", expected data for " + names + " of " + device.name);
}

void checkconfigdata(const DeviceRange& range, const DeviceData& data) {
    if (const auto missing = firstmissing(range, data))
        refusefile(data.path.string(),
                   "gives no byte for address " +
                       hexdigits(static_cast<std::uint64_t>(*missing), addressdigits) +
                       ", expected the " + range.name + " (" +
                       span(range.file, range.fileend() - 1) + ")");
}

// The cells of a range of fuses as characters '0' and '1'.
std::string cells(const DeviceRange& range, const std::vector<std::uint8_t>& buffer) {
    std::string text;
    for (std::int64_t i = 0; i < range.length; ++i)
        text += (buffer.at(static_cast<std::size_t>(range.buffer + i)) & 1) != 0 ? '1' : '0';
    return text;
}

FuseMap fusemapof(const Device& device, const std::vector<std::uint8_t>& buffer) {
    FuseMap map;
    map.header = "keld2 " + device.name;
    map.fuses = cells(device.ranges.at(0), buffer);
    if (device.ranges.size() > 1) map.usercode = cells(device.ranges[1], buffer);
    return map;
}

Image imageof(const Device& device, const std::vector<std::uint8_t>& buffer) {
    ImageBuilder builder(device.name);
    for (const DeviceRange& range : device.ranges)
        builder.add(static_cast<std::uint32_t>(range.file),
                    buffer.data() + static_cast<std::ptrdiff_t>(range.buffer),
                    static_cast<std::size_t>(range.length), 0);
    Image image;
    image.segments = builder.finish();
    image.header = "keld2 " + device.name;
    return image;
}

}  // namespace

bool DeviceData::gives(std::string_view writtenby) const {
    return std::any_of(given.begin(), given.end(), [writtenby](const DeviceRange* range) {
        return range->writtenby == writtenby;
    });
}

DeviceData loaddata(const Device& device, const std::filesystem::path& path,
                    std::optional<FileFormat> format) {
    const FileFormat known = format ? *format : formatof(path);
    checkformat(device, path, known);
    DeviceData data;
    data.path = path;
    const Image image =
        known == FileFormat::jedec ? fusecells(device, data) : loadimage(path, known);
    data.size = image.size();
    for (const Segment& segment : image.segments) takesegment(device, segment, data);
    return data;
}

void checkdata(const Device& device, const DeviceData& data,
               const std::vector<const Operation*>& steps) {
    for (const Operation* step : steps) {
        if (!step->needsdata) continue;
        if (step->name != "config") {
            checkprogramdata(device, data, *step);
            continue;
        }
        for (const DeviceRange& range : device.ranges)
            if (range.writtenby == "config") checkconfigdata(range, data);
    }
}

std::vector<std::string> notices(const DeviceData& data,
                                 const std::vector<const Operation*>& steps) {
    const auto has = [&](std::string_view name) {
        return std::ranges::any_of(steps, [name](const Operation* s) { return s->name == name; });
    };
    std::vector<std::string> told;
    const auto tell = [&](const std::string& what) { told.push_back(data.path.string() + what); };
    if (data.gives("config") && !has("config")) {
        if (has("program"))
            tell(" gives configuration bytes; program does not write them, config does");
        else if (has("verify") || has("compare"))
            tell(" gives configuration bytes; " +
                 std::string(has("verify") ? "verify" : "compare") + " does not look at them");
    }
    if (data.secured == true && !has("secure") && has("program"))
        tell(" asks for the security fuse; program does not write it, secure does");
    return told;
}

FileFormat outputformat(const Device& device, const std::filesystem::path& path,
                        std::optional<FileFormat> format) {
    const FileFormat known = format ? *format : formatof(path);
    checkformat(device, path, known);
    return known;
}

std::string filetext(const Device& device, const std::vector<std::uint8_t>& buffer,
                     FileFormat format) {
    return format == FileFormat::jedec ? writejedec(fusemapof(device, buffer))
                                       : imagetext(imageof(device, buffer), format);
}

}  // namespace keld2::host
