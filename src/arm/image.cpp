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
std::vector<std::uint8_t> readimage(const ArmContext& c, const ArmFileName& name) {
    FileContent file = c.platform.readfile(name);
    if (file.status != FileContent::Status::read) return {};
    return std::move(file.bytes);
}

// Puts the image that the row names into algobuf; its length in bytes, none when it is unusable.
std::optional<std::int32_t> choose(const ArmContext& c, const ArmStartupRow& row) {
    auto& algobuf = c.s.algobuf;
    const ArmImageNames names = imagenames(c.s, row);
    const auto fits = [&](const auto& image) {
        return !image.empty() && static_cast<std::int64_t>(image.size()) <= algobuf.size();
    };
    auto image = readimage(c, names.first);
    const bool first = !image.empty();
    if (!first) image = readimage(c, names.second);
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

ArmImageNames imagenames(SharedVariables& s, const ArmStartupRow& row) {
    const auto part = [&s](int i) { return trimmed(s.algorithm[i].text()); };
    const std::u16string folder(row.folder);
    ArmImageNames names{.first = {folder, u"clk", part(0).append(row.firstending)},
                        .second = {folder, part(1), part(2).append(row.secondending)}};
    if (names.second[1].empty()) names.second.erase(names.second.begin() + 1);
    return names;
}

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
