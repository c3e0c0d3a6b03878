#include "families/rowverify.h"

#include <vector>

#include "run/frames.h"
#include "run/waits.h"

namespace keld2 {

namespace {

// The read-back of a comparison, fetched block by block.
class ReadBack {
  public:
    ReadBack(const RunContext& run, std::int64_t framelength)
        : run_(run), framelength_(framelength) {}

    // The next 16384 bytes behind those fetched before. False when the transfer fails.
    bool fetch() {
        armreadback(run_, framelength_);
        if (ubulkread0(run_, readbacklength) != status::goon) return false;
        (void)run_.s.ibuf2[readbackdata - 1];  // within the block
        bytes_.insert(bytes_.end(), run_.s.ibuf2.data(), run_.s.ibuf2.data() + readbackdata);
        return true;
    }
    bool reaches(std::int64_t end) const { return end <= static_cast<std::int64_t>(bytes_.size()); }
    const std::uint8_t* at(std::int64_t place) const { return bytes_.data() + place; }

  private:
    const RunContext& run_;
    std::int64_t framelength_;
    std::vector<std::uint8_t> bytes_;
};

class RowVerifier {
  public:
    RowVerifier(const RunContext& run, const RowComparison& comparison, const SvfState& state,
                std::uint8_t tdomask)
        : run_(run),
          comparison_(comparison),
          state_(state),
          tdomask_(tdomask),
          width_(rowwidth(comparison, run.s.tlength[0])),
          layout_(rowlayout(width_, comparison.bitwise)),
          readback_(run, comparison.framelength) {}

    int verify(std::int32_t first, std::int32_t last) {
        run_.devcore.qrun();
        run_.devcore.waitshort(20);
        if (!readback_.fetch()) return status::ended;
        if (width_ == 0) return status::goon;
        for (std::int32_t row = first; row <= last; ++row) {
            const std::int64_t base = std::int64_t{row - first} * layout_.stride;
            while (!readback_.reaches(base + layout_.stride) && isstored(row))
                if (!readback_.fetch()) return status::ended;
            if (!readback_.reaches(base + layout_.stride)) continue;
            if (!rowagrees(row, readback_.at(base))) return status::ended;
        }
        return status::goon;
    }

  private:
    bool isstored(std::int32_t row) const { return comparison_.bitwise || row < state_.rowcount; }

    bool rowagrees(std::int32_t row, const std::uint8_t* got) const {
        for (std::int32_t j = 0; j < layout_.whole; ++j) {
            const bool differs =
                ((state_.rows.expected(row, j) ^ got[j]) & state_.rows.mask(row, j)) != 0;
            if (differs && !(comparison_.tolerant && tolerated(width_, row, j))) return false;
        }
        for (std::int32_t i = 0; i < layout_.raw; ++i) {
            const std::int32_t byte = layout_.whole + i / 8;
            if (!bitagrees(got[layout_.whole + i], tdomask_, state_.rows.expected(row, byte),
                           state_.rows.mask(row, byte), i % 8))
                return false;
        }
        return true;
    }

    const RunContext& run_;
    const RowComparison& comparison_;
    const SvfState& state_;
    std::uint8_t tdomask_;
    std::int32_t width_;
    RowLayout layout_;
    ReadBack readback_;
};

}  // namespace

RowLayout rowlayout(std::int32_t width, bool bitwise) {
    const std::int32_t q = width / 8;
    const std::int32_t r = width % 8;
    if (bitwise) return {.whole = 0, .raw = 8 * q, .stride = 8 * q};
    if (r != 0) return {.whole = q, .raw = r, .stride = q + r};
    return {.whole = q - 1, .raw = 8, .stride = q + 7};
}

bool tolerated(std::int32_t width, std::int32_t row, std::int32_t byte) {
    if (width % 8 != 0) return row == 2 || byte == 12;
    return (row == 2 || row == 3) && byte == 22;
}

int verifyrows(const RunContext& run, const RowComparison& comparison, const SvfState& state,
               std::uint8_t tdomask, std::int32_t first, std::int32_t last) {
    return RowVerifier(run, comparison, state, tdomask).verify(first, last);
}

}  // namespace keld2
