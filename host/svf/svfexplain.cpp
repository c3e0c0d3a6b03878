#include "host/svf/svfexplain.h"

#include <algorithm>

#include "families/rowverify.h"
#include "host/files/textrecords.h"
#include "host/svf/svfwalk.h"

namespace keld2::host {

namespace {

// As the run procedures have them.
constexpr std::ptrdiff_t transferdata = 16384;  // bytes of a transfer that count
constexpr std::int32_t codewidth = 32;
constexpr std::int32_t coderows = 10;    // of the check by several rows
constexpr std::int32_t tolerantrow = 2;  // of them

// Makes the comparisons of a run once more.
class Explainer final : public SvfListener {
  public:
    Explainer(const LogicDevice& device, const ReadBack& readback)
        : device_(device),
          comparison_(*device.procedure->comparison),
          width_(rowwidth(comparison_, device.fuses)),
          readback_(readback) {}

    void fetch(const SvfFetch& fetch, const SvfStored& stored, const SdrStatement& last) override {
        if (!mismatches_.empty()) return;
        bytes_.clear();
        if (!take()) return;
        if (fetch.code)
            comparecode(stored, last.nbits);
        else if (width_ != 0)
            comparerows(fetch, stored);
    }

    SvfExplained explained() {
        return {.mismatches = std::move(mismatches_), .code = std::move(code_)};
    }

  private:
    // The next transfer behind those before; false when the run had ended.
    bool take() {
        if (taken_ == readback_.size()) return false;
        const std::vector<std::uint8_t>& transfer = readback_[taken_++];
        bytes_.insert(bytes_.end(), transfer.begin(),
                      transfer.begin() + std::min(std::ssize(transfer), transferdata));
        return true;
    }
    bool reaches(std::int64_t end) const { return end <= std::ssize(bytes_); }

    void comparerows(const SvfFetch& fetch, const SvfStored& stored) {
        const RowLayout layout = rowlayout(width_, comparison_.bitwise);
        for (std::int32_t row = fetch.first; row <= fetch.last; ++row) {
            const std::int64_t base = std::int64_t{row - fetch.first} * layout.stride;
            const bool wanted = comparison_.bitwise || row < stored.rowcount;
            // A run does not fetch any further behind a mismatch.
            while (!reaches(base + layout.stride) && wanted)
                if (!mismatches_.empty() || !take()) return;
            if (reaches(base + layout.stride)) comparerow({.row = row}, layout, base, stored);
        }
    }

    void comparecode(const SvfStored& stored, std::int32_t nbits) {
        const CodeCheck::Rows kind = device_.procedure->codecheck.rows;
        const bool single = kind != CodeCheck::Rows::firstten;
        if (!single && nbits % 8 != 0) return;
        const RowLayout layout =
            rowlayout(kind == CodeCheck::Rows::code32 ? codewidth : nbits, false);
        for (std::int32_t row = 0; row < (single ? 1 : coderows); ++row) {
            const std::int64_t base = std::int64_t{row} * layout.stride;
            if (!reaches(base + layout.stride)) continue;
            comparerow({.code = true, .row = row}, layout, base, stored);
            if (!mismatches_.empty() && !code_) notecode(row, layout, base, stored);
        }
    }

    // The last byte read stands first.
    void notecode(std::int32_t row, const RowLayout& layout, std::int64_t base,
                  const SvfStored& stored) {
        std::uint64_t expected = 0, read = 0;
        const std::int32_t bits = 8 * layout.whole + layout.raw;
        for (std::int32_t bit = bits - 1; bit >= 0; --bit) {
            expected = expected << 1 | (stored.rows.expected(row, bit / 8) >> bit % 8 & 1U);
            read = read << 1 | (bitread(layout, base, bit) ? 1U : 0U);
        }
        const int digits = (bits + 3) / 4;
        code_ = {.expected = hexdigits(expected, digits), .read = hexdigits(read, digits)};
    }

    // One of a row, as it came back: whole bytes, then a byte for each of the last bits.
    bool bitread(const RowLayout& layout, std::int64_t base, std::int32_t bit) const {
        const std::uint8_t* got = bytes_.data() + base;
        if (bit / 8 < layout.whole) return (got[bit / 8] >> bit % 8 & 1) != 0;
        return (got[layout.whole + bit - 8 * layout.whole] & device_.wiring->wiring.tdo.bits) != 0;
    }

    bool maydiffer(const SvfMismatch& at, std::int32_t byte) const {
        if (at.code)
            return device_.procedure->codecheck.rows == CodeCheck::Rows::firstten &&
                   at.row == tolerantrow;
        return comparison_.tolerant && tolerated(width_, at.row, byte);
    }

    void comparerow(SvfMismatch at, const RowLayout& layout, std::int64_t base,
                    const SvfStored& stored) {
        const auto index = static_cast<std::size_t>(at.row);
        at.line = index < stored.sources.size() ? stored.sources[index].line : 0;
        for (at.bit = 0; at.bit < 8 * layout.whole + layout.raw; ++at.bit) {
            const std::int32_t byte = at.bit / 8;
            const bool raw = byte >= layout.whole;
            if (!raw && maydiffer(at, byte)) continue;
            at.read = bitread(layout, base, at.bit);
            at.expected = (stored.rows.expected(at.row, byte) >> at.bit % 8 & 1) != 0;
            const bool compared = (stored.rows.mask(at.row, byte) >> at.bit % 8 & 1) != 0;
            if (compared && at.read != at.expected) mismatches_.push_back(at);
        }
    }

    const LogicDevice& device_;
    const RowComparison& comparison_;
    std::int32_t width_;
    const ReadBack& readback_;
    std::size_t taken_ = 0;            // transfers
    std::vector<std::uint8_t> bytes_;  // of the comparison in hand
    std::vector<SvfMismatch> mismatches_;
    std::optional<SvfCode> code_;
};

}  // namespace

SvfExplained explainsvf(const LogicDevice& device, std::string_view text,
                        const ReadBack& readback) {
    Explainer explainer(device, readback);
    walksvf(device, text, explainer);
    return explainer.explained();
}

}  // namespace keld2::host
