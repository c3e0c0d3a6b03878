// The checks of read bytes, as the host sees them beside the programmer.
#include "host/run/check_watch.h"

#include <gtest/gtest.h>

#include "host/os/machine.h"
#include "host/run/log_differences.h"
#include "shared/datacheck.h"

namespace keld2::host {
namespace {

class CheckWatchTest : public ::testing::Test {
  protected:
    CheckWatchTest() {
        s_.maprows(0, {});
        s_.buflength[0] = 1024;
        s_.mapbuffers({});
        for (int i = 0; i < 1024; ++i) s_.ibuffer[i] = static_cast<std::uint8_t>(i);
    }
    // As a programmer answers it, with the watch beside it.
    int check(const CheckedCell& cell, int mode) {
        watch_.see(cell, mode);
        const int given = cell.unit == CellUnit::word
                              ? checkword(s_, static_cast<std::uint8_t>(cell.value),
                                          static_cast<std::uint8_t>(cell.value >> 8),
                                          static_cast<std::int32_t>(cell.address), mode)
                              : checkbyte(s_, static_cast<std::int16_t>(cell.value),
                                          static_cast<std::int32_t>(cell.address), mode);
        return watch_.answer(cell, mode, given);
    }

    std::unique_ptr<Platform> machine_ = os::makemachine();
    SharedVariables s_{machine_->memory(), machine_->strings()};
    CheckWatch watch_{s_};
};

TEST_F(CheckWatchTest, NamesWhatDiffersOfBytesAndWords) {
    EXPECT_EQ(check({.address = 5, .value = 5}, checkmode::compare), 0);
    EXPECT_EQ(check({.address = 6, .value = 0x16}, checkmode::compare), 1);
    EXPECT_EQ(check({.unit = CellUnit::word, .address = 4, .value = 0x0909}, checkmode::compare),
              1);
    const Differences& found = watch_.differences();
    ASSERT_EQ(found.count, 2U);
    EXPECT_FALSE(found.againstblank);
    EXPECT_EQ(addressdigits(found.first[0]), "000006");
    EXPECT_EQ(valuedigits(found.first[0].unit, found.first[0].chip), "16");
    EXPECT_EQ(found.first[0].expected, 6U);
    EXPECT_EQ(found.first[1].expected, 0x0908U);
    EXPECT_EQ(cellsof(found.first[1]), (std::vector<std::int64_t>{8, 9}));
}

TEST_F(CheckWatchTest, ForgetsAFailedBlankCheckThatTheRunWentOnBehind) {
    check({.address = 3, .value = 0x12}, checkmode::blank);
    EXPECT_TRUE(watch_.differences().againstblank);
    EXPECT_EQ(watch_.differences().first.at(0).expected, 0xFFU);
    watch_.begin_operation();
    EXPECT_TRUE(watch_.differences().empty());
    check({.address = 3, .value = 0x12}, checkmode::report);
    watch_.begin_operation();
    EXPECT_EQ(watch_.differences().count, 1U) << "a compare goes on, and so does its report";
}

// The report holds 256 lines; the others are counted all the same.
TEST_F(CheckWatchTest, CountsBehindTheReport) {
    for (int i = 0; i < 300; ++i)
        EXPECT_EQ(
            check({.address = i, .value = static_cast<std::uint8_t>(i + 1)}, checkmode::report), 0);
    EXPECT_EQ(watch_.differences().count, 300U);
    EXPECT_EQ(watch_.differences().first.size(), 256U);
    EXPECT_EQ(check({.address = 1 << 20, .value = 1}, checkmode::report), 1)
        << "an address outside the buffer ends the compare";
}

TEST_F(CheckWatchTest, TellsWhetherAllBytesWereAlike) {
    EXPECT_FALSE(watch_.uniform());
    check({.address = 0, .value = 0xFF}, checkmode::store);
    check({.unit = CellUnit::word, .address = 1, .value = 0xFFFF}, checkmode::blank);
    EXPECT_EQ(watch_.uniform(), 0xFF);
    check({.address = 3, .value = 0xFE}, checkmode::store);
    EXPECT_FALSE(watch_.uniform());
}

struct LogCase {
    const char* what;
    std::vector<std::string> log;
    bool fuses;
    std::int32_t language;
    std::string address, chip, expected;
};

TEST(LogDifferences, ReadsThePlacesThatThePlugInNames) {
    const std::vector<LogCase> cases{
        {"a fuse",
         {">>Device Address:004711   Device Data: 0   Buffer Data: 1"},
         true,
         0,
         "004711",
         "0",
         "1"},
        {"a fuse's report", {">> 000123       1            0"}, true, 0, "000123", "1", "0"},
        {"a byte of an ARM verify",
         {">>Device Address:00001234H  Device Data:5AH  Buffer Address:00001234H  Buffer Data:A5H"},
         false,
         0,
         "001234",
         "5A",
         "A5"},
        {"a word",
         {">>Device Address:00000010H  Device Data:1234H  Buffer Address:00000020H  Buffer "
          "Data:1235H"},
         false,
         0,
         "000010",
         "1234",
         "1235"},
        {"an ARM blank check",
         {">>Device Address:00000003H  Device Data:00H"},
         false,
         0,
         "000003",
         "00",
         "FF"},
        {"the last place counts",
         {">>Device Address:00000003H  Device Data:00H",
          ">>Device Address:00000004H  Device Data:01H  Buffer Data:02H"},
         false,
         0,
         "000004",
         "01",
         "02"},
    };
    for (const LogCase& c : cases) {
        const Differences found = differences_in_log(c.log, c.fuses, c.language);
        ASSERT_EQ(found.count, 1U) << c.what;
        const Difference& one = found.first.front();
        EXPECT_EQ(addressdigits(one), c.address) << c.what;
        EXPECT_EQ(valuedigits(one.unit, one.chip), c.chip) << c.what;
        EXPECT_EQ(valuedigits(one.unit, one.expected), c.expected) << c.what;
    }
    EXPECT_TRUE(differences_in_log({">>Verify failed", ">>Device Address:"}, false, 0).empty());
}

}  // namespace
}  // namespace keld2::host
