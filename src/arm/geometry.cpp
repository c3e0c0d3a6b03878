#include "arm/geometry.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/numbers.h"

namespace keld2 {

namespace {

constexpr std::int32_t wideblock = 0x10000;      // words
constexpr std::int32_t lastblocknumber = 65535;  // two bytes of a frame
constexpr std::int32_t extensionroom = 100;  // bytes that the last bulk must stay below a full one

bool possible(double bound) {
    return bound >= 0 && bound <= std::numeric_limits<std::int32_t>::max();  // false for NaN
}

bool possible(const ArmRange& range) {
    return range.wordsize > 0 && range.ramlength >= range.wordsize && range.bulksize > 0 &&
           possible(range.first) && possible(range.last) && possible(range.bufferoffset) &&
           range.last >= range.first;
}

}  // namespace

std::optional<ArmGeometry> ArmGeometry::cut(const ArmRange& range) {
    if (!possible(range)) return std::nullopt;
    ArmGeometry g;
    g.wordsize_ = range.wordsize;
    g.ramlength_ = range.ramlength;
    g.blockwords_ = range.ramlength / range.wordsize;
    const bool wide = range.widebulksize > 0 && g.blockwords_ >= wideblock;
    g.bulksize_ = wide ? range.widebulksize : range.bulksize;
    g.extension_ = range.extension;
    g.bufferoffset_ = range.bufferoffset;
    const std::int32_t words = roundint32(range.last - range.first);
    g.lastblock_ = words / g.blockwords_;
    if (g.lastblock_ > lastblocknumber) return std::nullopt;
    g.tailbytes_ = std::int64_t{range.tail.value_or(words) % g.blockwords_} * g.wordsize_;
    if (g.tailbytes_ < 0) return std::nullopt;
    return g;
}

ArmBlock ArmGeometry::block(std::int32_t index) const {
    const bool last = index == lastblock_;
    const std::int64_t bytes = last ? tailbytes_ : std::int64_t{ramlength_} - 1;
    return {.index = index, .last = last, .lastbulk = static_cast<std::int32_t>(bytes / bulksize_)};
}

ArmBulk ArmGeometry::bulk(const ArmBlock& block, std::int32_t index) const {
    const auto before = static_cast<double>(std::int64_t{block.index} * wordsize_ * blockwords_);
    const auto base = static_cast<std::int64_t>(std::nearbyint(before + bufferoffset_));
    std::int32_t length = bulksize_;
    if (block.last && index == block.lastbulk) {
        length = static_cast<std::int32_t>(tailbytes_ % bulksize_) + wordsize_;
        if (length < bulksize_ - extensionroom) length += extension_;
    }
    return {.index = index, .offset = base + std::int64_t{index} * bulksize_, .length = length};
}

std::int64_t ArmGeometry::bufferend() const {
    const auto endof = [this](std::int32_t index) {
        const ArmBlock b = block(index);
        const ArmBulk last = bulk(b, b.lastbulk);
        return last.offset + last.length;
    };
    const std::int64_t end = endof(lastblock_);
    return lastblock_ == 0 ? end : std::max(end, endof(lastblock_ - 1));
}

}  // namespace keld2
