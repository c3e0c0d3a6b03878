// What a job file fills in.
#include "host/job/jobfile.h"

#include <gtest/gtest.h>

#include "common/madefolder.h"
#include "host/job/preparation.h"
#include "testmachine.h"

namespace {

using namespace keld2;
using namespace keld2::host;

TEST(Job, FillsVariablesAndBufferInTheirOrder) {
    const test::MadeFolder folder;
    folder.file("image.bin", "abcdef");
    const Job job = readjob(folder.file("j.toml", R"(
        [shared]
        buflength = 16
        bvcc = [-5, 500]
        wltbigendbuf = [1, 2.5]
        chipidtestmode = [true, 0, -1]
        MainRtstr = "é\n"
        ibuffer = [1, 2, 3]
        ubuf1 = []
        [buffer]
        file = "image.bin"
        offset = 2
        fill = 9
        patch = [[1, "AA"], [5, "bbcc"]]
        [run]
        num = 7
        calls = ["bufcomkeld2 -3", "freesharebufferkeld2", "bufcomkeld2"])"));
    test::TestMachine machine;
    SharedVariables s(machine.memory(), machine.strings());
    prepare(job, s);

    EXPECT_NE(machine.memory().open("queltabvcc7"), 0);
    EXPECT_EQ(s.bvcc[0], -5);
    EXPECT_EQ(s.bvcc[1], 500);
    EXPECT_EQ(s.wltbigendbuf[1], 2.5);
    EXPECT_EQ(s.chipidtestmode[0], Flag::yes);
    EXPECT_EQ(s.chipidtestmode[1], Flag::no);
    EXPECT_EQ(s.chipidtestmode[2], Flag::yes);
    EXPECT_EQ(s.MainRtstr[0].text(), u"é\n");
    ASSERT_EQ(s.ibuffer.size(), 16 + 2200);
    const std::vector<std::uint8_t> begin(s.ibuffer.data(), s.ibuffer.data() + 10);
    EXPECT_EQ(begin, (std::vector<std::uint8_t>{1, 0xAA, 3, 'b', 'c', 0xBB, 0xCC, 'f', 9, 9}));
    EXPECT_EQ(s.ibuffer[16 + 2199], 9);
    ASSERT_EQ(job.calls.size(), 3U);
    EXPECT_EQ(job.calls[0].argument, -3);
    EXPECT_FALSE(job.calls[2].argument.has_value());
}

TEST(Job, NeedsNothing) {
    const test::MadeFolder folder;
    const Job job = readjob(folder.file("j.toml", ""));
    test::TestMachine machine;
    SharedVariables s(machine.memory(), machine.strings());
    prepare(job, s);
    EXPECT_EQ(s.ibuffer.size(), 2200);
    EXPECT_EQ(s.ibuffer[0], 255);
    EXPECT_EQ(job.calls.size(), 3U);
}

}  // namespace
