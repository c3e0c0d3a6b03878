#include "families/comparisonplan.h"

#include <utility>

#include "platform/numbers.h"

namespace keld2 {

namespace {

using Interim = SvfProcedure::Interim;

constexpr std::int32_t rollingreadback = 12288;  // queued bytes beyond which rows are compared
constexpr std::int32_t once208fuses = 115869;
constexpr std::int32_t once208rows = 208;

}  // namespace

ComparisonPlan::ComparisonPlan(const SvfProcedure& procedure, std::int32_t fuses)
    : procedure_(procedure), fuses_(fuses), total_(rowtotal(procedure, fuses)) {}

std::int32_t ComparisonPlan::half() const { return roundint32(total_ / 2.0); }

std::optional<ComparedRows> ComparisonPlan::behindsdr(std::int32_t rowcount) {
    if (procedure_.interim == Interim::half && rowcount == total_ / 2 + 1)
        return ComparedRows{.first = 1, .last = half()};
    const bool once = procedure_.interim == Interim::once208 && fuses_ == once208fuses &&
                      rowcount == once208rows && !std::exchange(compared208_, true);
    if (!once) return std::nullopt;
    return ComparedRows{.first = 1, .last = once208rows, .rearms = true};
}

std::optional<ComparedRows> ComparisonPlan::behindline(std::int32_t rowmark,
                                                       std::int32_t readcount) {
    if (procedure_.interim != Interim::rolling || readcount <= rollingreadback) return std::nullopt;
    return ComparedRows{
        .first = std::exchange(verified_, rowmark) + 1, .last = rowmark, .rearms = true};
}

std::optional<ComparedRows> ComparisonPlan::atend(std::int32_t rowcount, std::int32_t rowmark,
                                                  bool beyondlimit) const {
    if (rowcount < procedure_.leastrowcount) return std::nullopt;
    switch (procedure_.interim) {
        case Interim::half:
            return ComparedRows{.first = half() + 1, .last = total_};
        case Interim::rolling:
            if (beyondlimit) return std::nullopt;
            return ComparedRows{.first = verified_ + 1, .last = rowmark};
        default:
            return ComparedRows{.first = procedure_.firstrow, .last = total_};
    }
}

}  // namespace keld2
