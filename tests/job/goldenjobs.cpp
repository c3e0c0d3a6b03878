// Whole jobs with a scripted programmer: each folder below tests/data/jobs holds job.toml and
// replay.txt, and what has to come of them: trace.txt line by line, dump.json but for the elapsed
// seconds, which stand there as <TIME>. Without replay.txt nothing is answered but by default.
#include <gtest/gtest.h>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "common/madefolder.h"
#include "host/files/files.h"
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

nlohmann::json dumpof(const fs::path& path) {
    auto dump = nlohmann::json::parse(readtext(path));
    dump["MainRtstr"][0] = withouttime(dump["MainRtstr"][0]);
    for (const char* name : {"ubuf1", "ibuf1", "ibuffer"}) {
        std::string hex = dump.at(name);
        std::transform(hex.begin(), hex.end(), hex.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        dump[name] = hex;
    }
    return dump;
}

class GoldenJob : public testing::TestWithParam<std::string> {
  protected:
    int run(const fs::path& replay, const SessionOutput& output) const {
        return runsession(readjob(folder_ / "job.toml"), replayed(replay), output);
    }

    const fs::path folder_ = fs::path(KELD2_TEST_JOBS) / GetParam();
    const keld2::test::MadeFolder made_;
};

TEST_P(GoldenJob, GivesTraceAndDumpAndARecordThatGivesThemAgain) {
    const fs::path replay =
        fs::exists(folder_ / "replay.txt") ? folder_ / "replay.txt" : made_.file("replay", "");
    const int status =
        run(replay, {.record = made_ / "record", .trace = made_ / "trace", .dump = made_ / "dump"});

    const auto got = lines(made_ / "trace");
    const auto expected = lines(folder_ / "trace.txt");
    for (std::size_t i = 0; i < std::min(got.size(), expected.size()); ++i)
        ASSERT_EQ(got[i], expected[i]) << "line " << i + 1 << " of the trace";
    EXPECT_EQ(got.size(), expected.size()) << "lines of the trace";

    const auto dump = dumpof(made_ / "dump");
    EXPECT_EQ(dump, dumpof(folder_ / "dump.json"));
    const int result = dump["prgresult"][0];
    EXPECT_EQ(status, result <= 4 ? result : 1);

    run(made_ / "record", {.record = {}, .trace = made_ / "trace2", .dump = made_ / "dump2"});
    EXPECT_EQ(lines(made_ / "trace2"), expected) << "replay of the record";
    EXPECT_EQ(readtext(made_ / "dump2"), readtext(made_ / "dump")) << "replay of the record";
}

INSTANTIATE_TEST_SUITE_P(Jobs, GoldenJob, testing::ValuesIn(jobfolders()), [](const auto& job) {
    std::string name = job.param;
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
});

}  // namespace
