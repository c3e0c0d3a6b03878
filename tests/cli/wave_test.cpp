// The waveform of a run, read again by a reader that knows nothing of the writer.
#include <fstream>
#include <map>
#include <sstream>

#include "cli/bench.h"
#include "host/files/files.h"
#include "sim/tap.h"

namespace keld2::test {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;

struct Change {
    std::uint64_t time;
    std::string signal, value;
};

// Names by codes from the header, then the changes; anything that breaks the format is a failure.
std::vector<Change> readvcd(const std::filesystem::path& path) {
    std::ifstream file(path);
    std::map<std::string, std::string> names;
    std::vector<Change> changes;
    std::uint64_t time = 0;
    bool body = false;
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::vector<std::string> w{std::istream_iterator<std::string>(words), {}};
        if (w.empty()) continue;
        if (w[0] == "$var" && w.size() >= 6) names[w[3]] = w[4];
        if (w[0] == "$enddefinitions") body = true;
        if (!body || line[0] == '$') continue;
        if (line[0] == '#') {
            const std::uint64_t now = std::stoull(line.substr(1));
            EXPECT_GE(now, time) << line;
            time = now;
            continue;
        }
        const bool longform = std::string("brs").find(line[0]) != std::string::npos;
        EXPECT_EQ(w.size(), longform ? 2U : 1U) << line;
        const std::string code = longform ? w.back() : line.substr(1);
        EXPECT_TRUE(names.contains(code)) << line;
        changes.push_back({time, names[code], longform ? w[0].substr(1) : line.substr(0, 1)});
    }
    return changes;
}

std::vector<std::string> valuesof(const std::vector<Change>& changes, const std::string& signal) {
    std::vector<std::string> values;
    for (const Change& one : changes)
        if (one.signal == signal) values.push_back(one.value);
    return values;
}

// What a chip's data register gives in its first scan, as a logic analyser would find it.
std::uint32_t firstdatascan(const std::vector<Change>& changes) {
    using sim::TapState;
    std::map<std::string, bool> level;
    TapState state = TapState::testlogicreset;
    std::uint32_t value = 0;
    int bits = 0;
    for (const Change& one : changes) {
        const bool high = one.value == "1";
        const bool rises = one.signal == "TCK" && high && !level["TCK"];
        if (rises) {
            if (state == TapState::shiftdr && bits < 32)
                value |= static_cast<std::uint32_t>(level["TDO"]) << bits++;
            if (state == TapState::updatedr && bits > 0) return value;
            state = next(state, level["TMS"]);
        }
        level[one.signal] = high;
    }
    return value;
}

class Waves : public Bench {};

TEST_F(Waves, ShowTheDeviceCodeOfALogicDeviceOnItsLines) {
    device_ = "logic-8160";
    mustwork({"blank", "--vcd", file("run.vcd")});
    const auto changes = readvcd(file("run.vcd"));
    EXPECT_EQ(firstdatascan(changes), 0x2846E9E1U);
    EXPECT_THAT(valuesof(changes, "statement"),
                Contains("shift\\x20DR\\x2032\\x20bits,\\x20TDI\\x20stays\\x200,\\x20TDO\\x200x2846"
                         "E9E1"));
    EXPECT_THAT(valuesof(changes, "operation"), Contains(HasSubstr("Blank\\x20Check")));
    EXPECT_EQ(valuesof(changes, "row").front(), "1");
    EXPECT_EQ(valuesof(changes, "VCC").back(), "0");
}

TEST_F(Waves, PutAStatementWhereItsFirstLineMoves) {
    const std::string data = hex("a.hex", {{0, somebytes(64)}});
    mustwork({"program", data, "--vcd", file("run.vcd")});
    const auto changes = readvcd(file("run.vcd"));
    const auto page = std::find_if(changes.begin(), changes.end(), [](const Change& one) {
        return one.value.starts_with("command:\\x20write\\x20page\\x20at\\x200x0020");
    });
    ASSERT_NE(page, changes.end());
    std::vector<std::string> bytes;  // at the rising strobes behind the statement
    std::string byte;
    for (auto one = changes.begin(); one != changes.end() && bytes.size() < 5; ++one) {
        if (one->signal == "data") byte = one->value;
        if (one >= page && one->signal == "strobe" && one->value == "1") bytes.push_back(byte);
    }
    EXPECT_EQ(bytes, (std::vector<std::string>{"10101010", "01010000", "00000000", "00100000",
                                               "10100000"}));
}

TEST_F(Waves, ShowParallelLinesAndTheByteReadFromThem) {
    device_ = "parallel-byte-64k";
    mustwork({"blank", "--vcd", file("run.vcd")});
    const auto changes = readvcd(file("run.vcd"));
    EXPECT_THAT(valuesof(changes, "statement"),
                Contains(HasSubstr("bus:\\x20read\\x20at\\x200x1C4000\\x20to\\x200x1C7FFF")));
    EXPECT_THAT(valuesof(changes, "address"), Contains("0000111001111111111111111"));
    EXPECT_THAT(valuesof(changes, "read"), ::testing::ElementsAre("11111111"));
    EXPECT_THAT(valuesof(changes, "VPP0"), Contains("12"));
}

TEST_F(Waves, OfAReplayKnowNoAnswersAndLeaveTheTraceAlone) {
    const std::filesystem::path job =
        std::filesystem::path(KELD2_TEST_DEVICES) / "../tests/data/jobs/svf-90-drives-and-reads";
    const auto run = [&](const std::string& trace, std::vector<std::string> more) {
        std::vector<std::string> arguments{"job",      (job / "job.toml").string(),
                                           "--replay", (job / "replay.txt").string(),
                                           "--trace",  file(trace).string()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return runprogram(arguments).status;
    };
    const int status = run("without.txt", {});
    EXPECT_EQ(run("with.txt", {"--vcd", file("run.vcd")}), status);
    EXPECT_EQ(host::readtext(file("with.txt")), host::readtext(file("without.txt")));
    const auto changes = readvcd(file("run.vcd"));
    EXPECT_EQ(valuesof(changes, "TDO"), std::vector<std::string>{"x"});
    EXPECT_GT(valuesof(changes, "TCK").size(), 100U);
    EXPECT_GT(changes.back().time, 1'500'000'000U);  // ns; the start-up alone waits as long
    EXPECT_EQ(run("with.txt", {"--vcd", (file("none") / "run.vcd").string()}), 66);
}

}  // namespace
}  // namespace keld2::test
