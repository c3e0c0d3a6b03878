// SIR and RUNTEST statements and the TAP resets: what each family queues for a text, and which
// texts are faults.
#include <gtest/gtest.h>

#include "jtag/lines.h"
#include "jtag/recordingdevcore.h"
#include "jtag/runtest.h"
#include "jtag/sir.h"
#include "jtag/tapreset.h"
#include "jtag/waveform.h"
#include "platform/fault.h"

namespace keld2 {
namespace {

using testing::RecordingDevCore;
using testing::Waveform;

struct Bench {
    explicit Bench(int family)
        : levels(static_cast<std::uint8_t>(family)), waveform(static_cast<std::uint8_t>(family)) {}
    std::string take() { return waveform(devcore.take()); }

    RecordingDevCore devcore;
    LineLevels levels;
    QueuedLines lines{levels, devcore};
    Waveform waveform;
};

std::string sir(int family, const char* text) {
    Bench bench(family);
    SIRdate(bench.lines, bench.devcore, readsir(text));
    return bench.take();
}

std::string runtest(int family, const char* text, int pwte = 0) {
    Bench bench(family);
    executeruntest(bench.lines, bench.devcore, readruntest(bench.lines.family().runtest, text),
                   pwte);
    return bench.take();
}

TEST(Sir, QueuesWalkBitsAndEnd) {
    const std::string bits16 = "10*2, 00*3, 01*2, 00, 01, 00*2, 10*2";
    EXPECT_EQ(sir(80, "SIR 8 TDI (16);"), bits16);
    EXPECT_EQ(sir(80, "  sir8\tTDI (0016) TDO (00) MASK (FF);  "), bits16);
    EXPECT_EQ(sir(50, "SIR 8 TDI (16);"), bits16);
    EXPECT_EQ(sir(90, "SIR 8 TDI (16);"), bits16 + ", 00, qwaitshort 50");
    EXPECT_EQ(sir(94, "SIR 2 TDI (2);"), "10*2, 00, 10, 00, 10, 00*2, 11*2, 01, qwaitshort 50");
    EXPECT_EQ(sir(80, "SIR 20 TDI (7FFF);"), "10*2, 00*2, 01*15, 00*4, 10*2") << "zeros behind";
    EXPECT_EQ(sir(80, "SIR 0 TDI (1);"), "10*2, 00*3") << "no bit, no exit";
}

TEST(Sir, Faults) {
    for (const char* text :
         {"SIR 8 (16);", "SIR 8 tdi (16);", "SIR TDI (16);", "SIR", "SIR 8 TDI 16);",
          "SIR 8 TDI (16", "SIR 8 TDI ();", "SIR 8 TDI (1G);", "SIR 8 TDI ( 16);",
          "SIR 8 TDI (8000);", "SIR 8 TDI (10000);", "SIR 8 TDI (-1);", "SIR 32768 TDI (1);"})
        EXPECT_THROW(readsir(text), RunFault) << text;
}

struct RuntestRow {
    int family;
    const char* text;
    std::string queued;
    int pwte = 0;
};

TEST(Runtest, EachFamilyGivesItsClocks) {
    const std::vector<RuntestRow> rows{
        {85, "RUNTEST 100 TCK;", "146:0*12, 00*4"},
        {84, "RUNTEST 100 TCK;", "142:0*12, 00*4"},
        {50, "RUNTEST 100 TCK;", "142:0*12, 00*4"},
        {80, "RUNTEST 12 TCK;", "142:0*2"},
        {80, "RUNTEST 4 TCK;", "00*4"},
        {80, "RUNTEST 20 TCK;", "142:0*2, 00*4"},
        {80, "RUNTEST -20 TCK;", ""},
        {80, "RUNTEST IDLE 100 TCK 1.00E-003 SEC;", "142:0*12, 00*4, qwaitshort 1000"},
        {80, "RUNTEST IDLE 100 TCK\t2.00E-003 SEC;", "142:0*12, 00*4, qwaitlong 2"},
        {80, "RUNTEST IDLE 8 TCK 1.5 SEC ENDSTATE IDLE;", "142:0, qwaitlong 1500"},
        {80, "RUNTEST IDLE 8 TCK 0.0025SEC;", "142:0, qwaitlong 2"},
        {80, "RUNTEST IDLE 8 TCK -1 SEC;", "142:0, qwaitshort 0"},
        {85, "RUNTEST IDLE 8 TCK 2.00E-003 SEC;", "142:0, qwaitlong 2*2", 250},
        {86, "RUNTEST IDLE 8 TCK 1E-4 SEC;", "142:0, qwaitshort 100, qwaitlong 4", 350},
        {85, "RUNTEST 8 TCK 2.00E-003 SEC;", "146:0", 250},
        {50, "RUNTEST IDLE 8 TCK 2.00E-003 SEC;", "142:0, qwaitlong 2", 250},
        {87, "RUNTEST IDLE 450 TCK;", "00, qwaitshort 100*4"},
        {88, "RUNTEST 985 TCK;", "00, qwaitshort 10*98"},
        {88, "RUNTEST 1500 TCK;", "00, qwaitlong 10*2"},
        {87, "RUNTEST 2500 TCK;", "00, qwaitlong 10*2"},
        {89, "RUNTEST 1003 TCK;", "142:0*125, 00*3"},
        {89, "RUNTEST Idle 250 TCK;", "00, qwaitshort 100*2"},
        {89, "RUNTEST DRPAUSE 25 TCK;", "00, qwaitshort 10*2"},
        {89, "RUNTEST IRPAUSE 30 TCK;", "00, qwaitshort 10*3, 10*2, 00"},
        {90, "RUNTEST IDLE 250 TCK;", "00, 142:0*2, 00*234"},
        {92, "RUNTEST IDLE 250 TCK;", "00, 146:0*2, 00*234"},
        {95, "RUNTEST IRPAUSE 30 TCK;", "00, qwaitshort 10*3, 10*2, 00"},
        {94, "RUNTEST 17 TCK 1 SEC;", "146:0*2, 00"},
    };
    for (const RuntestRow& row : rows) {
        SCOPED_TRACE(std::to_string(row.family) + ": " + row.text);
        EXPECT_EQ(runtest(row.family, row.text, row.pwte), row.queued);
    }
}

TEST(Runtest, StartsWithItsLinesLow) {
    Bench bench(80);
    bench.lines.tmshigh();
    bench.lines.tdihigh();
    bench.lines.tckhigh();
    bench.devcore.take();
    executeruntest(bench.lines, bench.devcore, {.clocks = 0}, 0);
    EXPECT_EQ(testing::shortened(bench.devcore.take()),
              (std::vector<std::string>{"147 0", "146 0", "130 0"}));
}

TEST(Runtest, Faults) {
    const std::vector<std::pair<int, const char*>> rows{
        {80, "RUNTEST"},
        {80, "RUNTEST 100 tck;"},
        {80, "RUNTEST\t100 TCK;"},
        {80, "RUNTEST 100000001 TCK;"},
        {80, "RUNTEST 3000000000 TCK;"},
        {80, "RUNTEST 1.5 TCK;"},
        {80, "RUNTEST 1.00E-003 SEC;"},
        {80, "RUNTEST DRPAUSE 100 TCK;"},
        {80, "RUNTEST 100 TCK IDLE;"},
        {80, "RUNTEST IDLE 100 TCK;"},
        {80, "RUNTEST IDLE 100 TCK SEC;"},
        {80, "RUNTEST IDLE 100 TCK 1,5 SEC;"},
        {80, "RUNTEST IDLE 100 TCK inf SEC;"},
        {80, "RUNTEST IDLE 100 TCK +-1 SEC;"},
        {80, "RUNTEST IDLE 100 TCK 1E10 SEC;"},
        {80, "RUNTEST IDLE 100 TCK 0x1 SEC;"},
        {89, "RUNTEST RESET 100 TCK;"},
        {90, "RUNTEST IDLE 1.0 SEC;"},
    };
    for (const auto& [family, text] : rows)
        EXPECT_THROW(readruntest(findjtagfamily(static_cast<std::uint8_t>(family))->runtest, text),
                     RunFault)
            << text;
    EXPECT_EQ(readruntest(RuntestKind::runtest, "RUNTEST 100000000 TCK;").clocks, 100000000);
}

TEST(TapReset, DrivesTheLinesInOrder) {
    Bench bench(86);
    playtapreset(bench.lines, bench.devcore, svfreset94);
    std::vector<std::string> calls = testing::shortened(bench.devcore.take());
    calls.resize(11);
    EXPECT_EQ(calls, (std::vector<std::string>{"243 4", "251 4", "255 6", "239 0", "qwaitshort 100",
                                               "187 4", "187 4", "223 6", "qwaitlong 100", "179 4",
                                               "255 6"}));
}

}  // namespace
}  // namespace keld2
