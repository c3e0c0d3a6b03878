// A verdict in words.
#include <algorithm>
#include <array>

#include "host/files/textrecords.h"
#include "host/verdict/verdict.h"

namespace keld2::host {

namespace {

using Outcome = Verdict::Outcome;

struct OutcomeRow {
    Outcome outcome;
    std::string_view word;      // in JSON
    std::string_view headline;  // empty: more is told
};

constexpr std::array rows{
    OutcomeRow{.outcome = Outcome::well, .word = "well", .headline = ""},
    OutcomeRow{.outcome = Outcome::different, .word = "different", .headline = ""},
    OutcomeRow{.outcome = Outcome::failed, .word = "failed", .headline = ""},
    OutcomeRow{.outcome = Outcome::stopped, .word = "stopped", .headline = ""},
    OutcomeRow{.outcome = Outcome::timedout, .word = "timed out", .headline = ""},
    OutcomeRow{.outcome = Outcome::badalgorithm,
               .word = "unusable algorithm file",
               .headline = "the algorithm file cannot be used"},
    OutcomeRow{.outcome = Outcome::foreignid, .word = "wrong id", .headline = ""},
    OutcomeRow{.outcome = Outcome::refused,
               .word = "programmer not ready",
               .headline = "the programmer is not ready; nothing was done"},
    OutcomeRow{.outcome = Outcome::modefailed,
               .word = "programmer not set up",
               .headline = "the programmer could not be set up; nothing was done"},
    OutcomeRow{.outcome = Outcome::incomplete,
               .word = "missing component",
               .headline = "a component of the programmer is missing; nothing was done"},
    OutcomeRow{.outcome = Outcome::aborted,
               .word = "aborted",
               .headline = "aborted before the first operation"},
    OutcomeRow{.outcome = Outcome::notserved,
               .word = "not served",
               .headline = "the plug-in does nothing for this device"},
};

const OutcomeRow& rowof(Outcome outcome) {
    return *std::ranges::find(rows, outcome, &OutcomeRow::outcome);
}

std::string names(const std::vector<const Operation*>& steps, std::size_t count) {
    std::string list;
    for (std::size_t i = 0; i < count; ++i)
        list += (i == 0 ? "" : ", ") + std::string(steps[i]->name);
    return list;
}

std::size_t endedat(const Verdict& verdict) {
    return std::min(verdict.done, verdict.steps.size() - 1);
}

// The step at which the run ended, with how far it came.
std::string place(const Verdict& verdict) {
    return std::string(verdict.steps[endedat(verdict)]->name) + " at " +
           std::to_string(verdict.percent) + " %";
}

std::string done(const Verdict& verdict) {
    const std::size_t done = endedat(verdict);
    const char* const stop = verdict.differences.empty() ? ", " : "; ";
    return done == 0 ? "" : stop + ("done: " + names(verdict.steps, done));
}

bool erased(const Verdict& verdict) {
    const auto end = verdict.steps.begin() + static_cast<std::ptrdiff_t>(endedat(verdict));
    return std::any_of(verdict.steps.begin(), end,
                       [](const Operation* step) { return step->name == "erase"; });
}

// Cells that programming cannot bring to what the file has: it only clears bits.
bool needserase(const Verdict& verdict, const Difference& one) {
    return verdict.steps[endedat(verdict)]->name == "program" && !erased(verdict) &&
           one.unit != CellUnit::fuse && (one.expected & ~one.chip) != 0;
}

std::string firstof(const Verdict& verdict) {
    const Differences& found = verdict.differences;
    if (found.first.empty()) return {};
    const Difference& one = found.first.front();
    const std::string at = addressdigits(one);
    const std::string chip = valuedigits(one.unit, one.chip);
    std::string text;
    if (found.againstblank)
        text = ": not blank at " + at + ", the chip holds " + chip;
    else if (needserase(verdict, one))
        text = ": not blank at " + at + "; erase it first (the chip holds " + chip + ", the file " +
               valuedigits(one.unit, one.expected) + ")";
    else
        text = ": at " + at + " the chip holds " + chip + ", the file " +
               valuedigits(one.unit, one.expected);
    if (found.count > 1) text += "; " + counted(found.count, "difference") + " seen";
    return text;
}

std::string different(const Verdict& verdict) {
    const Differences& found = verdict.differences;
    std::string text = counted(found.count, "difference");
    if (found.count > Differences::most)
        text += ", " + std::to_string(Differences::most) + " of them listed";
    if (verdict.steps.size() > 1)
        text += ", in " + std::string(verdict.steps[endedat(verdict)]->name);
    return text;
}

std::string foreign(const Verdict& verdict) {
    const std::string& read = verdict.foreignid->read;
    std::string text =
        read.empty() ? "the chip's id cannot be read" : "wrong chip: its id is " + read;
    if (!verdict.expectedid.empty()) text += ", expected " + verdict.expectedid;
    if (!read.empty() && (read.find_first_not_of("F ") == std::string::npos ||
                          read.find_first_not_of("0 ") == std::string::npos))
        text += "; is there a chip in the socket, and does it make contact?";
    return text + done(verdict);
}

}  // namespace

std::string_view wordof(Outcome outcome) { return rowof(outcome).word; }

std::string headlineof(const Verdict& verdict) {
    switch (verdict.outcome) {
        case Outcome::well:
            return names(verdict.steps, verdict.steps.size()) + " ended well";
        case Outcome::different:
            return different(verdict);
        case Outcome::stopped:
            return "stopped in " + place(verdict) + done(verdict);
        case Outcome::timedout:
            return "a transfer timed out in " + place(verdict) + done(verdict);
        case Outcome::foreignid:
            return foreign(verdict);
        case Outcome::failed:
            return "failed in " + place(verdict) + firstof(verdict) + done(verdict);
        default:
            return std::string(rowof(verdict.outcome).headline);
    }
}

}  // namespace keld2::host
