#include "jtag/lines.h"

#include <algorithm>

namespace keld2 {

namespace {

std::uint8_t fixedlevel(const JtagFamily& row, std::uint8_t reg) {
    std::uint8_t level = row.wiring.extrareg == reg ? row.extrabit : std::uint8_t{0};
    for (const RegisterBits& fixed : row.wiring.fixed)
        if (fixed.reg == reg) level |= fixed.bits;
    return level;
}

}  // namespace

LineLevels::LineLevels(std::uint8_t family) : row_(findjtagfamily(family)) {
    if (row_ == nullptr) return;
    const std::array<RegisterBits, 3> lines{row_->wiring.tms, row_->wiring.tck, row_->wiring.tdi};
    for (std::size_t line = 0; line < lines.size(); ++line) {
        const auto first = std::find_if(lines.begin(), lines.end(), [&](const RegisterBits& other) {
            return other.reg == lines[line].reg;
        });
        slot_[line] = static_cast<std::size_t>(first - lines.begin());
        bits_[line] = lines[line].bits;
        reg_[line] = lines[line].reg;
        fixed_[line] = fixedlevel(*row_, lines[line].reg);
    }
}

LineLevels::Write LineLevels::refresh() const {
    const RegisterBits& refresh = *row_->wiring.refresh;
    std::int32_t value = refresh.bits;
    if (row_->wiring.extrareg == refresh.reg) value |= row_->extrabit;
    for (const std::size_t slot : slot_)
        if (reg_[slot] == refresh.reg) value |= driven_[slot];
    return {value, refresh.reg};
}

}  // namespace keld2
