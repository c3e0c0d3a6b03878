// SvfRows: what a text expects from the chip, row by row.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/fault.h"

namespace keld2 {

// How much a run can store.
struct RowLimits {
    std::int32_t rows = 5001;
    std::int32_t bytes = 2001;  // of a row
};

// Rows are allocated as they are stored and keep what was stored until another statement stores to
// them; what was never stored is 0. They live as long as the run. An index beyond the limits is a
// fault.
class SvfRows {
  public:
    struct Row {
        std::vector<std::uint8_t> expect;  // byte i of the row, the first bit in bit 0
        std::vector<std::uint8_t> mask;    // a set bit is compared
    };

    explicit SvfRows(RowLimits limits = {}) : limits_(limits) {}

    // Stores entries from 0 on; entries behind them stay.
    void store(std::size_t row, std::span<const std::uint8_t> expect,
               std::span<const std::uint8_t> mask) {
        if (row >= rows_.size()) rows_.resize(row + 1);
        overlay(rows_[row].expect, expect);
        overlay(rows_[row].mask, mask);
    }

    std::uint8_t expected(std::int32_t row, std::int32_t i) const {
        return at(&Row::expect, row, i);
    }
    std::uint8_t mask(std::int32_t row, std::int32_t i) const { return at(&Row::mask, row, i); }

  private:
    static void overlay(std::vector<std::uint8_t>& kept, std::span<const std::uint8_t> stored) {
        if (kept.size() < stored.size()) kept.resize(stored.size());
        std::ranges::copy(stored, kept.begin());
    }
    std::uint8_t at(std::vector<std::uint8_t> Row::*bytes, std::int32_t row, std::int32_t i) const {
        if (row < 0 || row >= limits_.rows || i < 0 || i >= limits_.bytes)
            throw RunFault("row " + std::to_string(row) + ", byte " + std::to_string(i) +
                               ", expected " + std::to_string(limits_.rows) + " rows of " +
                               std::to_string(limits_.bytes) + " bytes at the most",
                           "stored rows");
        if (static_cast<std::size_t>(row) >= rows_.size()) return 0;
        const std::vector<std::uint8_t>& entries = rows_[static_cast<std::size_t>(row)].*bytes;
        return static_cast<std::size_t>(i) < entries.size() ? entries[static_cast<std::size_t>(i)]
                                                            : std::uint8_t{0};
    }

    RowLimits limits_;
    std::vector<Row> rows_;
};

}  // namespace keld2
