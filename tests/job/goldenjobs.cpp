// Whole jobs with a scripted programmer. A folder below tests/data/jobs holds
//   job.toml      the job
//   replay.txt    what the programmer answers; without it nothing is answered but by default
//   form.txt      what a user does in the editors, where the job opens them
// and what has to come of them:
//   trace.txt     line by line; without.txt names the kinds of lines that are left out of it
//   dump.json     with <TIME> for the elapsed seconds, and its buffer as runs of equal bytes
//   form-log.txt  what the editors show
// What a test got is kept below its folder in the build tree, to be looked at, and to be taken over
// for a new job.
#include <gtest/gtest.h>
#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "common/kept.h"
#include "common/madefolder.h"
#include "host/forms/formfrontend.h"
#include "host/job/session.h"

namespace {

using namespace keld2::host;
using keld2::test::linesof;
namespace fs = std::filesystem;

std::vector<std::string> jobfolders() {
    std::vector<std::string> names;
    const fs::path root = KELD2_TEST_JOBS;
    for (const auto& entry : fs::recursive_directory_iterator(root))
        if (entry.path().filename() == "job.toml")
            names.push_back(fs::relative(entry.path().parent_path(), root).string());
    std::sort(names.begin(), names.end());
    return names;
}

// The dump as the folders hold it.
std::string kept(const fs::path& path) {
    auto dump = keld2::test::dumpof(path);
    dump["ibuffer"] = keld2::test::runsof(dump["ibuffer"]);
    return dump.dump(1) + "\n";
}

class GoldenJob : public testing::TestWithParam<std::string> {
  protected:
    GoldenJob() { fs::create_directories(got_); }

    std::optional<fs::path> ifthere(const char* name) const {
        return fs::exists(folder_ / name) ? std::optional(folder_ / name) : std::nullopt;
    }
    int run(const fs::path& replay, const fs::path& to) const {
        const auto form = ifthere("form.txt");
        const auto forms = form ? makefrontend(form, to / "form-log.txt") : nullptr;
        return runsession(readjob(folder_ / "job.toml"), replayed(replay),
                          {.record = to / "record.txt",
                           .trace = to / "trace.txt",
                           .tracewithout = linesof(folder_ / "without.txt"),
                           .dump = to / "dump.full"},
                          forms.get());
    }
    void expectsame(const char* name) const {
        const auto got = linesof(got_ / name);
        const auto expected = linesof(folder_ / name);
        for (std::size_t i = 0; i < std::min(got.size(), expected.size()); ++i)
            ASSERT_EQ(got[i], expected[i]) << "line " << i + 1 << " of " << name;
        EXPECT_EQ(got.size(), expected.size()) << "lines of " << name;
    }

    const fs::path folder_ = fs::path(KELD2_TEST_JOBS) / GetParam();
    const fs::path got_ = fs::path(KELD2_TEST_GOT) / GetParam();
    const keld2::test::MadeFolder made_;
};

TEST_P(GoldenJob, GivesTraceAndDumpAndARecordThatGivesThemAgain) {
    const int status = run(ifthere("replay.txt").value_or(made_.file("replay", "")), got_);
    writetext(got_ / "dump.json", kept(got_ / "dump.full"));
    for (const char* name : {"trace.txt", "dump.json", "form-log.txt"}) expectsame(name);
    const int result = nlohmann::json::parse(readtext(got_ / "dump.json"))["prgresult"][0];
    EXPECT_EQ(status, result <= 4 ? result : 1);

    run(got_ / "record.txt", made_ / "");
    for (const char* name : {"trace.txt", "dump.full"})
        EXPECT_EQ(linesof(made_ / name), linesof(got_ / name)) << name << " by the record";
}

INSTANTIATE_TEST_SUITE_P(Jobs, GoldenJob, testing::ValuesIn(jobfolders()), [](const auto& job) {
    std::string name = job.param;
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
});

}  // namespace
