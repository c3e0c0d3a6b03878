// The state machine of the test access port, from every one of its states.
#include "sim/tap.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace keld2::sim {
namespace {

using enum TapState;

TapState walk(TapState state, const std::string& tms) {
    for (const char level : tms) state = next(state, level == '1');
    return state;
}

constexpr int states = 16;

TEST(Tap, FiveClocksWithTmsHighResetFromEveryState) {
    for (int i = 0; i < states; ++i)
        EXPECT_EQ(walk(static_cast<TapState>(i), "11111"), testlogicreset) << i;
}

TEST(Tap, EveryStateHasItsWay) {
    // The shortest way from reset to a state, and the two ways on from it.
    struct Row {
        const char* way;
        TapState state, low, high;
    };
    const std::vector<Row> rows{
        {"", testlogicreset, runtestidle, testlogicreset},
        {"0", runtestidle, runtestidle, selectdr},
        {"01", selectdr, capturedr, selectir},
        {"010", capturedr, shiftdr, exit1dr},
        {"0100", shiftdr, shiftdr, exit1dr},
        {"0101", exit1dr, pausedr, updatedr},
        {"01010", pausedr, pausedr, exit2dr},
        {"010101", exit2dr, shiftdr, updatedr},
        {"01011", updatedr, runtestidle, selectdr},
        {"011", selectir, captureir, testlogicreset},
        {"0110", captureir, shiftir, exit1ir},
        {"01100", shiftir, shiftir, exit1ir},
        {"01101", exit1ir, pauseir, updateir},
        {"011010", pauseir, pauseir, exit2ir},
        {"0110101", exit2ir, shiftir, updateir},
        {"011011", updateir, runtestidle, selectdr},
    };
    std::set<TapState> seen;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.way);
        EXPECT_EQ(walk(testlogicreset, row.way), row.state);
        EXPECT_EQ(next(row.state, false), row.low);
        EXPECT_EQ(next(row.state, true), row.high);
        seen.insert(row.state);
    }
    EXPECT_EQ(seen.size(), states);
}

}  // namespace
}  // namespace keld2::sim
