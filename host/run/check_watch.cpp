#include "host/run/check_watch.h"

#include "shared/datacheck.h"

namespace keld2::host {

void CheckWatch::begin_operation() {
    value_.reset();
    varied_ = false;
    if (!differences_.listed) differences_ = {};
}

void CheckWatch::see(const CheckedCell& cell, int mode) {
    see_byte(static_cast<std::uint8_t>(cell.value));
    if (cell.unit == CellUnit::word) see_byte(static_cast<std::uint8_t>(cell.value >> 8));
    const auto wanted = expected(cell, mode);
    if (!wanted || *wanted == cell.value) return;
    differences_.listed |= mode == checkmode::report;
    differences_.againstblank = mode == checkmode::blank;
    differences_.add(
        {.unit = cell.unit, .address = cell.address, .chip = cell.value, .expected = *wanted});
}

int CheckWatch::answer(const CheckedCell& cell, int mode, int given) const {
    const bool full = mode == checkmode::report && differences_.count >= Differences::most;
    return full && expected(cell, mode) ? 0 : given;
}

std::optional<std::uint8_t> CheckWatch::uniform() const { return varied_ ? std::nullopt : value_; }

void CheckWatch::see_byte(std::uint8_t byte) {
    varied_ |= value_.value_or(byte) != byte;
    value_ = byte;
}

std::optional<std::uint32_t> CheckWatch::expected(const CheckedCell& cell, int mode) const {
    const std::int64_t bytes = cell.unit == CellUnit::word ? 2 : 1;
    if (mode == checkmode::blank) return bytes == 2 ? 0xFFFF : 0xFF;
    if (mode != checkmode::compare && mode != checkmode::report) return {};
    const std::int64_t index = cell.address * bytes;
    if (!s_.ibuffer.holds(index, index + bytes - 1)) return {};
    std::uint32_t value = s_.ibuffer[index];
    if (bytes == 2) value |= std::uint32_t{s_.ibuffer[index + 1]} << 8;
    return value;
}

}  // namespace keld2::host
