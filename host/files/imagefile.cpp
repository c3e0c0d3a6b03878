#include "host/files/imagefile.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "host/files/files.h"
#include "host/files/intelhex.h"
#include "host/files/srecord.h"
#include "host/files/textrecords.h"
#include "host/hosterror.h"

namespace keld2::host {

namespace {

struct EndingRow {
    std::string_view ending;
    FileFormat format;
};

constexpr std::array endings{
    EndingRow{".bin", FileFormat::raw},      EndingRow{".hex", FileFormat::intelhex},
    EndingRow{".ihx", FileFormat::intelhex}, EndingRow{".s19", FileFormat::srecord},
    EndingRow{".srec", FileFormat::srecord}, EndingRow{".mot", FileFormat::srecord},
    EndingRow{".jed", FileFormat::jedec}};

struct NameRow {
    std::string_view name;
    FileFormat format;
};

constexpr std::array names{NameRow{"bin", FileFormat::raw}, NameRow{"hex", FileFormat::intelhex},
                           NameRow{"srec", FileFormat::srecord}, NameRow{"jed", FileFormat::jedec}};

std::string rawtext(const Image& image, std::uint8_t fill) {
    std::string out;
    for (const Segment& segment : image.segments) {
        out.resize(segment.address, static_cast<char>(fill));
        out.append(segment.bytes.begin(), segment.bytes.end());
    }
    return out;
}

Image rawimage(const std::filesystem::path& path) {
    ImageBuilder builder(path.string());
    const std::vector<std::uint8_t> bytes = readbytes(path);
    builder.add(0, bytes.data(), bytes.size(), 1);
    Image image;
    image.segments = builder.finish();
    return image;
}

}  // namespace

std::optional<FileFormat> formatnamed(std::string_view name) {
    for (const NameRow& row : names)
        if (row.name == name) return row.format;
    return std::nullopt;
}

std::string formatnames() {
    std::string list;
    for (const NameRow& row : names) {
        if (!list.empty()) list += &row == &names.back() ? " or " : ", ";
        list += row.name;
    }
    return list;
}

FileFormat formatof(const std::filesystem::path& path) {
    std::string ending = path.extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    for (const EndingRow& row : endings)
        if (row.ending == ending) return row.format;
    std::string expected;
    for (const EndingRow& row : endings)
        expected += (expected.empty() ? "" : ", ") + std::string(row.ending);
    refusefile(path.string(), "the ending \"" + path.extension().string() +
                                  "\" names no format, expected one of " + expected);
}

Image loadimage(const std::filesystem::path& path, std::optional<FileFormat> format) {
    switch (format ? *format : formatof(path)) {
        case FileFormat::intelhex:
            return readintelhex(readtext(path), path.string());
        case FileFormat::srecord:
            return readsrecord(readtext(path), path.string());
        case FileFormat::jedec:
            return cellsof(loadfusemap(path));
        default:
            return rawimage(path);
    }
}

FuseMap loadfusemap(const std::filesystem::path& path) {
    return readjedec(readtext(path), path.string());
}

std::string imagetext(const Image& image, FileFormat format, std::uint8_t fill) {
    switch (format) {
        case FileFormat::intelhex:
            return writeintelhex(image);
        case FileFormat::srecord:
            return writesrecord(image);
        case FileFormat::raw:
            return rawtext(image, fill);
        default:
            throw HostError(exitstatus::programfault, "a fuse map has no image text");
    }
}

}  // namespace keld2::host
