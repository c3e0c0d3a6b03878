#include "host/verdict/verdict.h"

#include <algorithm>

#include "host/arm/armdevice.h"
#include "host/hosterror.h"
#include "host/run/device_id.h"
#include "host/verdict/notices.h"
#include "platform/numbers.h"
#include "plugin/texts/texts.h"
#include "shared/notes.h"
#include "shared/operations.h"

namespace keld2::host {

namespace {

using Outcome = Verdict::Outcome;

// An ARM device ends as stopped where its code cannot be read.
bool idunreadable(const RunRequest& request, const RunReport& report) {
    const std::string line =
        ">>" + utf8(std::u16string(text(TextId::devicecodeerror, request.language)));
    return isarm(request.device) && std::ranges::find(report.log, line) != report.log.end();
}

bool foreign(const RunRequest& request, const RunReport& report, const Explanation& explanation) {
    if (report.foreignid) return !report.foreignid->ignored;
    return explanation.code || (report.result == result::stopped && idunreadable(request, report));
}

Outcome ofcell(const RunReport& report) {
    switch (report.result) {
        case result::well:
            break;
        case result::stopped:
            return Outcome::stopped;
        case result::timedout:
            return Outcome::timedout;
        case result::badalgorithm:
            return Outcome::badalgorithm;
        default:
            return report.differences.listed ? Outcome::different : Outcome::failed;
    }
    if (report.finished)
        return report.differences.listed && !report.differences.empty() ? Outcome::different
                                                                        : Outcome::well;
    if (report.modefailed) return Outcome::modefailed;
    return report.boxended ? Outcome::aborted : Outcome::notserved;
}

Outcome outcomeof(const RunRequest& request, const RunReport& report,
                  const Explanation& explanation) {
    if (foreign(request, report, explanation)) return Outcome::foreignid;
    if (report.refused) return report.boxended ? Outcome::aborted : Outcome::refused;
    if (report.incomplete) return Outcome::incomplete;
    return ofcell(report);
}

// That of the result cell, but where the run left none.
int statusof(Outcome outcome, const RunReport& report) {
    if (outcome == Outcome::well) return exitstatus::well;
    if (outcome == Outcome::incomplete) return exitstatus::timedout;
    const int cell = report.result;
    return cell == exitstatus::well || cell > exitstatus::badalgorithm ? exitstatus::failed : cell;
}

const Operation& laststep(const RunRequest& request, const RunReport& report) {
    return *request.steps.at(std::min(report.done, request.steps.size() - 1));
}

// The plug-in names what the buffer holds beside a fuse that is not blank, too.
void expectblank(Differences& found) {
    for (Difference& one : found.first) {
        if (one.unit != CellUnit::fuse) continue;
        found.againstblank = true;
        one.expected = 1;
    }
}

// Those that tell of the outcome: a place that a check has named says nothing of a run that went
// on behind it.
Differences differencesof(const RunRequest& request, const RunReport& report, Outcome outcome,
                          const Explanation& explanation) {
    if (outcome != Outcome::failed && outcome != Outcome::different) return {};
    Differences found = report.differences;
    for (const auto& [one, fuse] : explanation.lines)
        if (fuse)
            found.add({.unit = CellUnit::fuse,
                       .address = *fuse,
                       .chip = one.read ? 1U : 0U,
                       .expected = one.expected ? 1U : 0U});
    if (found.count > 0 && !explanation.lines.empty()) found.count = explanation.count;
    if (!found.listed && laststep(request, report).number == operation::blankcheck)
        expectblank(found);
    return found;
}

}  // namespace

Verdict::Mark Verdict::mark() const {
    switch (outcome) {
        case Outcome::well:
            return notices.empty() ? Mark::good : Mark::open;
        case Outcome::stopped:
        case Outcome::aborted:
            return Mark::open;
        default:
            return Mark::bad;
    }
}

Verdict verdictof(const RunRequest& request, const RunReport& report,
                  const Explanation& explanation) {
    const Outcome outcome = outcomeof(request, report, explanation);
    Verdict verdict{.outcome = outcome,
                    .status = statusof(outcome, report),
                    .steps = request.steps,
                    .done = report.done,
                    .percent = report.percent,
                    .differences = differencesof(request, report, outcome, explanation),
                    .foreignid = report.foreignid,
                    .expectedid = expectedid(request.device)};
    if (!verdict.foreignid && explanation.code) {
        verdict.foreignid = ForeignId{.read = explanation.code->read, .ignored = false};
        verdict.expectedid = explanation.code->expected;
    }
    if (!verdict.foreignid && outcome == Outcome::foreignid) verdict.foreignid = ForeignId{};
    verdict.notices = noticesof(request, report, verdict);
    return verdict;
}

}  // namespace keld2::host
