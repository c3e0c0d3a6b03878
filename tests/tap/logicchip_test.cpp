// The row-programmed logic device as physics: what its four lines and the time do to it.
#include "sim/logicchip.h"

#include <gtest/gtest.h>

#include <string>

namespace keld2::sim {
namespace {

using namespace logicinstruction;

constexpr LogicDevice device{
    .rows = 3, .width = 12, .padding = 2, .instructionbits = 6, .code = 0x1234ABCD};

// Bits are written first-shifted first.
struct Bench {
    LogicChip chip{device};

    void clocks(const std::string& tms) {
        for (const char level : tms) chip.clock(level == '1', false);
    }
    std::string shift(const std::string& bits) {
        std::string out;
        for (std::size_t i = 0; i < bits.size(); ++i) {
            out += chip.tdo() ? '1' : '0';
            chip.clock(i + 1 == bits.size(), bits[i] == '1');
        }
        return out;
    }
    void ir(std::uint32_t code) {
        clocks("1100");
        std::string bits;
        for (std::size_t i = 0; i < device.instructionbits; ++i)
            bits += (code >> i & 1) != 0 ? '1' : '0';
        shift(bits);
        clocks("10");
    }
    std::string dr(const std::string& bits) {
        clocks("100");
        const std::string out = shift(bits);
        clocks("10");
        return out;
    }
    void begin() {
        clocks("111110");
        ir(enable);
    }
    void select(std::size_t row) {
        ir(logicinstruction::address);
        std::string bits;
        for (std::size_t i = 0; i < logicaddressbits; ++i) bits += (row >> i & 1) != 0 ? '1' : '0';
        dr(bits);
    }
    std::string readrow(std::size_t row) {
        select(row);
        ir(read);
        return dr(std::string(14, '0'));
    }
    void programrow(const std::string& row, std::int64_t microseconds = 5000) {
        dr(row + "00");
        chip.elapse(microseconds);
    }
    std::string statusbits() {
        ir(status);
        return dr("00000000").substr(0, 4);
    }
};

TEST(LogicChip, TellsItsCodeAfterAReset) {
    Bench bench;
    bench.clocks("111110");
    std::string code;
    for (int i = 0; i < 32; ++i) code += (0x1234ABCDU >> i & 1) != 0 ? '1' : '0';
    EXPECT_EQ(bench.dr(std::string(32, '1')), code);
    bench.ir(63);
    EXPECT_EQ(bench.dr("101"), "010") << "bypass";
    bench.ir(50);
    EXPECT_EQ(bench.dr("101"), "010") << "a number without a meaning";
}

TEST(LogicChip, ProgramsRowAfterRowByWholePulses) {
    Bench bench;
    bench.begin();
    bench.select(0);
    bench.ir(program);
    bench.programrow("101010101010");
    bench.programrow("000000111111", 4999);  // too short
    bench.programrow("110011001100");
    EXPECT_EQ(bench.readrow(0), "10101010101000");
    EXPECT_EQ(bench.dr(std::string(14, '0')), "11111111111100") << "the next row, still blank";
    EXPECT_EQ(bench.dr(std::string(14, '0')), "11001100110000");
    EXPECT_EQ(bench.dr(std::string(14, '0')), "00000000000000") << "no row is left";
    EXPECT_EQ(bench.statusbits(), "1001") << "a pulse was too short";
    bench.select(0);
    bench.ir(program);
    bench.programrow("111111000000");
    EXPECT_EQ(bench.readrow(0), "10101000000000") << "cells only go from 1 to 0";
}

TEST(LogicChip, APulseMayComeInParts) {
    Bench bench;
    bench.begin();
    bench.ir(program);
    bench.programrow("000000000000", 3000);
    bench.clocks("0");  // clocks in Run-Test/Idle do not break it
    bench.chip.elapse(2000);
    EXPECT_EQ(bench.readrow(0), std::string(14, '0'));
    EXPECT_EQ(bench.statusbits(), "1000");
    bench.select(1);
    bench.ir(program);
    bench.programrow("000000000000", 3000);
    bench.clocks("10100110");  // through Pause-DR, which is a new row of its own
    bench.chip.elapse(2000);
    EXPECT_EQ(bench.readrow(1), "11111111111100");
}

TEST(LogicChip, WorksInProgrammingModeAlone) {
    Bench bench;
    bench.clocks("111110");
    bench.ir(program);
    bench.programrow("000000000000");
    EXPECT_EQ(bench.readrow(0), std::string(14, '0')) << "nothing is read";
    bench.ir(enable);
    EXPECT_EQ(bench.readrow(0), "11111111111100") << "nothing has been programmed";
    bench.ir(disable);
    EXPECT_EQ(bench.readrow(0), std::string(14, '0'));
    bench.begin();
    bench.clocks("11111");
    EXPECT_EQ(bench.readrow(0), std::string(14, '0')) << "a reset leaves it";
}

TEST(LogicChip, MarksAreErasedWithTheCells) {
    Bench bench;
    bench.begin();
    bench.ir(program);
    bench.programrow("010101010101");
    bench.ir(done);
    bench.chip.elapse(4000);
    EXPECT_FALSE(bench.chip.done());
    bench.ir(done);
    bench.chip.elapse(5000);
    EXPECT_TRUE(bench.chip.done());
    bench.ir(secure);
    bench.chip.elapse(20'000);
    EXPECT_EQ(bench.readrow(0), std::string(14, '0'));
    bench.select(1);
    bench.ir(program);
    bench.programrow("000000000000");
    EXPECT_TRUE(bench.chip.cell(12)) << "a secured device takes no pulse";
    EXPECT_EQ(bench.statusbits(), "1111");
    bench.ir(erase);
    bench.chip.elapse(99'999);
    EXPECT_TRUE(bench.chip.secured());
    bench.chip.elapse(1);
    EXPECT_EQ(bench.statusbits(), "1001");
    EXPECT_EQ(bench.readrow(0), "11111111111100");
}

}  // namespace
}  // namespace keld2::sim
