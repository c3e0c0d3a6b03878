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
#include <fstream>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "common/madefolder.h"
#include "host/files/files.h"
#include "host/forms/formfrontend.h"
#include "host/job/session.h"

namespace {

using namespace keld2::host;
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

std::vector<std::string> lines(const fs::path& path) {
    std::ifstream in(path);
    std::vector<std::string> list;
    for (std::string line; std::getline(in, line);) list.push_back(line);
    return list;
}

// The elapsed seconds of each line ">> 0.42Sec" replaced by <TIME>.
std::string withouttime(std::string log) {
    constexpr std::string_view digits = "0123456789.";
    for (std::size_t at = 0; (at = log.find(">> ", at)) != log.npos; at += 3) {
        const std::size_t end = log.find_first_not_of(digits, at + 3);
        if (end != log.npos && end > at + 3 && log.compare(end, 4, "Sec\n") == 0)
            log.replace(at + 3, end - at - 3, "<TIME>");
    }
    return log;
}

// Bytes in hexadecimal as a list: 16 or more equal ones as "COUNT*BYTE", others as they stand.
nlohmann::json runs(const std::string& hex) {
    constexpr std::size_t longrun = 2 * 16;
    auto list = nlohmann::json::array();
    std::string mixed;
    const auto endmixed = [&] {
        if (!mixed.empty()) list.push_back(std::exchange(mixed, {}));
    };
    for (std::size_t at = 0, end = 0; at < hex.size(); at = end) {
        const std::string byte = hex.substr(at, 2);
        while (end < hex.size() && hex.compare(end, 2, byte) == 0) end += 2;
        if (end - at < longrun) {
            mixed += hex.substr(at, end - at);
            continue;
        }
        endmixed();
        list.push_back(std::to_string((end - at) / 2) + "*" + byte);
    }
    endmixed();
    return list;
}

// The dump as the folders hold it.
std::string kept(const fs::path& path) {
    auto dump = nlohmann::ordered_json::parse(readtext(path));
    dump["MainRtstr"][0] = withouttime(dump["MainRtstr"][0]);
    dump["ibuffer"] = runs(dump["ibuffer"]);
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
                           .tracewithout = lines(folder_ / "without.txt"),
                           .dump = to / "dump.full"},
                          forms.get());
    }
    void expectsame(const char* name) const {
        const auto got = lines(got_ / name);
        const auto expected = lines(folder_ / name);
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
        EXPECT_EQ(lines(made_ / name), lines(got_ / name)) << name << " by the record";
}

INSTANTIATE_TEST_SUITE_P(Jobs, GoldenJob, testing::ValuesIn(jobfolders()), [](const auto& job) {
    std::string name = job.param;
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
});

}  // namespace
