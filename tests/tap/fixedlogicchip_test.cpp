// The fuse-array logic device as physics: what its four lines and the time do to it.
#include "sim/fixedlogicchip.h"

#include <gtest/gtest.h>

#include <string>

namespace keld2::sim {
namespace {

constexpr FixedLogicDevice device{.rows = 5,
                                  .width = 12,
                                  .code = {0x43, 0xD0, 0x80, 0x01},
                                  .preloadbits = 16,
                                  .programtime = 5'000,
                                  .erasetime = 2'000'000};

// Bits are written first-shifted first.
struct Bench {
    FixedLogicChip chip{device};

    void clocks(const std::string& tms) {
        for (const char level : tms) chip.clock(level == '1', false);
    }
    void reset() { clocks("111110"); }
    std::string shift(const std::string& bits) {
        std::string out;
        for (std::size_t i = 0; i < bits.size(); ++i) {
            out += chip.tdo() ? '1' : '0';
            chip.clock(i + 1 == bits.size(), bits[i] == '1');
        }
        return out;
    }
    void ir(int code) {
        clocks("1100");
        std::string bits;
        for (int i = 0; i < 8; ++i) bits += (code >> i & 1) != 0 ? '1' : '0';
        shift(bits);
        clocks("10");
    }
    std::string dr(const std::string& bits) {
        clocks("100");
        const std::string out = shift(bits);
        clocks("10");
        return out;
    }
    void programmingmode() {
        reset();
        ir(21);
    }
    std::string readrow(std::size_t row, std::int64_t microseconds = 600) {
        ir(1);
        std::string select(device.rows, '0');
        select[device.rows - 1 - row] = '1';
        dr(select);
        ir(42);
        chip.elapse(microseconds);
        return dr(std::string(device.width, '0'));
    }
    void program(const std::string& row, std::int64_t microseconds = 15'000) {
        dr(row);
        chip.elapse(microseconds);
    }
    void erase(std::int64_t microseconds = 2'200'000) {
        ir(3);
        chip.elapse(microseconds);
        ir(20);
        chip.elapse(200'000);
    }
};

bool allset(const FixedLogicChip& chip) {
    for (std::size_t i = 0; i < chip.fusecount(); ++i)
        if (!chip.fuse(i)) return false;
    return true;
}

const std::string ones(12, '1');
const std::string zeros(12, '0');
const std::string pattern = "100110101111";

TEST(FixedLogicChip, AnswersItsCodeAfterResetAndOnDemand) {
    const std::string code = "11000010000010110000000110000000";
    Bench bench;
    bench.reset();
    EXPECT_EQ(bench.dr(std::string(32, '0')), code);
    bench.ir(0xFF);
    EXPECT_EQ(bench.dr("1011"), "0101") << "bypass is one cell";
    bench.ir(22);
    EXPECT_EQ(bench.dr(std::string(32, '1')), code);
    EXPECT_TRUE(bench.chip.tdo()) << "released outside the shift states";
}

TEST(FixedLogicChip, ProgramsRowAfterRow) {
    Bench bench;
    bench.programmingmode();
    bench.ir(33);
    bench.ir(39);
    bench.program(pattern);
    bench.program(zeros);
    for (std::size_t row = 0; row < device.rows; ++row) {
        SCOPED_TRACE(row);
        EXPECT_EQ(bench.readrow(row), row == 0 ? pattern : row == 1 ? zeros : ones);
    }
    bench.ir(33);
    bench.ir(39);
    bench.program(ones);
    EXPECT_EQ(bench.readrow(0), pattern) << "a pulse never makes a 1";
}

TEST(FixedLogicChip, PulsesNeedTheirTimeAndTheMode) {
    Bench bench;
    bench.reset();
    bench.ir(33);
    bench.ir(39);
    bench.program(zeros);
    EXPECT_TRUE(allset(bench.chip)) << "not in programming mode";
    bench.programmingmode();
    bench.ir(33);
    bench.ir(39);
    bench.program(zeros, 4'999);
    bench.dr(ones);
    EXPECT_TRUE(allset(bench.chip)) << "the pulse was cut short";
    bench.chip.elapse(3'000);
    bench.clocks("00");
    bench.chip.setfuse(0, false);
    EXPECT_EQ(bench.readrow(0, 99), zeros) << "the row was not fetched in time";
    EXPECT_EQ(bench.readrow(0), "0" + std::string(11, '1'));
    bench.erase(1'999'999);
    EXPECT_FALSE(bench.chip.fuse(0));
    bench.erase();
    EXPECT_TRUE(bench.chip.fuse(0));
}

TEST(FixedLogicChip, ErasedArrayIsReadAfterItsDischarge) {
    Bench bench;
    bench.programmingmode();
    bench.ir(3);
    bench.chip.elapse(1'100'000);
    bench.clocks("0");
    bench.chip.elapse(1'100'000);
    EXPECT_EQ(bench.readrow(0), zeros);
    bench.ir(20);
    bench.chip.elapse(100'000);
    EXPECT_EQ(bench.readrow(0), ones);
}

TEST(FixedLogicChip, SecuredArrayHidesUntilErased) {
    Bench bench;
    bench.programmingmode();
    bench.ir(9);
    bench.chip.elapse(75'000);
    EXPECT_TRUE(bench.chip.secured());
    EXPECT_EQ(bench.readrow(2), zeros);
    bench.ir(33);
    bench.ir(39);
    bench.program(zeros);
    bench.erase();
    EXPECT_FALSE(bench.chip.secured());
    EXPECT_EQ(bench.readrow(0), ones);
}

TEST(FixedLogicChip, UserCodeIsReadBackInItsOrder) {
    const std::string code = "10110000111100001010101011001101";
    Bench bench;
    bench.programmingmode();
    bench.ir(26);
    bench.dr(code);
    bench.chip.elapse(15'000);
    bench.ir(23);
    EXPECT_EQ(bench.dr(std::string(32, '0')), code);
    bench.chip.poweroff();
    bench.reset();
    bench.ir(23);
    EXPECT_EQ(bench.dr(std::string(32, '0')), code) << "it outlives the power";
}

TEST(FixedLogicChip, FaultsShow) {
    Faults faults;
    addfault(faults, "stuck=3:0");
    addfault(faults, "wrongid");
    Bench bench{FixedLogicChip(device, faults)};
    bench.reset();
    EXPECT_EQ(bench.dr(std::string(8, '0')), "00111101");
    bench.ir(21);
    EXPECT_EQ(bench.readrow(0), "111011111111");
    bench.erase();
    EXPECT_EQ(bench.readrow(0), "111011111111");
}

TEST(FixedLogicChip, ResetLeavesProgrammingMode) {
    Bench bench;
    bench.programmingmode();
    EXPECT_EQ(bench.readrow(0), ones);
    bench.reset();
    EXPECT_EQ(bench.readrow(0), zeros);
}

}  // namespace
}  // namespace keld2::sim
