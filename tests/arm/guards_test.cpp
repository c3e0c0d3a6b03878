// Jobs that cannot be carried out, and shared blocks with hostile values.
#include <gmock/gmock.h>

#include <limits>
#include <random>

#include "arm/armbench.h"

namespace keld2::test {
namespace {

struct Change {
    const char* what;
    std::function<void(SharedVariables&)> apply;
};

const std::vector<Change>& impossible() {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    static const std::vector<Change> changes{
        {"word size 0", [](auto& s) { s.wordmode[0] = 0; }},
        {"RAM length 0", [](auto& s) { s.ramlg[0] = 0; }},
        {"RAM length below 0", [](auto& s) { s.ramlg[0] = -0x8000; }},
        {"RAM shorter than a word", [](auto& s) { s.wordmode[0] = 2, s.ramlg[0] = 1; }},
        {"first word is no number", [](auto& s) { s.wltbigendbuf[0] = nan; }},
        {"first word below 0", [](auto& s) { s.wltbigendbuf[0] = -1; }},
        {"first word behind the last", [](auto& s) { s.wltbigendbuf[0] = 1000; }},
        {"offset is no number", [](auto& s) { s.wltbigendbuf[2] = nan; }},
        {"offset below 0", [](auto& s) { s.wltbigendbuf[2] = -1; }},
        {"offset beyond the buffer", [](auto& s) { s.wltbigendbuf[2] = 202200; }},
        {"bulk beyond the buffer", [](auto& s) { s.wltbigendbuf[2] = 202200 - 255; }},
        {"offset beyond 32 bits", [](auto& s) { s.wltbigendbuf[2] = 1e300; }},
        {"more blocks than a frame can name",
         [](auto& s) {
             s.ramlg[0] = 1;
             s.tlength[0] = 65537 + 255;
             s.wltbigendbuf[1] = 65536;
         }},
    };
    return changes;
}

TEST(ArmGuards, ImpossibleJobsTakeThePoweredExitBeforeTheFirstFrame) {
    for (const std::int16_t model : {familya, familyb})
        for (const int op : {0, 2, 3, 5, 6})
            for (const Change& change : impossible()) {
                SCOPED_TRACE(std::string(change.what) + ", operation " + std::to_string(op) +
                             ", model " + std::to_string(model));
                ArmBench b(model, static_cast<std::uint8_t>(op));
                b.s().tlength[0] = 256;
                b.s().wltbigendbuf[1] = 255;
                change.apply(b.s());
                EXPECT_EQ(ArmBench::tail(b.run(), 2), (Lines{"transferwait 15", "powerdown"}));
                EXPECT_EQ(b.count("powerdown"), 1);
                EXPECT_EQ(b.log(), ">>{Op" + std::to_string(op) + "}\nbroken off\n>> <TIME>Sec\n");
                EXPECT_EQ(b.s().prgresult[0], 3);
            }
}

TEST(ArmGuards, ReadNeedsRoomForItsConfigurationBytesCompareDoesNot) {
    for (const std::int32_t length : {-1, 202200 - 10, std::numeric_limits<std::int32_t>::max()})
        for (const int op : {2, 5}) {
            ArmBench b(familyb, static_cast<std::uint8_t>(op));
            b.s().buflength[0] = length;
            b.run();
            EXPECT_EQ(b.s().prgresult[0], op == 2 ? 3 : 0) << length;
            EXPECT_EQ(b.count("frame 34"), op == 2 ? 1 : 2) << length;
        }
}

TEST(ArmGuards, PercentOfManyBulksIsItsLowByte) {
    ArmBench b(familyb, 2);
    // one block of 4 bulks; the status record says more than 100 percent
    b.s().ramlg[0] = 200000;
    b.s().tlength[0] = 0xC000 * 3 + 1;
    b.records.push_back(fromhex("ff0000"));
    b.records.push_back(fromhex("640000"));
    b.run();
    EXPECT_EQ(b.percents, (std::vector<int>{216, 85, 86, 87}));
}

TEST(ArmGuards, StaleTextsEndTheRunWithItsResult) {
    for (const int note : {0, 12}) {
        ArmBench b(familya, 8);
        static_cast<SharedVariable<StringHandle>&>(b.s().prgnote)[note] = 12345678;
        if (note == 12) b.answers["readycheck"] = 1;
        b.run();
        EXPECT_EQ(b.s().prgresult[0], 3);
        EXPECT_NE(b.log().find(">> <TIME>Sec\n"), std::string::npos);
        EXPECT_EQ(b.s().prgmode[1], 0);
    }
}

TEST(ArmGuards, BufferReleasedInTheMiddleEndsTheRun) {
    ArmBench b(familyb, 6);
    b.s().ramlg[0] = 64;
    b.s().wltbigendbuf[1] = 255;
    b.before["frame 3407000100c0c7ced5dce3eaf1f8ff06"] = [&] { b.s().releasebuffers(); };
    b.run();
    EXPECT_EQ(b.trace.back(), "frame 0a008002");  // the next bulk found no buffer
    EXPECT_EQ(b.s().prgresult[0], 3);
}

// Values of a fuzzed cell: edges, and anything.
template <typename T>
T hostile(std::mt19937& random) {
    const T edges[]{T(0),
                    T(1),
                    T(2),
                    T(-1),
                    T(255),
                    T(256),
                    T(64),
                    T(127),
                    T(4096),
                    T(32768),
                    T(65536),
                    std::numeric_limits<T>::max(),
                    std::numeric_limits<T>::lowest()};
    return random() % 4 == 0 ? static_cast<T>(random()) : edges[random() % std::size(edges)];
}

TEST(ArmGuards, HostileBlocksNeitherCrashNorHang) {
    for (unsigned seed = 1; seed <= 250; ++seed) {
        std::mt19937 random(seed);
        const std::int16_t model = random() % 2 == 0 ? familya : familyb;
        ArmBench b(model, static_cast<std::uint8_t>(random() % 10));
        SharedVariables& s = b.s();
        const auto perhaps = [&](auto& cell) {
            using T = std::remove_reference_t<decltype(cell)>;
            if (random() % 3 == 0) cell = hostile<T>(random);
        };
        perhaps(s.tlength[0]);
        perhaps(s.ramlg[0]);
        perhaps(s.wordmode[0]);
        perhaps(s.buflength[0]);
        perhaps(s.wlverifyvcc[0]);
        perhaps(s.bvcc[0]);
        perhaps(s.prgmode[0]);
        perhaps(s.rambknum[0]);
        for (int i = 0; i < 3; ++i) perhaps(s.wltbigendbuf[i]);
        if (random() % 2 == 0) s.chipidtestmode[0] = Flag::yes;
        if (random() % 4 == 0) s.buftype[0] = 128;
        b.files["pldtmp.svf"] = Bytes(random() % 3000, 1);
        for (int i = 0; i < 12; ++i) {
            Bytes record(20);
            for (auto& byte : record) byte = static_cast<std::uint8_t>(random());
            const std::uint8_t states[]{0, 0, 0, 0x1E, 0xFA};
            record[1] = states[random() % 5];
            b.records.push_back(record);
        }
        b.records.push_back(std::nullopt);
        b.onservice = [&](int) {
            if (random() % 40 == 0) s.prgresult[0] = static_cast<std::uint8_t>(random() % 6);
        };
        b.run();
        EXPECT_EQ(b.s().prgmode[1], 0) << seed;
    }
}

}  // namespace
}  // namespace keld2::test
