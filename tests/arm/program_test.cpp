// Program and Auto Program.
#include <gmock/gmock.h>

#include "arm/armbench.h"

namespace keld2::test {
namespace {

using ::testing::ElementsAre;

constexpr std::uint8_t autoprogram = 0;
constexpr std::uint8_t program = 6;
const std::string config = "c0c7ced5dce3eaf1f8ff06";  // the bytes 64 to 74 of the buffer

// A range of count words in blocks of 128 bytes.
void blocks(ArmBench& b, int words) {
    b.s().ramlg[0] = 128;
    b.s().wltbigendbuf[1] = words - 1;
    b.s().tlength[0] = words;
}

void records(ArmBench& b, std::initializer_list<const char*> hex) {
    for (const char* record : hex) b.records.push_back(fromhex(record));
}

TEST(ArmProgram, FeedsBlocksAndMarksTheLast) {
    ArmBench b(familyb, program);
    b.s().rambknum[0] = 3;
    b.s().wltbigendbuf[2] = 10;
    blocks(b, 128 + 50);
    b.s().tlength[0] = 64;
    const Lines trace = b.afterimage();
    EXPECT_EQ(Lines(trace.begin() + 2, trace.end()),
              (Lines{"frame 0a008002", "bulkwrite ibuffer+10 49152", "frame 3407030000" + config,
                     "transferwait 15", "frame 0a008002", "bulkwrite ibuffer+138 150",
                     "frame 3407830100" + config, "transferwait 15", "powerdown", "signalpass 0"}));
}

TEST(ArmProgram, FamilyATakesItsEndFromTheLengthAndItsSideFromTheBank) {
    ArmBench b(familya, autoprogram);
    b.s().ramlg[0] = 0x10000;
    b.s().tlength[0] = 0x10180;
    b.s().wltbigendbuf[1] = 5;
    b.s().rambknum[0] = 1;
    const Lines trace = b.afterimage();
    EXPECT_EQ(b.s().wltbigendbuf[1], 0x100FF);
    EXPECT_EQ(b.count("frame 0a008002"), 2);
    EXPECT_EQ(b.count("bulkwrite ibuffer+0 65536"), 1);
    EXPECT_EQ(b.count("bulkwrite ibuffer+65536 356"), 1);
    EXPECT_EQ(b.count("frame 3401010000"), 1);
    EXPECT_EQ(b.count("frame 3401810100"), 1);
}

TEST(ArmProgram, AutoNotesEachPhaseOnceAndTheMarginsInTheLastBlock) {
    ArmBench b(familyb, autoprogram);
    blocks(b, 256);
    b.s().wlverifyvcc[0] = 2;
    b.s().prgmode[2] = 9;
    records(b, {"05001E", "32001E", "0A0028", "100032", "50003C00", "51003C02", "640032",  //
                "05001E", "0A0028", "100032", "10003C01", "11003C01", "20003C02", "210046",
                "220050", "64003C02"});
    b.run();
    EXPECT_EQ(b.log(),
              ">>{Op0}\n>>{Erase}\n>>{Blank Check}\n>>{Program}\n>>{Verify(VCC: 3.63V) }\n"
              ">>{Verify(VCC: 2.97V) }\n>>{Prog Config}\n>>{Secure}\n>>Op0 good\n>> <TIME>Sec\n");
    EXPECT_EQ(b.s().prgmode[2], 0);
    // neighbours that are equal are one
    EXPECT_THAT(b.percents, ElementsAre(5, 0x32, 0x0A, 0x10 / 6, (100 + 0x50) / 6, (200 + 0x51) / 6,
                                        (200 + 100) / 6,  // end of the block, both passes reached
                                        5, 0x0A, (300 + 0x10) / 6, (400 + 0x10) / 6,
                                        (500 + 0x20) / 6, (500 + 0x22) / 6));
}

TEST(ArmProgram, WithoutMarginsABlockIsTwoSteps) {
    ArmBench b(familyb, program);
    blocks(b, 256);
    records(b, {"640032", "500032", "10003C02", "64003C00"});
    b.run();
    EXPECT_THAT(b.percents, ElementsAre(100 / 4, (200 + 0x50) / 4, (300 + 0x10) / 4));
    EXPECT_EQ(b.log(), ">>{Op6}\n>>{Verify(VCC: 3.3V) }\n>>Op6 good\n>> <TIME>Sec\n");
}

TEST(ArmProgram, PhaseNotesResetTheHostsCell) {
    struct Row {
        const char* record;
        std::uint8_t op;
        bool last;
        std::uint8_t cell;
    };
    const Row rows[]{{"64001E", program, true, 0}, {"640028", program, true, 0},
                     {"640032", program, true, 0}, {"640046", program, true, 0},
                     {"640050", program, true, 0}, {"64003C", program, true, 0},
                     {"640033", program, true, 9}, {"64003C03", program, true, 9},
                     {"64003C", program, false, 9}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.record);
        ArmBench b(familyb, row.op);
        blocks(b, row.last ? 100 : 200);
        b.s().prgmode[2] = 9;
        records(b, {row.record});
        if (!row.last) b.records.push_back(std::nullopt);
        b.run();
        EXPECT_EQ(b.s().prgmode[2], row.cell);
    }
}

TEST(ArmProgram, DeviceFailures) {
    struct Row {
        const char* record;
        std::uint8_t words;
        const char* notes;
    };
    const Row rows[]{
        {"10FA1E04030201AABBCCDD", 1, ""},
        {"10FA2804030201AABBCCDD", 1, ">>Device Address:01020304H  Device Data:AAH\n"},
        {"10FA3204030201AABBCCDD", 1,
         ">>Device Address:01020304H  Device Data:AAH  Buffer Data:CCH\n"},
        {"10FA3C04030201AABBCCDD", 2,
         ">>Device Address:01020304H  Device Data:BBAAH  Buffer Data:DDCCH\n"},
        {"10FA9904030201AABBCCDD", 1,
         ">>Device Address:01020304H  Device Data:AAH  Buffer Data:CCH\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.record);
        ArmBench b(familya, program);
        b.s().tlength[0] = 256;
        b.s().wordmode[0] = row.words;
        records(b, {row.record});
        b.run();
        EXPECT_EQ(b.log(), ">>{Op6}\n" + std::string(row.notes) + ">>Op6 BAD\n>> <TIME>Sec\n");
        EXPECT_EQ(b.s().prgresult[0], 1);
    }
}

TEST(ArmProgram, TransferFailuresBreakOffWithOnePowerdown) {
    const auto expectbroken = [](ArmBench& b, const std::string& last) {
        EXPECT_EQ(ArmBench::tail(b.run(), 2), (Lines{last, "powerdown"}));
        EXPECT_EQ(b.count("powerdown"), 1);
        EXPECT_EQ(b.log(), ">>{Op6}\nbroken off\n>> <TIME>Sec\n");
        EXPECT_EQ(b.s().prgresult[0], 3);
    };
    ArmBench select(familyb, program);
    select.comwrites = {0, 0, 0, 1};  // image write, image read, query, write select
    expectbroken(select, "frame 0a008002");
    ArmBench bulk(familyb, program);
    bulk.bulkwrites = {0, 1};
    expectbroken(bulk, "bulkwrite ibuffer+0 164");
    ArmBench wait(familyb, program);
    wait.records.push_back(std::nullopt);
    expectbroken(wait, "transferwait 15");
}

TEST(ArmProgram, StopIsToldUntilAnsweredAndLostInAFeed) {
    ArmBench b(familyb, program);
    blocks(b, 256);
    b.stopatservice = 4;  // the first record's
    records(b, {"640032", "10001E", "101E00"});
    b.run();
    // the stop frame went out once; the feed of the second block wiped the request
    EXPECT_EQ(b.count("frame 341e"), 1);
    EXPECT_EQ(b.count("frame 3407"), 2);
    EXPECT_EQ(b.log(), ">>{Op6}\n>>{Erase}\nstopped\n>> <TIME>Sec\n");
    EXPECT_EQ(b.s().prgresult[0], 2);
}

TEST(ArmProgram, FixedSideIsForTheBufferOnly) {
    for (const int type : {0, 128}) {
        ArmBench b(familyb, program);
        b.s().rambknum[0] = 0;
        b.s().buftype[0] = static_cast<std::uint8_t>(type);
        b.files["pldtmp.svf"] = {9, 8, 7};
        b.run();
        EXPECT_EQ(b.count("frame 0a008002"), type == 0 ? 1 : 0);
        EXPECT_EQ(b.count("frame 0a008001"), type == 0 ? 0 : 1);
    }
}

TEST(ArmProgramFile, TakesTheFileThroughTheBuffer) {
    struct Row {
        std::int16_t model;
        const char* bank;
    };
    for (const Row& row : {Row{familyb, "00"}, Row{familya, "80"}}) {
        ArmBench b(row.model, autoprogram);
        b.s().ramlg[0] = 128;
        b.s().buftype[0] = 128;
        b.s().wltbigendbuf[0] = 77;  // plays no part
        b.s().wltbigendbuf[1] = 99;
        b.files["pldtmp.svf"] = Bytes(200, 0x5A);
        records(b, {"64001E", "05001E", "0A0028", "140032", "18003C00", "200050", "640032"});
        b.run();
        EXPECT_EQ(b.s().ibuffer[0], 0x5A);
        EXPECT_EQ(b.s().ibuffer[199], 0x5A);
        EXPECT_NE(b.s().ibuffer[200], 0x5A);
        EXPECT_EQ(b.count("bulkwrite ibuffer+128 73"), 1);  // 200 - 128, and one word
        EXPECT_EQ(b.count("frame 3401" + std::string(row.bank) + "0100"), 1);
        EXPECT_EQ(b.log(), ">>{Op0}\n>>{Program}\n>>Op0 good\n>> <TIME>Sec\n");
        EXPECT_THAT(b.percents, ElementsAre(100 / 4, (200 + 5) / 4, (200 + 10) / 4, (200 + 20) / 4,
                                            (200 + 24) / 4, (200 + 32) / 4));
        EXPECT_EQ(b.s().wltbigendbuf[1], 99);
    }
}

TEST(ArmProgramFile, FailureShowsBothDataButForErase) {
    for (const auto& [phase, detail] : std::map<std::string, bool>{{"1E", false}, {"28", true}}) {
        ArmBench b(familya, program);
        b.s().buftype[0] = 128;
        b.files["pldtmp.svf"] = {1};
        records(b, {("10FA" + phase + "04030201AABBCCDD").c_str()});
        b.run();
        EXPECT_EQ(b.log().find("Buffer Data:CCH") != std::string::npos, detail) << b.log();
    }
}

TEST(ArmProgramFile, MissingEmptyOrTooLongIsFoundBeforeTheFirstFrame) {
    for (const auto& file :
         {std::optional<Bytes>{}, std::optional<Bytes>{Bytes{}},
          std::optional<Bytes>{Bytes(202201, 1)},
          std::optional<Bytes>{Bytes(202200, 1)}}) {  // no room for the last word
        ArmBench b(familyb, program);
        b.s().buftype[0] = 128;
        if (file) b.files["pldtmp.svf"] = *file;
        EXPECT_EQ(ArmBench::tail(b.run(), 2), (Lines{"transferwait 15", "powerdown"}));
        EXPECT_EQ(b.log(), ">>{Op6}\nbroken off\n>> <TIME>Sec\n");
        EXPECT_EQ(b.s().prgresult[0], 3);
    }
}

}  // namespace
}  // namespace keld2::test
