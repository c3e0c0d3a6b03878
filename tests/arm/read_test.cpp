// Read, Compare and Verify.
#include <gmock/gmock.h>

#include "arm/armbench.h"

namespace keld2::test {
namespace {

using ::testing::ElementsAre;

constexpr std::uint8_t read = 2;
constexpr std::uint8_t verify = 3;
constexpr std::uint8_t compare = 5;
const std::string config = "c0c7ced5dce3eaf1f8ff06";

void records(ArmBench& b, std::initializer_list<const char*> hex) {
    for (const char* record : hex) b.records.push_back(fromhex(record));
}

// Image first, then these.
void bulks(ArmBench& b, std::initializer_list<BulkAnswer> answers) {
    b.bulkreads = {BulkAnswer{}};
    b.bulkreads.insert(b.bulkreads.end(), answers);
}

TEST(ArmRead, FamilyASelectsEachBulkAndMarksTheLastBlock) {
    ArmBench b(familya, read);
    b.s().ramlg[0] = 0x10000;
    b.s().tlength[0] = 0x10000 + 40;
    b.s().wordmode[0] = 1;
    b.s().rambknum[0] = 1;
    bulks(b, {{.data = Bytes{11}}, {.data = Bytes{22}}, {.data = Bytes(40, 33)}});
    records(b, {"320000", "640000", "640000A1A2A3A4A5A6A7A8A9AAAB"});
    const Lines trace = b.afterimage();
    Lines frames(trace.begin() + 2, trace.end());
    for (auto& line : frames)  // the configuration bytes are not the matter here
        if (line.starts_with("frame 3402")) line.resize(16);
    EXPECT_EQ(frames, (Lines{"frame 3402010000", "transferwait 15", "transferwait 15",
                             "frame 0a00400200181f26", "bulkread ibuffer+0 32768",
                             "frame 0a01400200181f26", "bulkread ibuffer+32768 32768",
                             "frame 3402810100", "transferwait 15", "frame 0a00400200181f26",
                             "bulkread ibuffer+65536 40", "powerdown", "signalpass 0"}));
    EXPECT_EQ(b.s().ibuffer[0], 11);
    EXPECT_EQ(b.s().ibuffer[32768], 22);
    EXPECT_EQ(b.s().ibuffer[65575], 33);
    EXPECT_THAT(b.percents, ElementsAre(50 * 85 / 100 / 2, 85 / 2, 86 / 2, (100 + 85) / 2));
    // configuration bytes behind the data, and cleared in the record
    EXPECT_EQ(tohex({&b.s().ibuffer[200000], 11}), "00a1a2a3a4a5a6a7a8a9aa");
    EXPECT_EQ(tohex({b.s().ibuf1.data(), 14}),
              "640000000000000000000000"
              "00ab");
    EXPECT_EQ(b.log(), ">>{Op2}\n>>Op2 good\n>> <TIME>Sec\n");
}

TEST(ArmRead, FamilyBSelectsOnceABlock) {
    ArmBench b(familyb, read);
    b.s().ramlg[0] = 0x10000;
    b.s().tlength[0] = 0xD000;
    b.s().rambknum[0] = 2;
    b.run();
    EXPECT_EQ(b.count("frame 0a004001"), 1);
    EXPECT_EQ(b.count("frame 0a"), 1);
    EXPECT_EQ(b.count("frame 3402020000"), 1);
    EXPECT_EQ(b.count("bulkread ibuffer+0 49152"), 1);
    EXPECT_EQ(b.count("bulkread ibuffer+49152 4096"), 1);
}

TEST(ArmRead, SerialNumberIsNotedWhereTheDeviceHasOne) {
    ArmBench b(familyb, read);
    b.s().prgmode[0] = 41;
    b.s().modeltype[0] = familyb;
    records(b, {"64000102030405060708090A0B0C"});
    b.run();
    EXPECT_EQ(b.log(),
              ">>{Op2}\n\n>>Device Serial No.:010203040506070809\n>>Op2 good\n>> <TIME>Sec\n");
}

TEST(ArmRead, FailedDeviceStillGoesThroughTheTail) {
    ArmBench b(familya, read);
    records(b, {"10FA31"});
    b.run();
    EXPECT_EQ(b.count("bulkread ibuffer"), 0);
    EXPECT_EQ(b.s().ibuffer[200000], 0x31);
    EXPECT_EQ(b.log(), ">>{Op2}\n>>Op2 BAD\n>> <TIME>Sec\n");
}

TEST(ArmRead, LostConnectionSkipsTheTail) {
    ArmBench b(familya, read);
    const int before = b.s().ibuffer[200000];
    records(b, {"100031"});
    b.records.push_back(std::nullopt);
    b.run();
    EXPECT_EQ(b.s().ibuffer[200000], before);
    EXPECT_EQ(b.count("powerdown"), 1);
    EXPECT_EQ(b.s().prgresult[0], 3);
}

TEST(ArmRead, BulkReadIsTriedTwice) {
    ArmBench b(familyb, read);
    bulks(b, {{.cell = 5}, {.data = Bytes(64, 9)}});
    b.run();
    EXPECT_EQ(b.count("bulkread ibuffer+0 64"), 2);
    EXPECT_EQ(b.s().ibuffer[63], 9);
    EXPECT_EQ(b.s().prgresult[0], 0);
}

TEST(ArmRead, BulkReadThatFailsTwiceNeverPasses) {
    for (const std::uint8_t op : {read, compare}) {
        ArmBench b(familyb, op);
        bulks(b, {{.cell = 4}, {.cell = 255}});
        b.run();
        EXPECT_EQ(b.count("bulkread"), 3);
        EXPECT_EQ(ArmBench::tail(b.trace, 3), (Lines{"powerdown", "signalfail 0", "powerdown"}));
        EXPECT_EQ(b.log(), op == read ? ">>{Op2}\nbroken off\n>> <TIME>Sec\n"
                                      : "list\nhead\nbroken off\n>> <TIME>Sec\n");
        EXPECT_EQ(b.s().prgresult[0], 3);
    }
}

TEST(ArmRead, StopInABulkReadIsKept) {
    ArmBench b(familyb, read);
    bulks(b, {{.cell = 1}});
    b.stopatservice = 20;
    b.run();
    EXPECT_EQ(b.count("bulkread ibuffer"), 1);
    EXPECT_EQ(b.log(), ">>{Op2}\nstopped\n>> <TIME>Sec\n");
    EXPECT_EQ(b.s().prgresult[0], 2);
}

TEST(ArmCompare, RoundsALongLengthAndHandsEveryByteOn) {
    ArmBench b(familya, compare);
    b.s().ramlg[0] = 0x8000;
    b.s().tlength[0] = 0x10180;
    b.s().MainRtstr[1] = u"differences\n";
    b.run();
    EXPECT_EQ(b.count("checkbyte 255 "), 0x10100);
    EXPECT_EQ(b.count("checkbyte 255 65791 3"), 1);
    EXPECT_EQ(b.count("bulkread ibuf2 256"), 1);
    EXPECT_EQ(b.log(), "list\nhead\ndifferences\n>>Op5 good\n>> <TIME>Sec\n");
    EXPECT_EQ(b.s().MainRtstr[1].text(), u"");
    EXPECT_NE(b.s().ibuffer[200000], b.s().ibuf1[2]);  // nothing is stored
}

TEST(ArmCompare, FamilyBCutsTheLastBlockByTheFullLength) {
    ArmBench b(familyb, compare);
    b.s().ramlg[0] = 0x8000;
    b.s().tlength[0] = 0x10180;
    b.run();
    EXPECT_EQ(b.count("bulkread ibuf2 384"), 1);
    EXPECT_EQ(b.count("frame 3406000200"), 1);
}

TEST(ArmCompare, LengthsUpToTheLimitAreNotRounded) {
    ArmBench b(familya, compare);
    b.s().tlength[0] = 0xFF81;
    b.answers["checkbyte"] = 0;
    b.run();
    EXPECT_EQ(b.count("checkbyte"), 0xFF81);
}

TEST(ArmCompare, WordsAndTheEndOfTheList) {
    ArmBench b(familya, compare);
    b.s().wordmode[0] = 2;
    b.s().tlength[0] = 5;
    b.s().wltbigendbuf[2] = 3;
    bulks(b, {{.data = Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}}});
    b.answers["checkword 5 6 3 3 255"] = 1;
    b.run();
    EXPECT_EQ(ArmBench::tail(b.trace, 5),
              (Lines{"checkword 1 2 1 3 255", "checkword 3 4 2 3 255", "checkword 5 6 3 3 255",
                     "powerdown", "signalpass 0"}));
}

// --- verify --------------------------------------------------------------------------------------

TEST(ArmVerify, FeedsEachBlockAndFollowsIt) {
    ArmBench b(familya, verify);
    b.s().ramlg[0] = 128;
    b.s().tlength[0] = 200;
    b.s().rambknum[0] = 1;
    records(b, {"320000", "640000", "320000", "640000"});
    const Lines trace = b.afterimage();
    EXPECT_EQ(Lines(trace.begin() + 2, trace.end()),
              (Lines{"frame 0a008002", "bulkwrite ibuffer+0 32768",
                     "frame 3404010000787f868d949ba2a9b0b7be", "transferwait 15", "transferwait 15",
                     "frame 0a008002", "bulkwrite ibuffer+128 72",
                     "frame 3404810100787f868d949ba2a9b0b7be", "transferwait 15", "transferwait 15",
                     "powerdown", "signalpass 0"}));
    EXPECT_THAT(b.percents, ElementsAre(25, 50, 75));
}

TEST(ArmVerify, GeometryByFamily) {
    struct Row {
        const char* what;
        std::int16_t model;
        std::int32_t ramlg;
        std::int32_t tlength;
        Lines bulks;
    };
    const Row rows[]{
        {"A, narrow",
         familya,
         0x8000,
         0x10180,
         {"ibuffer+0 32768", "ibuffer+32768 32768", "ibuffer+65536 256"}},
        {"A, wide", familya, 0x10000, 0x10001, {"ibuffer+0 65536"}},
        {"A, not rounded", familya, 0x8000, 0xFF81, {"ibuffer+0 32768", "ibuffer+32768 32641"}},
        {"B, by its range",
         familyb,
         0x8000,
         0x10180,
         {"ibuffer+0 49152", "ibuffer+32768 49152", "ibuffer+65536 256"}},
        {"B, several bulks", familyb, 0x10000, 0xC001, {"ibuffer+0 49152", "ibuffer+49152 1"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        ArmBench b(row.model, verify);
        b.s().ramlg[0] = row.ramlg;
        b.s().tlength[0] = row.tlength;
        b.run();
        for (const auto& bulk : row.bulks) EXPECT_EQ(b.count("bulkwrite " + bulk), 1) << bulk;
        EXPECT_EQ(b.count("bulkwrite ibuffer"), static_cast<int>(row.bulks.size()));
    }
}

TEST(ArmVerify, DifferenceIsNotedWithTheBufferAddress) {
    struct Row {
        std::uint8_t words;
        const char* record;
        const char* line;
    };
    const Row rows[]{
        {1, "10FA0000100000AABBCCDD",
         ">>Device Address:00001000H  Device Data:AAH  Buffer Address:00001000H  Buffer "
         "Data:CCH\n>>Op3 BAD\n"},
        {2, "10FA0000100000AABBCCDD",
         ">>Device Address:00001000H  Device Data:BBAAH  Buffer Address:00002000H  Buffer "
         "Data:DDCCH\n>>Op3 BAD\n"},
        {2, "10FA00FFFFFF7FAABBCCDD",
         ">>Device Address:7FFFFFFFH  Device Data:BBAAH  Buffer Address:FFFFFFFEH  Buffer "
         "Data:DDCCH\n>>Op3 BAD\n"},
        {2, "10FA0000000080AABBCCDD", "broken off\n"},  // the product has nine digits
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.record);
        ArmBench b(familyb, verify);
        b.s().wordmode[0] = row.words;
        records(b, {row.record});
        b.run();
        EXPECT_EQ(b.log(), ">>{Op3}\n" + std::string(row.line) + ">> <TIME>Sec\n");
    }
}

TEST(ArmVerify, FailedTransfersByTheirExits) {
    ArmBench select(familyb, verify);
    select.comwrites = {0, 0, 0, 1};
    EXPECT_EQ(ArmBench::tail(select.run(), 2), (Lines{"frame 0a008001", "powerdown"}));
    ArmBench bulk(familyb, verify);
    bulk.bulkwrites = {0, 1};
    EXPECT_EQ(ArmBench::tail(bulk.run(), 3), (Lines{"powerdown", "signalfail 0", "powerdown"}));
    ArmBench wait(familyb, verify);
    wait.records.push_back(std::nullopt);
    EXPECT_EQ(ArmBench::tail(wait.run(), 2), (Lines{"transferwait 15", "powerdown"}));
    for (ArmBench* b : {&select, &bulk, &wait}) {
        EXPECT_EQ(b->s().prgresult[0], 3);
        EXPECT_EQ(b->log(), ">>{Op3}\nbroken off\n>> <TIME>Sec\n");
    }
}

// --- the two stop rules
// ---------------------------------------------------------------------------

TEST(ArmStop, FamilyBLeavesAtOnceAndSaysNothing) {
    for (const std::uint8_t op : {read, verify, compare}) {
        SCOPED_TRACE(int{op});
        ArmBench b(familyb, op);
        records(b, {"200000", "300000", "640000"});
        b.stopatservice = 5;
        b.run();
        EXPECT_EQ(b.count("frame 341e"), 0);
        EXPECT_EQ(ArmBench::tail(b.trace, 3),
                  (Lines{"transferwait 15", "powerdown", "signalfail 0"}));
        EXPECT_EQ(b.s().prgresult[0], 2);
        EXPECT_EQ(b.percents.size(), 1U);
    }
}

TEST(ArmStop, FamilyATellsTheProgrammerAndWaitsForIt) {
    for (const std::uint8_t op : {read, verify}) {
        SCOPED_TRACE(int{op});
        ArmBench b(familya, op);
        records(b, {"200000", "300000", "301E00", "640000"});
        b.stopatservice = 5;
        b.run();
        EXPECT_EQ(ArmBench::tail(b.trace, 5),
                  (Lines{"transferwait 15", "frame 341e800000c0c7ce", "transferwait 15",
                         "powerdown", "signalfail 0"}));
        EXPECT_EQ(b.s().prgresult[0], 2);
    }
}

TEST(ArmStop, FamilyAMayHaveStoppedByItself) {
    ArmBench b(familya, verify);
    records(b, {"201E00"});
    b.run();
    EXPECT_EQ(b.log(), ">>{Op3}\nstopped\n>> <TIME>Sec\n");
}

TEST(ArmStop, RestOfTheRecordStillRuns) {
    ArmBench b(familya, verify);
    records(b, {"640000"});
    b.stopatservice = 4;
    b.run();
    EXPECT_EQ(b.count("frame 341e"), 1);
    EXPECT_EQ(b.s().prgresult[0], 2);  // done, and stopped all the same
}

}  // namespace
}  // namespace keld2::test
