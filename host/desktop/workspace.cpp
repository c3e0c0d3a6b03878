#include "host/desktop/workspace.h"

#include <algorithm>
#include <array>
#include <numeric>

#include "host/files/outputfile.h"
#include "host/files/textrecords.h"
#include "host/run/editrun.h"

namespace keld2::desktop {

namespace {

std::string_view formatname(host::FileFormat format) {
    constexpr std::array<std::string_view, 4> names{"raw bytes", "Intel HEX", "S-records",
                                                    "JEDEC fuse map"};
    return names.at(static_cast<std::size_t>(format));
}

std::uint32_t sumof(const std::vector<std::uint8_t>& bytes) {
    return std::accumulate(bytes.begin(), bytes.end(), std::uint32_t{0});
}

std::string describe(const std::filesystem::path& path, const host::Image& image,
                     std::string_view unit) {
    constexpr std::size_t most = 3;  // ranges that are named
    std::uint32_t sum = 0;
    std::string ranges;
    for (std::size_t i = 0; i < image.segments.size(); ++i) {
        const host::Segment& segment = image.segments[i];
        sum += sumof(segment.bytes);
        if (i < most)
            ranges += (i == 0 ? " at " : ", ") + host::hexdigits(segment.address, 4) + " to " +
                      host::hexdigits(segment.end() - 1, 4);
    }
    if (image.segments.size() > most)
        ranges += " and " + std::to_string(image.segments.size() - most) + " more";
    return path.filename().string() + ": " + std::string(formatname(host::formatof(path))) + ", " +
           host::counted(image.size(), std::string(unit)) + ranges + ", sum " +
           host::hexdigits(sum, 8);
}

}  // namespace

void Workspace::choose(const std::string& name) {
    device_ = catalogue_.find(name);
    buffer_ = host::blankbuffer(*device_);
    hasdata_ = false;
    file_.reset();
    fileline_.clear();
}

void Workspace::load(const std::filesystem::path& path) {
    host::DeviceData data = host::loaddata(*device_, path, std::nullopt);
    std::vector<std::uint8_t> buffer = host::blankbuffer(*device_);
    for (const host::BufferPart& part : data.parts)
        std::copy(part.bytes.begin(), part.bytes.end(), buffer.begin() + part.offset);
    const bool fuses = device_->content == host::Content::fuses;
    fileline_ = describe(path, host::loadimage(path), fuses ? "fuse" : "byte");
    setbuffer(std::move(buffer));
    file_ = std::move(data);
}

void Workspace::save(const std::filesystem::path& path) const {
    const host::FileFormat format = host::outputformat(*device_, path, std::nullopt);
    host::writeoutput(path, host::filetext(*device_, buffer_, format), true);
}

void Workspace::setbuffer(std::vector<std::uint8_t> buffer) {
    buffer_ = std::move(buffer);
    hasdata_ = true;
    file_.reset();
}

std::vector<host::BufferPart> Workspace::parts() const {
    std::vector<host::BufferPart> parts;
    if (!hasdata_) return parts;
    for (const host::DeviceRange& range : device_->ranges) {
        const auto first = buffer_.begin() + range.buffer;
        parts.push_back({range.buffer, {first, first + range.length}});
    }
    return parts;
}

std::vector<std::string> Workspace::check(const std::vector<const host::Operation*>& steps) const {
    if (!file_) return {};
    host::checkdata(*device_, *file_, steps);
    return host::notices(*file_, steps);
}

}  // namespace keld2::desktop
