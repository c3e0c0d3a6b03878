#include "host/run/difference.h"

#include <algorithm>

#include "host/files/textrecords.h"

namespace keld2::host {

std::string addressdigits(const Difference& difference) {
    constexpr std::size_t digits = 6;
    if (difference.unit != CellUnit::fuse)
        return hexdigits(static_cast<std::uint64_t>(difference.address), digits);
    const std::string text = std::to_string(difference.address);
    return std::string(digits - std::min(digits, text.size()), '0') + text;
}

std::string valuedigits(CellUnit unit, std::uint32_t value) {
    switch (unit) {
        case CellUnit::fuse:
            return std::to_string(value);
        case CellUnit::word:
            return hexdigits(value, 4);
        default:
            return hexdigits(value, 2);
    }
}

std::vector<std::int64_t> cellsof(const Difference& difference) {
    if (difference.unit != CellUnit::word) return {difference.address};
    return {2 * difference.address, 2 * difference.address + 1};
}

void Differences::add(const Difference& difference) {
    if (++count <= most) first.push_back(difference);
}

}  // namespace keld2::host
