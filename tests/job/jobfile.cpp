// The job file: what it says, and what it is refused for.
#include "host/job/jobfile.h"

#include <gtest/gtest.h>

#include "common/madefolder.h"
#include "host/hosterror.h"
#include "host/job/preparation.h"
#include "testmachine.h"

namespace {

using namespace keld2;
using namespace keld2::host;

struct Refusal {
    const char* name;
    const char* text;
    int status;
    const char* message;  // behind the folder's name
};

class RefusedJob : public testing::TestWithParam<Refusal> {};

TEST_P(RefusedJob, SaysFileKeyAndWhatWasExpected) {
    const test::MadeFolder folder;
    folder.file("long.bin", std::string(2300, 'x'));
    folder.file("strange.xyz", "x");
    const auto path = folder.file("j.toml", GetParam().text);
    try {
        readjob(path);
        FAIL() << "not refused";
    } catch (const HostError& error) {
        EXPECT_EQ(error.status(), GetParam().status);
        EXPECT_EQ(error.what(), (folder / "").string() + GetParam().message);
    }
}

constexpr int data = exitstatus::data;

INSTANTIATE_TEST_SUITE_P(
    Jobs, RefusedJob,
    testing::Values(
        Refusal{"UnknownVariable", "[shared]\nbvc = 500\n", data,
                "j.toml:2: [shared] bvc: is no shared variable, expected the name of one"},
        Refusal{
            "ByteTooLarge", "[shared]\nfigmode = 256\n", data,
            "j.toml:2: [shared] figmode: 256 is out of range, expected an integer from 0 to 255"},
        Refusal{"ByteBelowZeroInArray", "[shared]\nfigmode = [1, -1]\n", data,
                "j.toml:2: [shared] figmode[1]: -1 is out of range, expected an integer from 0 to "
                "255"},
        Refusal{
            "I16TooLarge", "[shared]\n\nbvcc = 32768", data,
            "j.toml:3: [shared] bvcc: 32768 is out of range, expected an integer from -32768 to "
            "32767"},
        Refusal{"I32TooLarge", "[shared]\npwte = 2147483648", data,
                "j.toml:2: [shared] pwte: 2147483648 is out of range, expected an integer from "
                "-2147483648 to 2147483647"},
        Refusal{"FractionForInteger", "[shared]\npwte = 1.0", data,
                "j.toml:2: [shared] pwte: is a number with a fraction, expected an integer from "
                "-2147483648 to 2147483647"},
        Refusal{"TextForNumber", "[shared]\nwltbigendbuf = [0, \"1\"]", data,
                "j.toml:2: [shared] wltbigendbuf[1]: is a text, expected a number"},
        Refusal{"BooleanForNumber", "[shared]\nwltbigendbuf = true", data,
                "j.toml:2: [shared] wltbigendbuf: is true or false, expected a number"},
        Refusal{"NumberForText", "[shared]\nprgnote = [\"\", 5]", data,
                "j.toml:2: [shared] prgnote[1]: is an integer, expected a text"},
        Refusal{"FlagOutOfRange", "[shared]\nchipidtestmode = 2", data,
                "j.toml:2: [shared] chipidtestmode: 2 is out of range, expected true or false"},
        Refusal{"TooManyElements", "[shared]\nMainRtstr = [\"\", \"\", \"\", \"\"]", data,
                "j.toml:2: [shared] MainRtstr: 4 elements, expected at most 3"},
        Refusal{
            "NestedArray", "[shared]\nbvcc = [[1]]", data,
            "j.toml:2: [shared] bvcc[0]: is an array, expected an integer from -32768 to 32767"},
        Refusal{"UnknownSection", "[shard]\n", data,
                "j.toml:1: shard: is no part of a job, expected [shared], [buffer] or [run]"},
        Refusal{"UnknownBufferKey", "[buffer]\nfil = 1", data,
                "j.toml:2: [buffer] fil: is no key of a job, expected one of file, fill, offset, "
                "patch"},
        Refusal{"SectionThatIsAValue", "run = 5", data,
                "j.toml:1: run: is an integer, expected the table [run]"},
        Refusal{"NoToml", "[shared]\nbvcc =\n", data,
                "j.toml:2: is no TOML text: Error while parsing key-value pair: expected value, "
                "saw '\\n'"},
        Refusal{"FillTooLarge", "[buffer]\nfill = 256", data,
                "j.toml:2: [buffer] fill: 256 is out of range, expected an integer from 0 to 255"},
        Refusal{"PatchWithoutBytes", "[buffer]\npatch = [[1]]", data,
                "j.toml:2: [buffer] patch[0]: 1 elements, expected [offset, \"bytes in "
                "hexadecimal\"]"},
        Refusal{"PatchOfHalfAByte", "[buffer]\npatch = [[0, \"00\"], [1, \"0f0\"]]", data,
                "j.toml:2: [buffer] patch[1]: is no hexadecimal text, expected two digits for each "
                "byte"},
        Refusal{"PatchBehindTheBuffer", "[buffer]\npatch = [[2199, \"0f03\"]]", data,
                "j.toml:2: [buffer] patch[0]: bytes 2199 to 2200 lie outside the buffer, expected "
                "places from 0 to 2199"},
        Refusal{"ImageBehindTheBuffer", "[buffer]\nfile = \"long.bin\"", data,
                "j.toml:2: [buffer] file: bytes 0 to 2299 lie outside the buffer, expected places "
                "from 0 to 2199"},
        Refusal{"ImageMissing", "[buffer]\nfile = \"no.bin\"", exitstatus::nofile,
                "no.bin: cannot be opened: No such file or directory"},
        Refusal{"FolderMissing", "[run]\nfolder = 5", data,
                "j.toml:2: [run] folder: is an integer, expected the name of a folder"},
        Refusal{"NumTooLarge", "[run]\nnum = 32768", data,
                "j.toml:2: [run] num: 32768 is out of range, expected an integer from -32768 to "
                "32767"},
        Refusal{"UnknownCall", "[run]\ncalls = [\"runkeld2prg\"]", data,
                "j.toml:2: [run] calls[0]: \"runkeld2prg\" is no call, expected runKeld2Prg, "
                "editfigkeld2, usercode, bufcomkeld2, freesharebufferkeld2, keld2warn or "
                "sinitkeld2"},
        Refusal{"CallWithoutItsNumber", "[run]\ncalls = [\"sinitkeld2\", \"keld2warn\"]", data,
                "j.toml:2: [run] calls[1]: \"keld2warn\" is no call, expected keld2warn NO, from 0 "
                "to 255"},
        Refusal{"CallWithALargeNumber", "[run]\ncalls = [\"keld2warn 256\"]", data,
                "j.toml:2: [run] calls[0]: \"keld2warn 256\" is no call, expected keld2warn NO, "
                "from 0 to 255"},
        Refusal{"CallThatTakesNone", "[run]\ncalls = [\"usercode 1\"]", data,
                "j.toml:2: [run] calls[0]: \"usercode 1\" is no call, expected usercode"}),
    [](const auto& refusal) { return refusal.param.name; });

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
