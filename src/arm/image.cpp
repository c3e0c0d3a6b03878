#include "arm/image.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "arm/wire.h"

namespace keld2 {

namespace {

constexpr std::int32_t longestnamed = 0x6000;  // bytes of an image that loadalgobuf takes

std::u16string trimmed(const std::u16string& text) {
    const auto first = text.find_first_not_of(u' ');
    if (first == std::u16string::npos) return {};
    return text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

// A file of an algorithm folder; empty when it is missing or its name leaves the folder.
std::vector<std::uint8_t> readimage(const ArmContext& c, std::u16string_view folder,
                                    const std::u16string& subfolder, const std::u16string& name) {
    std::vector<std::u16string> parts{std::u16string(folder)};
    if (!subfolder.empty()) parts.push_back(subfolder);
    parts.push_back(name);
    FileContent file = c.platform.readfile(parts);
    if (file.status != FileContent::Status::read) return {};
    return std::move(file.bytes);
}

// Puts the image that the row names into algobuf; its length in bytes, none when it is unusable.
std::optional<std::int32_t> choose(const ArmContext& c, const ArmStartupRow& row) {
    auto& algobuf = c.s.algobuf;
    const auto part = [&c](int i) { return trimmed(c.s.algorithm[i].text()); };
    const auto fits = [&](const auto& image) {
        return !image.empty() && static_cast<std::int64_t>(image.size()) <= algobuf.size();
    };
    auto image = readimage(c, row.folder, u"clk", part(0).append(row.firstending));
    const bool first = !image.empty();
    if (!first) image = readimage(c, row.folder, part(1), part(2).append(row.secondending));
    if (!fits(image)) return std::nullopt;
    std::copy(image.begin(), image.end(), algobuf.data());
    auto length = static_cast<std::int32_t>(image.size());
    if (first) return length;
    if (algobuf[0] == 0 || length > longestnamed) return std::nullopt;
    c.devcore.loadalgobuf(length);
    if (length <= 0 || length > algobuf.size()) return std::nullopt;
    return length;
}

ImageLoad readback(const ArmContext& c, std::int32_t length) {
    sendimageread(c);
    c.s.usbpip2readresult.release(0, 0);
    c.usb.usbbulkread(c.readback.first(static_cast<std::size_t>(length) + 1),
                      &c.s.usbpip2readresult[0]);
    for (;;) {
        c.platform.service();
        const ArmReadState state = readstate(c);
        if (state == ArmReadState::failed) return ImageLoad::brokenoff;
        if (stopasked(c)) return ImageLoad::stopped;
        if (state == ArmReadState::done) return ImageLoad::loaded;
    }
}

}  // namespace

ImageLoad loadimage(const ArmJob& job, const ArmStartupRow& row) {
    const ArmContext& c = job.c;
    const std::optional<std::int32_t> length = choose(c, row);
    if (!length) return ImageLoad::unusable;
    const auto bytes = static_cast<std::size_t>(*length);
    sendimagewrite(c);
    if (c.usb.usbbulkwrite({c.s.algobuf.data(), bytes}) == 1) return ImageLoad::brokenoff;
    const ImageLoad load = readback(c, *length);
    if (load != ImageLoad::loaded) return load;
    const bool same =
        std::equal(c.s.algobuf.data(), c.s.algobuf.data() + bytes, c.readback.begin());
    return same ? ImageLoad::loaded : ImageLoad::brokenoff;
}

}  // namespace keld2
