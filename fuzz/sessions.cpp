#include "fuzz/sessions.h"

#include <filesystem>
#include <vector>

#include "fuzz/filed.h"
#include "host/files/files.h"
#include "host/hosterror.h"
#include "host/job/session.h"
#include "host/svf/svfcheck.h"

namespace keld2::fuzz {

namespace {

using namespace keld2::host;

Job jobof(const std::string& name) {
    return readjob(std::filesystem::path(KELD2_FUZZ_SOURCE) / "tests/data/jobs" / name /
                   "job.toml");
}

struct Played {
    int status = 0;
    std::string trace, dump, record;
};

Played played(const Job& job, const std::filesystem::path& replay) {
    SessionOutput output{.record = fresh("record"),
                         .trace = fresh("trace"),
                         .tracewithout = {},
                         .dump = fresh("dump")};
    const int status = runsession(job, replayed(replay), output);
    return {status, readtext(*output.trace), readtext(*output.dump), readtext(*output.record)};
}

void set(Job& job, std::string_view name, std::int64_t value) {
    for (SharedSetting& setting : job.shared)
        if (blocktable[setting.row].name == name) setting.values = {value};
}

// Jobs that play pldtmp.svf, of families with different layouts, limits and comparisons.
std::vector<Job> svfjobs() {
    std::vector<Job> jobs;
    for (const auto& [family, fuses] :
         {std::pair{50, 999}, {80, 16160}, {86, 8160}, {90, 12275}, {94, 17200}, {95, 35600}}) {
        Job& job = jobs.emplace_back(jobof("svf-86-sir-without-tdi-fails"));
        job.folder = fresh("none").parent_path();
        set(job, "prgmode", family);
        set(job, "tlength", fuses);
    }
    return jobs;
}

}  // namespace

std::string playreplay(std::string_view text) {
    static const std::vector<Job> jobs{
        jobof("serial-read"), jobof("parallel-byte-erase-with-a-pass-before"),
        jobof("svf-90-drives-and-reads"), jobof("fixed-code-retry-then-abort"),
        jobof("arm-compare-of-words-from-an-odd-offset")};
    const bool chosen = text.size() > 1 && text[0] == '#' && text[1] >= 'a';
    const Job& job = jobs[chosen ? static_cast<std::size_t>(text[1] - 'a') % jobs.size() : 0];
    const Played first = played(job, filed(text));
    const Played again = played(job, filed(first.record));
    const bool same =
        first.status == again.status && first.trace == again.trace && first.dump == again.dump;
    return same ? "" : "the record gives another session";
}

std::string playsvf(std::string_view text) {
    static const std::vector<Job> jobs = svfjobs();
    const Job& job = jobs[text.size() % jobs.size()];
    filed(text, "pldtmp.svf");
    Device device;
    device.shared = job.shared;
    const SvfCheck check = checksvf(logicdevice(device), text);
    const bool failed = runsession(job, replayed(filed("", "none")), {}) != exitstatus::well;
    if (check.fault && !failed) return "passes although: " + check.reason;
    if (!check.fault && failed && check.rows == 0) return "fails although it compares nothing";
    return {};
}

}  // namespace keld2::fuzz
