// The JTAG lines: which register values each wiring gets for a line change or a walk.
#include "jtag/lines.h"

#include <gmock/gmock.h>

#include <map>
#include <set>

#include "jtag/recordingdevcore.h"
#include "jtag/waveform.h"

namespace keld2 {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::RecordingDevCore;
using testing::shortened;
using testing::Waveform;
using Calls = std::vector<std::string>;

struct Bench {
    explicit Bench(std::uint8_t family) : levels(family) {}
    RecordingDevCore devcore;
    LineLevels levels;
    QueuedLines queued{levels, devcore};
    DirectLines direct{levels, devcore};

    Calls take() { return shortened(devcore.take()); }
};

struct Golden {
    std::vector<int> families;
    Calls writes;  // TCK high, TMS high, TDI high, refresh, TMS low, TDI low, TCK low
    std::string sample;
};

// Every line is moved while the others are high, so that a lost shadow or fixed level shows.
const std::vector<Golden> goldens{
    {{80, 83, 84, 94, 41, 50},
     {"146 0", "150 0", "151 0", "151 0", "147 0", "146 0", "130 0"},
     "qregread 0"},
    {{87, 89}, {"210 0", "214 0", "215 0", "215 0", "211 0", "210 0", "194 0"}, "qregread 0"},
    {{90, 93}, {"178 0", "182 0", "183 0", "183 0", "179 0", "178 0", "162 0"}, "qregread 0"},
    {{81}, {"4 4", "36 4", "8 6", "4 4", "0 6", "0 4"}, "qregread 6"},
    {{82}, {"1 4", "4 8", "17 4", "0 8", "1 4", "0 4"}, "qregread 10"},
    {{85, 42}, {"6 2", "70 2", "129 6", "129 6", "6 2", "128 6", "4 2"}, "qregread 6"},
    {{86}, {"243 4", "255 6", "251 4", "239 0", "223 6", "243 4", "179 4"}, "qregread 0"},
    {{88}, {"32 4", "36 4", "129 6", "129 6", "32 4", "128 6", "0 4"}, "qregread 6"},
    {{91, 95}, {"132 2", "134 2", "135 2", "135 2", "133 2", "132 2", "128 2"}, "qregread 2"},
    {{92}, {"251 4", "255 4", "119 6", "247 6", "251 4", "118 6", "219 4"}, "qregread 6"},
    {{43}, {"12 6", "16 0", "1 10", "192 4", "0 0", "0 10", "8 6"}, "qregread 4"},
    {{40, 44, 49, 51, 60, 79, 96, 255, 0}, {}, ""},
};

TEST(Lines, EachWiringGetsItsRegisterValues) {
    for (const Golden& golden : goldens)
        for (const int family : golden.families) {
            SCOPED_TRACE(family);
            Bench bench(static_cast<std::uint8_t>(family));
            bench.queued.tckhigh();
            bench.queued.tmshigh();
            bench.queued.tdihigh();
            bench.queued.pinrefresh();
            bench.queued.tmslow();
            bench.queued.tdilow();
            bench.queued.tcklow();
            EXPECT_EQ(bench.take(), golden.writes);
            bench.queued.tdosample();
            EXPECT_EQ(bench.take(), golden.sample.empty() ? Calls{} : Calls{golden.sample});
            EXPECT_EQ(bench.levels.readcount, golden.sample.empty() ? 0 : 1);
        }
}

TEST(Lines, QueuedAndDirectShareTheLevels) {
    Bench bench(85);
    bench.queued.tmshigh();
    bench.direct.tckpulse();
    bench.devcore.samples = {0x5A};
    EXPECT_EQ(bench.direct.tdosample(), 0x5A);
    EXPECT_EQ(bench.levels.readcount, 0) << "an immediate sample is not in the read-back";
    bench.queued.tckhigh();
    EXPECT_THAT(bench.take(),
                ElementsAre("68 2", "regwrite 70 2", "regwrite 68 2", "regread 6", "70 2"));
    EXPECT_EQ(bench.levels.tmsbit(), 64);
    EXPECT_EQ(bench.levels.tckbit(), 2);
    EXPECT_EQ(bench.levels.tdibit(), 0);
    bench.levels.clear();
    EXPECT_THAT(bench.take(), IsEmpty());
    EXPECT_EQ(bench.levels.tmsbit() + bench.levels.tckbit(), 0);
}

TEST(Lines, WalksClockTheirTmsLevels) {
    for (const int family : {80, 91, 94, 95}) {
        SCOPED_TRACE(family);
        Bench bench(static_cast<std::uint8_t>(family));
        Waveform waveform(static_cast<std::uint8_t>(family));
        const bool bypause = family >= 94;
        bench.queued.goshiftdr();
        EXPECT_EQ(waveform(bench.devcore.take()), bypause ? "10, 00, 10, 00, 10, 00" : "10, 00*2");
        EXPECT_EQ(bench.levels.tmsbit(), 0);
        bench.queued.pausewalk();
        EXPECT_EQ(waveform(bench.devcore.take()), bypause ? "10, 00, 10" : "");
    }
}

TEST(Lines, TableIsConsistent) {
    std::set<int> seen;
    for (const JtagFamily& row : jtagfamilies) {
        SCOPED_TRACE(int{row.family});
        EXPECT_TRUE(seen.insert(row.family).second) << "a family stands twice";
        // No fixed level or extra bit may hold a line down or pass for another line.
        std::map<int, int> lines;
        for (const RegisterBits& line : {row.wiring.tms, row.wiring.tck, row.wiring.tdi}) {
            EXPECT_EQ(line.bits & (line.bits - 1), 0) << "a line is one bit";
            EXPECT_EQ(lines[line.reg] & line.bits, 0);
            lines[line.reg] |= line.bits;
        }
        for (const RegisterBits& fixed : row.wiring.fixed)
            EXPECT_EQ(lines[fixed.reg] & fixed.bits, 0);
        EXPECT_EQ(row.wiring.tdo.bits & (row.wiring.tdo.bits - 1), 0);
        EXPECT_TRUE(row.drivecode == 144 || row.drivecode == 146);
        EXPECT_TRUE(row.readcode == 143 || row.readcode == 147);
        EXPECT_TRUE(row.extrabit == 0 || row.wiring.extrareg.has_value());
    }
}

}  // namespace
}  // namespace keld2
