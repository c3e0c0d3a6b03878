// Whole lives of a chip of the fixed logic family: the plug-in on one side, physics on the other.
#include <gmock/gmock.h>

#include "fixed/fixedbench.h"
#include "sim/fixedlogicchip.h"
#include "sim/jtagchip.h"

namespace keld2 {
namespace {

using testing::FixedBench;
using ::testing::HasSubstr;
using testing::pattern;

constexpr std::int16_t read = 2, verify = 3, blank = 4, compare = 5, program = 6, erase = 8,
                       secure = 9;

struct Setting {
    std::uint8_t family;
    std::int32_t fuses;
};

// A chip in the socket of a simulated programmer; chip stays valid as long as the programmer.
struct Rig {
    Rig(std::uint8_t family, std::int32_t fuses) {
        const FixedGeometry geometry = findgeometry(fuses);
        auto model = std::make_unique<sim::FixedLogicChip>(
            sim::FixedLogicDevice{.rows = static_cast<std::size_t>(geometry.rows),
                                  .width = static_cast<std::size_t>(geometry.width),
                                  .code = acceptedcodes[1]});
        chip = model.get();
        const sim::JtagSocketing socketing{
            .lines = *sim::jtaglines(family),
            .supplies = {.gndpins = {20}, .vccpins = {40}, .vccmin = 4500, .vccmax = 5500}};
        programmer = std::make_unique<sim::SimProgrammer>(
            sim::SimSetting{.chip = std::make_unique<sim::JtagChip>(socketing, std::move(model))});
        bench = std::make_unique<FixedBench>(family, fuses, programmer.get());
        bench->s().bvcc[0] = 500;
        bench->s().bgndpin[0] = 20;
    }
    bool allset() const {
        for (std::size_t i = 0; i < chip->fusecount(); ++i)
            if (!chip->fuse(i)) return false;
        return true;
    }

    sim::FixedLogicChip* chip = nullptr;
    std::unique_ptr<sim::SimProgrammer> programmer;
    std::unique_ptr<FixedBench> bench;
};

// One wiring drives each byte of the user code the other way round than it reads it.
std::string mirroredbytes(std::string text) {
    for (auto byte = text.begin(); byte != text.end(); byte += 8) std::reverse(byte, byte + 8);
    return text;
}

class ChipRun : public ::testing::TestWithParam<Setting> {
  protected:
    std::uint8_t run(std::int16_t op) {
        bench_.s().MainRtstr[0] = u"";
        bench_.run(op);
        return bench_.s().prgresult[0];
    }

    const std::int32_t fuses_ = GetParam().fuses;
    Rig rig_{GetParam().family, fuses_};
    FixedBench& bench_ = *rig_.bench;
    sim::FixedLogicChip& chip_ = *rig_.chip;
    const std::string map_ = pattern(fuses_, 11);
};

INSTANTIATE_TEST_SUITE_P(Fixed, ChipRun,
                         ::testing::Values(Setting{41, 17200}, Setting{42, 17200},
                                           Setting{43, 17200}, Setting{41, 35600},
                                           Setting{42, 35600}, Setting{43, 35600}),
                         [](const auto& setting) {
                             return std::to_string(setting.param.family) + "_" +
                                    std::to_string(setting.param.fuses);
                         });

TEST_P(ChipRun, FromEraseToSecure) {
    for (std::int32_t i = 0; i < fuses_; i += 3) chip_.setfuse(static_cast<std::size_t>(i), false);
    bench_.setcells(0, map_);
    const std::string usercode = "11100001000111110000000010101011";
    bench_.setcells(fuses_, usercode);
    EXPECT_EQ(run(blank), 1);
    EXPECT_EQ(run(erase), 0);
    EXPECT_EQ(run(blank), 0);
    EXPECT_EQ(run(program), 0);
    EXPECT_EQ(run(verify), 0);
    EXPECT_EQ(run(blank), 1);

    bench_.setcells(0, std::string(map_.rbegin(), map_.rend()));
    bench_.setcells(fuses_, std::string(32, '1'));
    EXPECT_EQ(run(read), 0);
    EXPECT_TRUE(bench_.cells(0, fuses_) == map_);
    EXPECT_EQ(bench_.cells(fuses_, 32),
              GetParam().family == 41 ? mirroredbytes(usercode) : usercode);

    for (const std::int32_t at : {1, 77, 5000, 9999, fuses_ - 1}) {
        auto& cell = bench_.s().ibuffer[at];
        cell ^= 1;
    }
    EXPECT_EQ(run(compare), 0);
    const std::string log = bench_.log();
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 2 + 5 + 2);
    EXPECT_THAT(log, HasSubstr(">> 009999 "));
    EXPECT_EQ(run(verify), 1);
    EXPECT_THAT(bench_.log(), HasSubstr(">>Device Address:000001 "));

    bench_.setcells(0, map_);
    EXPECT_EQ(run(secure), 0);
    EXPECT_TRUE(chip_.secured());
    EXPECT_EQ(run(verify), 1);
    EXPECT_EQ(run(program), 1) << "a secured chip takes nothing";
    EXPECT_EQ(run(erase), 0);
    EXPECT_EQ(run(blank), 0);
}

TEST_P(ChipRun, WithoutEraseNothingBecomesOne) {
    chip_.setfuse(100, false);
    bench_.setcells(0, std::string(static_cast<std::size_t>(fuses_), '1'));
    EXPECT_EQ(run(program), 1);
    EXPECT_THAT(bench_.log(), HasSubstr("Address:000100   Device Data: 0   Buffer Data: 1"));
}

TEST_P(ChipRun, SequenceInOneRun) {
    bench_.setcells(0, map_);
    chip_.setfuse(5, false);
    auto& s = bench_.s();
    s.wautonum[0] = 5;
    std::int64_t step = 0;
    for (const std::int16_t op : {erase, blank, program, read, secure})
        s.autoprg[step++] = static_cast<std::uint8_t>(op);
    EXPECT_EQ(run(0), 0);
    EXPECT_TRUE(bench_.cells(0, fuses_) == map_);
    EXPECT_TRUE(chip_.secured());
}

TEST_P(ChipRun, ShortPulsesProgramNothing) {
    bench_.s().pwte[0] = 450;  // 4 ms
    bench_.setcells(0, map_);
    EXPECT_EQ(run(program), 1);
    EXPECT_TRUE(rig_.allset());
}

// Behind a row of 352 bits comes one pulse more than the way to Run-Test/Idle has: the program
// pulse never comes about. The rows can be read.
TEST(FixedChip, RowsOf352BitsAreReadButNotProgrammed) {
    for (const std::uint8_t family : testing::fixedmodes) {
        SCOPED_TRACE(int{family});
        Rig rig(family, 33440);
        FixedBench& bench = *rig.bench;
        bench.setcells(0, pattern(33440, 5));
        bench.run(program);
        EXPECT_EQ(bench.s().prgresult[0], 1);
        EXPECT_TRUE(rig.allset());
        rig.chip->setfuse(33439, false);
        bench.run(read);
        EXPECT_TRUE(bench.cells(0, 33440) == std::string(33439, '1') + "0");
    }
}

}  // namespace
}  // namespace keld2
