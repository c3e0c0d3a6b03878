// Start-ups of the JTAG windows: consistency of their tables, the device code and its box.
#include <gmock/gmock.h>

#include "families/jtagstartup.h"
#include "fixed/fixedbench.h"

namespace keld2 {
namespace {

using ::testing::ElementsAre;
using testing::FixedBench;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

TEST(JtagStartup, TablesAgreeWithTheWirings) {
    for (const JtagFamily& family : jtagfamilies) {
        SCOPED_TRACE(int{family.family});
        const JtagStartup* startup = findjtagstartup(family.family);
        ASSERT_NE(startup, nullptr);
        const Wiring& w = family.wiring;
        EXPECT_EQ(startup->record[0], w.tck.reg);
        EXPECT_EQ(startup->record[2], w.tck.bits);
        EXPECT_EQ(startup->record[4], w.tdo.bits);
        EXPECT_EQ(startup->record[5], w.tdi.bits);
        // On one wiring the record's TDO register is set for each operation anew.
        if (family.family != 43) {
            EXPECT_EQ(startup->record[9], w.tdo.reg);
        }
        EXPECT_EQ(startup->record[1] + startup->record[7] + startup->record[8], 24);
        const auto records = std::count_if(
            startup->steps.begin(), startup->steps.end(),
            [](const StartupStep& step) { return step.kind == StartupStep::Kind::record; });
        EXPECT_EQ(records, 1);
    }
    for (const int family : {21, 40, 44, 60, 79, 96, 255})
        EXPECT_EQ(findjtagstartup(static_cast<std::uint8_t>(family)), nullptr) << family;
}

struct CodeRow {
    DeviceCode code;
    const char* shown;  // empty: it passes
};

const std::vector<CodeRow> codes{
    {{0x43, 0xD0, 0x80, 0x01}, ""},         {{0x43, 0x90, 0x80, 0x01}, ""},
    {{0x43, 0x50, 0x80, 0x01}, ""},         {{0x43, 0x40, 0x80, 0x11}, ""},
    {{0x43, 0xD0, 0x80, 0x11}, "1180D043"}, {{0x43, 0x40, 0x80, 0x01}, "01804043"},
    {{0x42, 0x90, 0x80, 0x01}, "01809042"}, {{0, 0, 0, 0}, "00000000"},
    {{0xFF, 0xFF, 0xFF, 0xFF}, "FFFFFFFF"},
};

TEST(DeviceCode, FourPassOnEveryWiringAndGeometry) {
    for (const std::uint8_t family : testing::fixedmodes)
        for (const std::int32_t fuses : {17200, 35600})
            for (const CodeRow& row : codes) {
                SCOPED_TRACE(std::to_string(family) + " " + row.shown);
                FixedBench bench(family, fuses);
                bench.bulk = {bench.id(row.code)};
                bench.s().prgnote[10] = u"Device: ";
                bench.run(7);
                if (std::string(row.shown).empty()) {
                    EXPECT_THAT(bench.boxes, IsEmpty());
                    EXPECT_EQ(bench.count("signalpass 0"), 1U);
                } else {
                    EXPECT_THAT(bench.boxes, ElementsAre("Device: " + std::string(row.shown)));
                    EXPECT_THAT(bench.log(),
                                HasSubstr(">>Dev. Code:" + std::string(row.shown) + "\n"));
                    EXPECT_EQ(bench.count("signalpass 0") + bench.count("signalfail 0"), 0U);
                }
            }
}

TEST(DeviceCode, BoxDecides) {
    const DeviceCode foreign{1, 2, 3, 4};
    struct Row {
        std::vector<BoxAnswer> answers;
        std::size_t boxes, powerdowns, passes, refusals;
    };
    for (const Row& row :
         {Row{{BoxAnswer::abort}, 1, 2, 0, 1}, Row{{BoxAnswer::ignore}, 1, 1, 1, 0},
          Row{{BoxAnswer::retry, BoxAnswer::ignore}, 2, 1, 1, 0},
          Row{{BoxAnswer::retry, BoxAnswer::retry}, 2, 1, 1, 0}}) {
        FixedBench bench(42, 17200);
        bench.bulk = {bench.id(foreign), bench.id(foreign), bench.id(acceptedcodes[3])};
        bench.answers = row.answers;
        bench.run(7);
        EXPECT_EQ(bench.boxes.size(), row.boxes);
        EXPECT_EQ(bench.count("powerdown"), row.powerdowns);
        EXPECT_EQ(bench.count("signalpass 0"), row.passes);
        EXPECT_EQ(bench.count("readyfail"), row.refusals);
        EXPECT_EQ(bench.calls().back(), "powerdown");
        EXPECT_EQ(bench.bulkreads, bench.boxes.size() + (row.answers.back() == BoxAnswer::retry));
    }
}

TEST(DeviceCode, FailedTransferAsksNothing) {
    FixedBench bench(41, 17200);
    bench.bulk = {std::nullopt};
    bench.run(7);
    EXPECT_THAT(bench.boxes, IsEmpty());
    EXPECT_THAT(bench.log(), Not(HasSubstr("Dev. Code")));
    EXPECT_EQ(bench.count("signalpass 0"), 1U);
}

TEST(DeviceCode, ChipIsAskedForIt) {
    for (const std::uint8_t family : testing::fixedmodes) {
        FixedBench bench(family, 17200);
        bench.run(7);
        testing::Chip chip(family);
        chip.take(bench.calls());
        EXPECT_EQ(chip.instructions, std::vector<int>{22});
        ASSERT_EQ(chip.scans.size(), 1U);
        EXPECT_EQ(chip.scans[0].bits.size(), 32U);
    }
}

}  // namespace
}  // namespace keld2
