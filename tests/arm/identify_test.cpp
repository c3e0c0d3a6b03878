// Device code and one-command operations.
#include <gmock/gmock.h>

#include <cstring>

#include "arm/armbench.h"

namespace keld2::test {
namespace {

using ::testing::ElementsAre;

constexpr std::uint8_t blankcheck = 4;
constexpr std::uint8_t erase = 8;

class ArmIdentity : public ::testing::Test {
  protected:
    void expect(std::uint8_t prgmode, std::int16_t maker, std::int16_t type) {
        b.s().chipidtestmode[0] = Flag::yes;
        b.s().prgmode[0] = prgmode;
        b.s().compid[0] = maker;
        b.s().typeid_[0] = type;
    }
    void code(const std::string& record) { b.records.push_back(fromhex(record)); }

    ArmBench b{familyb, erase};
    const std::string end = ">>{Op8}\n>>Op8 good\n>> <TIME>Sec\n";
};

TEST_F(ArmIdentity, MatchIsNotedAndFamilyBWritesItsRegister) {
    expect(10, 0x1F, 0xAB);
    b.s().rambknum[0] = 3;
    code("50FF");
    code("6400021FAB0C9D77");
    const Lines trace = b.afterimage();
    EXPECT_EQ(Lines(trace.begin() + 2, trace.begin() + 7),
              (Lines{"frame 341d030000c0c7ced5dce3eaf1f8ff06", "transferwait 15", "transferwait 15",
                     "regwrite 1 53", "waitshort 20"}));
    EXPECT_EQ(b.log(), ">>Maker 1F   Code AB0C9D\n" + end);
}

TEST_F(ArmIdentity, NothingExpectedIsNotChecked) {
    expect(6, 0, 0);
    const Lines trace = b.afterimage();
    EXPECT_EQ(trace[2], "waitshort 20");
    EXPECT_EQ(b.count("frame 341d"), 0);
    EXPECT_EQ(b.log(), end);
}

TEST_F(ArmIdentity, LowModeWithoutMakerShowsTheCodeWhateverItIs) {
    for (const int mode : {1, 5}) {
        ArmBench low{familya, erase};
        low.s().chipidtestmode[0] = Flag::yes;
        low.s().prgmode[0] = static_cast<std::uint8_t>(mode);
        low.records.push_back(fromhex("64000000CD"));
        low.run();
        EXPECT_EQ(low.log(), ">>Code CD\n" + end);
        EXPECT_EQ(low.count("regwrite"), 0);
        EXPECT_TRUE(low.shown.empty());
    }
}

TEST_F(ArmIdentity, MismatchAsks) {
    struct Row {
        const char* what;
        std::uint8_t prgmode;
        std::deque<BoxAnswer> answers;
        const char* text;
        const char* log;
        int asked;
        std::uint8_t result;
    };
    const std::string again = ">>Code AB0C\n>>Code AB0C\n" + end;
    const Row rows[]{
        {"abort", 10, {BoxAnswer::abort}, "Maker 1F   Code AB0C", "", 1, 2},
        {"ignore", 10, {BoxAnswer::ignore}, "Maker 1F   Code AB0C", end.c_str(), 1, 0},
        {"retry, then ignore",
         3,
         {BoxAnswer::retry, BoxAnswer::ignore},
         "Code AB0C",
         again.c_str(),
         2,
         0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        ArmBench bench{familyb, erase};
        bench.s().chipidtestmode[0] = Flag::yes;
        bench.s().prgmode[0] = row.prgmode;
        bench.s().compid[0] = 0x1F;
        bench.s().typeid_[0] = 0xAC;
        bench.boxes = row.answers;
        for (int i = 0; i < row.asked; ++i) bench.records.push_back(fromhex("6400011FAB0C"));
        bench.run();
        ASSERT_EQ(bench.shown.size(), static_cast<std::size_t>(row.asked));
        EXPECT_EQ(bench.shown[0].text, std::u16string(row.text, row.text + std::strlen(row.text)));
        EXPECT_EQ(bench.shown[0].title, u"Warning! Device Code Error!");
        EXPECT_EQ(bench.shown[0].buttons, BoxButtons::abortretryignore);
        EXPECT_EQ(bench.shown[0].icon, BoxIcon::exclamation);
        EXPECT_EQ(bench.count("frame 341d"), row.asked);
        EXPECT_EQ(bench.log(), row.log);
        EXPECT_EQ(bench.s().prgresult[0], row.result);
        if (row.result == 2) {
            EXPECT_EQ(ArmBench::tail(bench.trace, 2), (Lines{"waitshort 20", "powerdown"}));
        }
    }
}

TEST_F(ArmIdentity, FailedReadEndsTheRunWithoutAsking) {
    expect(10, 0x1F, 0xAB);
    code("10FA");
    b.run();
    EXPECT_EQ(ArmBench::tail(b.trace, 3), (Lines{"transferwait 15", "waitshort 20", "powerdown"}));
    EXPECT_EQ(b.log(), ">>Device Code Error!\n");
    EXPECT_EQ(b.s().prgresult[0], 2);
}

TEST_F(ArmIdentity, LostConnectionIsLeftToTheNextWait) {
    expect(10, 0x1F, 0xAB);
    b.records.push_back(std::nullopt);
    b.records.push_back(std::nullopt);
    b.run();
    EXPECT_THAT(ArmBench::tail(b.trace, 5), ElementsAre("transferwait 15", "waitshort 20",
                                                        "frame 3409000000c0c7ced5dce3eaf1f8ff06",
                                                        "transferwait 15", "powerdown"));
    EXPECT_EQ(b.log(), ">>{Op8}\nbroken off\n>> <TIME>Sec\n");
}

TEST_F(ArmIdentity, MoreCodeBytesThanTheRecordHasIsAFault) {
    expect(10, 0x1F, 0xAB);
    code("6400FF1FAB");
    b.run();
    EXPECT_EQ(b.trace.back(), "regwrite 1 53");
    EXPECT_EQ(b.s().prgresult[0], 3);
}

// --- one-command operations ---------------------------------------------------------------------

struct Command {
    const char* what;
    std::uint8_t op;
    std::vector<std::string> records;
    const char* notes;  // between the headline and the elapsed line
    std::uint8_t result;
};

TEST(ArmCommand, PhasesAndFailures) {
    const std::string location = ">>Device Address:12345678H  Device Data:";
    const std::string one = location + "ABH\n>>Op4 BAD\n";
    const Command commands[]{
        {"blank check phase, then verify: one note",
         erase,
         {"100028", "20003C", "64003C"},
         ">>{Blank Check}\n>>Op8 good\n",
         0},
        {"verify phase, then blank check: one note",
         erase,
         {"10003C", "640028"},
         ">>{Verify}\n>>Op8 good\n",
         0},
        {"its own phase is no note", blankcheck, {"100028", "640028"}, ">>Op4 good\n", 0},
        {"verify within a blank check", blankcheck, {"64003C"}, ">>{Verify}\n>>Op4 good\n", 0},
        {"failed blank check shows where", blankcheck, {"10FA2878563412AB"}, one.c_str(), 1},
        {"failed erase does not", erase, {"10FA1E78563412AB"}, ">>Op8 BAD\n", 1},
        {"stopped by itself keeps the result", erase, {"101E1E"}, ">>Op8 good\n", 0},
    };
    for (const Command& command : commands) {
        SCOPED_TRACE(command.what);
        ArmBench b(familya, command.op);
        for (const auto& record : command.records) b.records.push_back(fromhex(record));
        b.run();
        EXPECT_EQ(b.log(),
                  ">>{Op" + std::to_string(command.op) + "}\n" + command.notes + ">> <TIME>Sec\n");
        EXPECT_EQ(b.s().prgresult[0], command.result);
    }
}

TEST(ArmCommand, WordsShowTheHighByteFirst) {
    ArmBench b(familya, blankcheck);
    b.s().wordmode[0] = 2;
    b.records.push_back(fromhex("10FA2878563412ABCD"));
    b.run();
    EXPECT_NE(b.log().find("H  Device Data:CDABH\n"), std::string::npos) << b.log();
}

TEST(ArmCommand, StopIsSentAtEveryRecordUntilItIsAnswered) {
    ArmBench b(familya, erase);
    for (const char* record : {"100000", "200000", "300000", "301E00"})
        b.records.push_back(fromhex(record));
    b.stopatservice = 5;  // image, firmware, headline, first record, second
    const Lines trace = b.afterimage();
    EXPECT_EQ(b.count("frame 341e000000c0c7ce"), 2);
    EXPECT_EQ(ArmBench::tail(trace, 6),
              (Lines{"frame 341e000000c0c7ce", "transferwait 15", "frame 341e000000c0c7ce",
                     "transferwait 15", "powerdown", "signalfail 0"}));
    EXPECT_EQ(b.percents, (std::vector<int>{0x10, 0x20, 0x30}));
    EXPECT_EQ(b.log(), ">>{Op8}\nstopped\n>> <TIME>Sec\n");
}

TEST(ArmCommand, DoneInTheRecordOfAStopEndsTheOperation) {
    ArmBench b(familya, erase);
    b.stopatservice = 4;
    b.records.push_back(fromhex("640000"));
    b.run();
    EXPECT_EQ(b.count("frame 341e"), 1);
    EXPECT_EQ(b.s().prgresult[0], 2);
}

TEST(ArmCommand, EveryOtherNumberIsForwarded) {
    for (const auto& [op, byte] :
         std::map<int, std::string>{{1, "02"}, {7, "08"}, {200, "c9"}, {255, "00"}}) {
        ArmBench b(familya, static_cast<std::uint8_t>(op));
        b.s().ramlg[0] = 0;  // no operation that uses addresses
        b.s().wltbigendbuf[1] = -1;
        b.run();
        EXPECT_EQ(b.count("frame 34" + byte + "000000"), 1) << op;
        EXPECT_EQ(b.s().prgresult[0], 0) << op;
    }
}

}  // namespace
}  // namespace keld2::test
