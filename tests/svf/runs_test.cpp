// The run procedures as a whole: how they begin, which lines count, how they end.
#include <gtest/gtest.h>

#include "jtag/waveform.h"
#include "svf/svfbench.h"

namespace keld2::testing {
namespace {

constexpr std::uint8_t allfamilies[] = {50, 80, 81, 82, 83, 84, 85, 86, 87,
                                        88, 89, 90, 91, 92, 93, 94, 95};

// The clocks of each TAP reset; what stands between them shows in the calls.
std::string resetof(int family) {
    switch (family) {
        case 84:
        case 85:
        case 86:
            return "qwaitlong 100, 10*8, 00";
        case 87:
        case 88:
        case 89:
            return "10*5, 00*5, qrun";
        case 90:
        case 91:
        case 92:
        case 93:
            return "qwaitshort 100, 11*5, 01*2";
        case 94:
        case 95:
            return "qwaitshort 100, qwaitlong 100, 10*6, 00*2, qrun";
        default:
            return "qwaitlong 100, 10*13, 00, qrun";
    }
}

TEST(SvfRun, BeginsWithTheListEngineAndTheReset) {
    for (const std::uint8_t family : allfamilies) {
        SvfBench bench(family, 999);
        ASSERT_EQ(bench.play(""), 0);
        auto calls = bench.calls();
        ASSERT_GE(calls.size(), 6U);
        EXPECT_TRUE(calls[0].starts_with("frame 13 42 ")) << calls[0];
        EXPECT_EQ(std::count(calls[0].begin(), calls[0].end(), ' '), 15);
        EXPECT_EQ(calls[1], "qrun");
        EXPECT_EQ(calls[2], "waitshort 20");
        EXPECT_TRUE(calls[3].starts_with("frame 10 16 64 ")) << calls[3];
        EXPECT_EQ(std::count(calls[3].begin(), calls[3].end(), ' '), 8);
        EXPECT_EQ(bench.s().ubuflg[0], 16368);
        // The first refresh of the pins may look like a clock; the reset's own clocks follow.
        Waveform waveform(family);
        const std::string wave = waveform({calls.begin() + 4, calls.end()});
        const std::size_t found = wave.find(resetof(family));
        EXPECT_NE(found, std::string::npos) << int{family} << ": " << wave;
        EXPECT_LE(found, 6U) << int{family} << ": " << wave;
    }
}

TEST(SvfRun, LinesThatAreSkipped) {
    for (const std::uint8_t family : allfamilies) {
        SvfBench bench(family, 999);
        const std::string plain = bench.statements("SDR 8 TDI (A5);\n");
        EXPECT_EQ(bench.statements("// SDR 8 TDI (A5);\n \n\n! x\n?! y\nHIR 8 TDI (00);\nhdr 1;\n"
                                   "TDR 1;\nTIR 1;\nstate IDLE;\nENDDR DRPAUSE;\nFREQUENCY 1 HZ;\n"
                                   " SDR 8 TDI (A5);\n\tSIR 8 TDI (00);\nTRST OFF;\nSD\n"
                                   "sdr 8 TDI (A5);\n\xff\x00\n"),
                  plain)
            << int{family};
    }
}

TEST(SvfRun, ReadsUpToItsLineLimit) {
    struct Limit {
        int family, lines;
    };
    for (const Limit limit : {Limit{80, 10000},
                              {83, 10000},
                              {84, 10000},
                              {87, 10000},
                              {89, 40000},
                              {90, 10000},
                              {92, 15000},
                              {94, 15000},
                              {50, 10000}}) {
        SvfBench bench(static_cast<std::uint8_t>(limit.family), 999);
        std::string text(static_cast<std::size_t>(limit.lines) - 1, '\n');
        EXPECT_EQ(bench.play(text + "SIR\n"), 1) << limit.family;
        EXPECT_EQ(bench.play(text + "\nSIR\n"), 0) << limit.family << ": reading has stopped";
        // Further lines of a statement do not count.
        EXPECT_EQ(bench.play("SDR 8 TDI (A\n5);\n" + text.substr(1) + "SIR\n"), 1) << limit.family;
    }
}

TEST(SvfRun, ProgressIsThatOfTheCountedCharacters) {
    // By the length of the text with its line ends; lines of B layouts do not count.
    struct Case {
        const char* text;
        int percent;
    };
    for (const Case& c : {Case{"0123456789\n", 90},
                          {"0123456789", 100},
                          {"0123\r\n01\r\n", 60},
                          {"SDR 8 TDI (00)\n\tTDO (00)\n\tMASK (00);\n", 37},
                          {"SDR 8 TDI (0\n0);\n", 88},
                          {"", 1}}) {
        SvfBench bench(80, 999);
        EXPECT_EQ(bench.play(c.text), 0);
        EXPECT_EQ(bench.s().prgmode[1], c.percent) << c.text;
    }
    SvfBench bench(50, 999);
    EXPECT_EQ(bench.play(std::string(250, '\n')), 0);
    EXPECT_EQ(bench.s().prgmode[1], 2) << "lines in 10000";
}

TEST(SvfRun, ATextTooLongForTheProgressFails) {
    SvfBench bench(80, 999);
    const std::string line(21474836, '/');
    EXPECT_EQ(bench.play(line), 0);
    EXPECT_EQ(bench.play(line + "/"), 1) << "a hundred times its length is no 32-bit number";
    SvfBench bylines(50, 999);
    EXPECT_EQ(bylines.play(line + "/"), 0);
}

TEST(SvfRun, FailsWithoutItsText) {
    for (const std::uint8_t family : allfamilies) {
        SvfBench bench(family, 999);
        bench.onread = [&] { bench.file.reset(); };
        EXPECT_EQ(bench.play(""), 1) << int{family};
        EXPECT_EQ(bench.count("usbbulkread 16385"), 0U);
        EXPECT_EQ(bench.log().find("Warning"), std::string::npos);
        EXPECT_NE(bench.log().find(" failed\n"), std::string::npos);
    }
}

TEST(SvfRun, AStopBetweenTransfersIsNotLookedAt) {
    SvfBench bench(80, 999);
    bench.onread = [&] { bench.s().prgresult[0] = 2; };
    EXPECT_EQ(bench.play("SDR 8 TDI (00);\n"), 0) << "the transfer at the end wipes it";
    SvfBench late(89, 999);
    late.onread = [&] { late.s().prgresult[0] = 2; };
    EXPECT_EQ(late.play("SDR 8 TDI (00);\n"), 2) << "no transfer follows";
}

TEST(SvfRun, LineLevelsAreKeptBetweenOperations) {
    SvfBench bench(87, 999);  // whose reset does not touch TDI
    ASSERT_EQ(bench.playtwo("SDR 8 TDI (FF);\n", ""), 0);
    const auto calls = bench.calls();
    const auto second = std::find_if(calls.begin() + 1, calls.end(), [](const auto& call) {
        return call.starts_with("frame 13 ");
    });
    ASSERT_NE(second, calls.end());
    EXPECT_EQ(*(second + 4), "qregwrite 199 0") << "TDI is still high when TMS is written";
}

TEST(SvfRun, OperationsOfTheWindows) {
    struct Case {
        int family, operation;
        bool plays;
    };
    for (const Case& c : {Case{80, 2, true},
                          {80, 9, true},
                          {80, 19, true},
                          {50, 6, true},
                          {50, 20, true},
                          {50, 2, false},
                          {50, 8, false},
                          {51, 6, false},
                          {96, 6, false},
                          {255, 6, false}}) {
        SvfBench bench(static_cast<std::uint8_t>(c.family), 999);
        bool played = false;
        bench.onread = [&] { played = true; };
        bench.play("");
        played = false;
        bench.s().prgresult[1] = static_cast<std::uint8_t>(c.operation);
        EXPECT_EQ(bench.run(c.operation), 0);
        EXPECT_EQ(played, c.plays) << c.family << ", operation " << c.operation;
    }
}

}  // namespace
}  // namespace keld2::testing
