// From the first call to the operation: start-up rows, image, firmware query, configuration bytes.
#include <gmock/gmock.h>

#include "arm/armbench.h"

namespace keld2::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::uint8_t erase = 8;

struct Row {
    std::int16_t model;
    bool usbable;
    Lines calls;
    const char* first;
    const char* second;
};

const std::vector<Row>& rows() {
    static const std::vector<Row> all{
        {74, false, {"armready"}, "algo5/clk/IMG0.biz", "algo5/fam/IMG.biz"},
        {75, true, {"armready"}, "algo5/clk/IMG0.biz", "algo5/fam/IMG.biz"},
        {76, true, {"modeselect2 33 0"}, "algo4/clk/IMG0.alg", "algo4/fam/IMG.alg"},
        {89, false, {"modeselect2 33 0"}, "algo4/clk/IMG0.alg", "algo4/fam/IMG.alg"},
        {90, true, {"modeselect2 133 0"}, "algo2/clk/IMG0_g.alg", "algo2/fam/IMG`h.alg"},
        {91, true, {"modeselect2 133 0"}, "algo2/clk/IMG0_g.alg", "algo2/fam/IMG`h.alg"},
        {90,
         false,
         {"setvpppin 20 1", "modeselect2 33 0"},
         "algo4/clk/IMG0.alg",
         "algo4/fam/IMG.alg"},
        {92, true, {"modeselect2 33 0"}, "algo4/clk/IMG0.alg", "algo4/fam/IMG.alg"},
        {32767, false, {"modeselect2 33 0"}, "algo4/clk/IMG0.alg", "algo4/fam/IMG.alg"},
        {40, true, {"modeselect3 33 0"}, "algo/clk/IMG0.bin", "algo/fam/IMG.bin"},
        {70, false, {"modeselect3 33 0"}, "algo/clk/IMG0.bin", "algo/fam/IMG.bin"},
        {71,
         true,
         {"modeselect3 33 0", "modeselect3 133 0"},
         "algo2/clk/IMG0_g.bin",
         "algo2/fam/IMG`h.bin"},
        {72,
         true,
         {"modeselect3 33 0", "modeselect3 133 0"},
         "algo2/clk/IMG0_g.bin",
         "algo2/fam/IMG`h.bin"},
        {72,
         false,
         {"modeselect3 33 0", "setvpppin 20 1"},
         "algo/clk/IMG0.bin",
         "algo/fam/IMG.bin"},
        {73, true, {"modeselect3 33 0"}, "algo/clk/IMG0.bin", "algo/fam/IMG.bin"},
    };
    return all;
}

Lines startcalls(const ArmBench& b) {  // behind readycheck, before the image
    Lines calls;
    for (std::size_t i = 1; i < b.trace.size(); ++i) {
        if (b.trace[i].starts_with("frame") || b.trace[i].starts_with("loadalgobuf")) break;
        calls.push_back(b.trace[i]);
    }
    return calls;
}

TEST(ArmStartup, EveryRowMakesItsCallsAndTakesItsSecondFile) {
    for (const Row& row : rows()) {
        SCOPED_TRACE("model " + std::to_string(row.model) + (row.usbable ? " usb" : ""));
        ArmBench b(row.model, erase);
        if (row.usbable) b.s().usbable[3] = Flag::yes;
        b.files = {{row.second, {1, 2, 3, 4}}};
        b.run();
        EXPECT_EQ(b.trace[0], "readycheck");
        EXPECT_EQ(startcalls(b), row.calls);
        EXPECT_EQ(b.count("loadalgobuf 4"), 1);
        EXPECT_EQ(b.count("signalpass 0"), 1);
    }
}

TEST(ArmStartup, EveryRowPrefersItsFirstFileAndSendsItUnchanged) {
    for (const Row& row : rows()) {
        SCOPED_TRACE("model " + std::to_string(row.model));
        ArmBench b(row.model, erase);
        if (row.usbable) b.s().usbable[3] = Flag::yes;
        b.files = {{row.second, {1, 2, 3, 4}}, {row.first, {0, 9}}};  // 0 first: not tested here
        b.run();
        EXPECT_EQ(b.count("loadalgobuf"), 0);
        EXPECT_EQ(b.count("bulkwrite algobuf+0 2"), 1);
        EXPECT_EQ(b.count("bulkread local 3"), 1);
        EXPECT_EQ(b.count("signalpass 0"), 1);
    }
}

TEST(ArmStartup, WholeTraceOfACommand) {
    ArmBench b(familyb, erase);
    b.s().figvol[1] = 5;
    b.s().modeltype[2] = 5;
    b.s().wsign[2] = 3;
    b.s().rambknum[0] = 4;
    for (int i = 0; i < 20; ++i) b.s().ubuf1[i] = static_cast<std::uint8_t>(0xE0 + i);
    EXPECT_THAT(
        b.run(),
        ElementsAre("readycheck", "frame 5a0ae2e3e4e5e6e7", "modeselect2 33 0", "loadalgobuf 3",
                    "frame 330180e3e4e5e6e7", "bulkwrite algobuf+0 3", "frame 330140e3e4e5e6e7",
                    "bulkread local 4", "frame 341a001000e5e6e7e8e9eaebecedeeef", "transferwait 15",
                    // the bytes 64 to 74 of the buffer, each 7 more than the last
                    "frame 3409040000c0c7ced5dce3eaf1f8ff06", "transferwait 15", "powerdown",
                    "signalpass 0"));
    EXPECT_EQ(b.log(), ">>{Op8}\n>>Op8 good\n>> <TIME>Sec\n");
    EXPECT_EQ(b.s().prgresult[0], 0);
}

struct Failure {
    const char* what;
    std::int16_t model;
    std::function<void(ArmBench&)> arrange;
    Lines lasttwo;
    int powerdowns;
};

TEST(ArmStartup, FailuresBeforeTheFirmwareQueryLeaveThePowerAlone) {
    const std::vector<Failure> failures{
        {"refused", familya, [](ArmBench& b) { b.answers["readycheck"] = 1; }, {"readycheck"}, 0},
        {"not ready",
         74,
         [](ArmBench& b) { b.answers["armready"] = 1; },
         {"readycheck", "armready"},
         0},
        {"mode of B",
         familyb,
         [](ArmBench& b) { b.answers["modeselect2"] = 2; },
         {"readycheck", "modeselect2 33 0"},
         0},
        {"mode of A",
         familya,
         [](ArmBench& b) { b.answers["modeselect3"] = 2; },
         {"readycheck", "modeselect3 33 0"},
         0},
        {"first mode of a pair",
         71,
         [](ArmBench& b) {
             b.s().usbable[3] = Flag::yes;
             b.answers["modeselect3"] = 2;
         },
         {"readycheck", "modeselect3 33 0"},
         0},
        {"second mode of a pair",
         71,
         [](ArmBench& b) {
             b.s().usbable[3] = Flag::yes;
             b.answers["modeselect3 133 0"] = 2;
         },
         {"modeselect3 33 0", "modeselect3 133 0"},
         0},
        {"mode beyond a byte",
         71,
         [](ArmBench& b) {
             b.s().usbable[3] = Flag::yes;
             b.s().figmode[0] = 156;
         },
         {"readycheck", "modeselect3 156 0"},
         0},
        {"version bytes beyond a byte",
         familya,
         [](ArmBench& b) {
             b.s().modeltype[2] = 0;
             b.s().wsign[2] = 249;
         },
         {"readycheck"},
         0},
        {"image not sent",
         familya,
         [](ArmBench& b) { b.bulkwrites = {1}; },
         {"frame 3301800000000000", "bulkwrite algobuf+0 3"},
         0},
        {"image not read",
         familya,
         [](ArmBench& b) { b.bulkreads = {{.cell = 4}}; },
         {"frame 3301400000000000", "bulkread local 4"},
         0},
        {"image differs in its last byte",
         familya,
         [](ArmBench& b) {
             b.bulkreads = {{.data = Bytes{1, 2, 9, 0}}};
         },
         {"frame 3301400000000000", "bulkread local 4"},
         0},
        {"fault in a component",
         familya,
         [](ArmBench& b) { b.before["loadalgobuf 3"] = [] { throw RunFault("component"); }; },
         {"readycheck", "modeselect3 33 0"},
         0},
    };
    for (const Failure& failure : failures) {
        SCOPED_TRACE(failure.what);
        ArmBench b(failure.model, erase);
        b.files["algo5/fam/IMG.biz"] = b.files["algo2/fam/IMG`h.bin"] = {1, 2, 3};
        failure.arrange(b);
        EXPECT_EQ(ArmBench::tail(b.run(), failure.lasttwo.size()), failure.lasttwo);
        EXPECT_EQ(b.count("powerdown"), failure.powerdowns);
        EXPECT_EQ(b.count("signal"), 0);
        EXPECT_EQ(b.log(), "broken off\n>> <TIME>Sec\n");
        EXPECT_EQ(b.s().prgresult[0], 3);
    }
}

struct Image {
    const char* what;
    std::map<std::string, Bytes> files;
    bool loads;
};

TEST(ArmImage, UsableOrNot) {
    const std::string clk = "algo/clk/IMG0.bin";
    const std::string fam = "algo/fam/IMG.bin";
    const Image images[]{
        {"none", {}, false},
        {"first empty, no second", {{clk, {}}}, false},
        {"first empty, second taken", {{clk, {}}, {fam, {1}}}, true},
        {"second empty", {{fam, {}}}, false},
        {"second begins with 0", {{fam, {0, 1}}}, false},
        {"second of the longest", {{fam, Bytes(0x6000, 1)}}, true},
        {"second too long", {{fam, Bytes(0x6001, 1)}}, false},
        {"first longer than that", {{clk, Bytes(0x6001, 0)}}, true},
        {"first fills algobuf", {{clk, Bytes(131072, 3)}}, true},
        {"first longer than algobuf", {{clk, Bytes(131073, 3)}}, false},
        {"second longer than algobuf", {{fam, Bytes(131073, 3)}}, false},
    };
    for (const Image& image : images) {
        SCOPED_TRACE(image.what);
        ArmBench b(familya, erase);
        b.files = image.files;
        b.run();
        EXPECT_EQ(b.count("powerdown"), image.loads ? 1 : 0);
        EXPECT_EQ(b.log(), image.loads ? ">>{Op8}\n>>Op8 good\n>> <TIME>Sec\n"
                                       : "Read algo file error!\n>> <TIME>Sec\n");
        EXPECT_EQ(b.s().prgresult[0], image.loads ? 0 : 4);
        if (!image.loads) {
            EXPECT_THAT(b.trace, ElementsAre("readycheck", "modeselect3 33 0"));
        }
    }
}

TEST(ArmImage, SendsWhatTheComponentMadeOfIt) {
    for (const std::int32_t length : {2, 131072, 0, -1, 131073}) {
        SCOPED_TRACE(length);
        ArmBench b(familya, erase);
        b.onloadalgobuf = [&](std::int32_t& n) {
            n = length;
            b.s().algobuf[0] = 0xEE;
        };
        b.run();
        const bool good = length > 0 && length <= 131072;
        EXPECT_EQ(b.count("bulkwrite algobuf+0 " + std::to_string(length)), good ? 1 : 0);
        EXPECT_EQ(b.s().prgresult[0], good ? 0 : 4);
    }
}

TEST(ArmImage, StopWhileItIsReadBackEndsAsStopped) {
    ArmBench b(familya, erase);
    b.bulkreads = {{.cell = 1}};
    b.stopatservice = 40;
    EXPECT_THAT(b.afterimage(), ElementsAre("powerdown", "signalfail 0"));
    EXPECT_EQ(b.log(), "stopped\n>> <TIME>Sec\n");
    EXPECT_EQ(b.s().prgresult[0], 2);
}

TEST(ArmImage, WaitsThroughTheStatesOfARunningRead) {
    ArmBench b(familya, erase);
    b.bulkreads = {{.cell = 1}};
    b.onservice = [&](int n) {
        if (n == 5) *b.bulkcell = 3;  // still under way
        if (n == 9) *b.bulkcell = 4;
    };
    EXPECT_THAT(b.afterimage(), IsEmpty());
    EXPECT_EQ(b.s().prgresult[0], 3);
}

TEST(ArmFirmware, OtherRevisionIsNotedAndTheRunGoesOn) {
    ArmBench b(familya, erase);
    b.records = {fromhex("630007"), fromhex("640008")};
    b.run();
    EXPECT_EQ(b.log(),
              "\nProgrammer soft need update now !!!\n\n>>{Op8}\n>>Op8 good\n>> <TIME>Sec\n");
}

TEST(ArmFirmware, LostConnectionTakesThePowerOff) {
    ArmBench b(familya, erase);
    b.records = {std::nullopt};
    EXPECT_EQ(ArmBench::tail(b.run(), 2), (Lines{"transferwait 15", "powerdown"}));
    EXPECT_EQ(b.count("signal"), 0);
    EXPECT_EQ(b.log(), "broken off\n>> <TIME>Sec\n");
}

struct Configuration {
    const char* what;
    std::uint8_t prgmode;
    std::uint8_t wordmode;
    std::int32_t tlength;
    std::string bytes;  // 5 to 15 of the operation frame; empty: the run is left before it
};

TEST(ArmConfiguration, GoesOutInEveryLongFrame) {
    const Configuration cases[]{
        {"behind the data", 10, 1, 0, "00070e151c232a31383f46"},
        {"words of two bytes", 10, 2, 8, "70777e858c939aa1a8afb6"},
        {"two bytes from inside", 21, 1, 16, "0007e7e8e9eaebecedeeef"},
        {"inside, before the buffer", 21, 1, 15, ""},
        {"below the buffer", 10, 1, -1, ""},
        {"the buffer's last bytes", 10, 1, 202200 - 11, "9ba2a9b0b7bec5ccd3dae1"},
        {"beyond the buffer", 10, 1, 202200 - 10, ""},
        {"far beyond", 10, 255, 0x7FFFFFFF, ""},
    };
    for (const Configuration& one : cases) {
        SCOPED_TRACE(one.what);
        ArmBench b(familya, erase);
        b.s().prgmode[0] = one.prgmode;
        b.s().wordmode[0] = one.wordmode;
        b.s().tlength[0] = one.tlength;
        for (int i = 0; i < 20; ++i) b.s().ubuf1[i] = static_cast<std::uint8_t>(0xE0 + i);
        const Lines trace = b.afterimage();
        if (one.bytes.empty()) {
            EXPECT_EQ(trace.back(), "powerdown");
            EXPECT_EQ(b.log(), "broken off\n>> <TIME>Sec\n");
        } else {
            EXPECT_EQ(b.count("frame 3409000000" + one.bytes), 1) << trace[2];
        }
    }
}

TEST(ArmEnding, ResultThatStoodBeforeIsNotCleared) {
    struct Row {
        std::uint8_t before;
        const char* lines;
        int powerdowns;
        std::uint8_t after;
    };
    const Row rows[]{{1, ">>Op8 BAD\n", 1, 1},
                     {3, "broken off\n", 2, 3},
                     {4, "Read algo file error!\n", 1, 4},
                     {9, "", 1, 9}};
    for (const Row& row : rows) {
        SCOPED_TRACE(int{row.before});
        ArmBench b(familya, erase);
        b.s().prgresult[0] = row.before;
        b.run();
        EXPECT_EQ(b.count("signalfail 0"), 1);
        EXPECT_EQ(b.count("powerdown"), row.powerdowns);
        EXPECT_EQ(b.log(), ">>{Op8}\n" + std::string(row.lines) + ">> <TIME>Sec\n");
        EXPECT_EQ(b.s().prgresult[0], row.after);
        EXPECT_EQ(b.s().prgmode[1], 0);
    }
}

}  // namespace
}  // namespace keld2::test
