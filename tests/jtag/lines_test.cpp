// The JTAG lines: which register values the wirings without a text get, and levels in common.
#include "jtag/lines.h"

#include <gmock/gmock.h>

#include "jtag/recordingdevcore.h"

namespace keld2 {
namespace {

using ::testing::ElementsAre;
using testing::RecordingDevCore;
using Calls = std::vector<std::string>;

TEST(Lines, EachWiringGetsItsRegisterValues) {
    struct Golden {
        std::vector<int> families;
        Calls calls;  // TCK high, TMS high, TDI high, refresh, TMS low, TDI low, TCK low, a sample
    };
    // Every line is moved while the others are high, so that a lost shadow or fixed level shows.
    const Golden goldens[] = {
        {{41, 80}, {"146 0", "150 0", "151 0", "151 0", "147 0", "146 0", "130 0", "qregread 0"}},
        {{42}, {"6 2", "70 2", "129 6", "129 6", "6 2", "128 6", "4 2", "qregread 6"}},
        {{43}, {"12 6", "16 0", "1 10", "192 4", "0 0", "0 10", "8 6", "qregread 4"}},
        {{40, 44, 49, 51, 60, 79, 96, 255, 0}, {}},
    };
    for (const auto& [families, calls] : goldens)
        for (const int family : families) {
            RecordingDevCore devcore;
            LineLevels levels(static_cast<std::uint8_t>(family));
            QueuedLines lines(levels, devcore);
            lines.tckhigh();
            lines.tmshigh();
            lines.tdihigh();
            lines.pinrefresh();
            lines.tmslow();
            lines.tdilow();
            lines.tcklow();
            lines.tdosample();
            EXPECT_EQ(testing::shortened(devcore.calls), calls) << family;
            EXPECT_EQ(levels.readcount, calls.empty() ? 0 : 1);
        }
}

TEST(Lines, QueuedAndDirectShareTheLevels) {
    RecordingDevCore devcore;
    LineLevels levels(85);
    QueuedLines queued(levels, devcore);
    DirectLines direct(levels, devcore);
    queued.tmshigh();
    direct.tckpulse();
    devcore.samples = {0x5A};
    EXPECT_EQ(direct.tdosample(), 0x5A);
    EXPECT_EQ(levels.readcount, 0) << "an immediate sample is not in the read-back";
    queued.tckhigh();
    EXPECT_THAT(testing::shortened(devcore.calls),
                ElementsAre("68 2", "regwrite 70 2", "regwrite 68 2", "regread 6", "70 2"));
}

}  // namespace
}  // namespace keld2
