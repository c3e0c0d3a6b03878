// Logic devices that the plug-in works by SVF texts: a chip's life from the command line, texts in
// every layout, and the check of texts.
#include <set>

#include "cli/bench.h"
#include "families/svffamily.h"
#include "host/catalogue/catalogue.h"
#include "host/files/files.h"
#include "host/svf/logicdevice.h"

namespace keld2::test {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

std::vector<std::string> logicdevices() {
    std::vector<std::string> names;
    const host::Catalogue catalogue = host::Catalogue::standard();
    for (const std::string& name : catalogue.names())
        if (host::playssvf(catalogue.find(name))) names.push_back(name);
    return names;
}

class Logic : public Bench, public ::testing::WithParamInterface<std::string> {
  protected:
    Logic() {
        device_ = GetParam();
        logic_ = host::logicdevice(host::Catalogue::standard().find(device_));
    }
    std::string map() const {
        std::string text;
        for (std::size_t i = 0; i < logic_.rows * logic_.width; ++i)
            text += i * i % 7 < 3 ? '1' : '0';
        return text;
    }
    std::string jedec(const std::string& name, const std::string& fuses) const {
        return folder_
            .file(name, "\x02test*\nQF" + std::to_string(fuses.size()) + "*\nF0*\nL0 " + fuses +
                            "*\n\x03"
                            "0000\n")
            .string();
    }
    // The map with its last fuse the other way.
    std::string flipped() const {
        std::string fuses = map();
        fuses.back() ^= 1;
        return fuses;
    }

    host::LogicDevice logic_;
};

INSTANTIATE_TEST_SUITE_P(Devices, Logic, ::testing::ValuesIn(logicdevices()),
                         [](const auto& device) {
                             std::string name = device.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST(LogicCatalogue, HasEveryFamily) {
    std::set<int> families;
    for (const std::string& name : logicdevices())
        families.insert(host::logicdevice(host::Catalogue::standard().find(name)).family);
    for (const SvfProcedure& procedure : svfprocedures())
        for (const std::uint8_t family : procedure.families)
            EXPECT_EQ(families.count(family), 1U) << int{family};
}

TEST_P(Logic, GoesThroughItsLife) {
    const std::string wanted = jedec("wanted.jed", map());
    const std::string other = jedec("other.jed", flipped());
    mustwork({"erase"});
    mustwork({"blank"});
    mustwork({"program", wanted});
    mustwork({"verify", wanted});
    EXPECT_EQ(keld2({"verify", other}).status, 1);
    EXPECT_EQ(keld2({"blank"}).status, 1);
    mustwork({"secure"});
    EXPECT_EQ(keld2({"verify", wanted}).status, 1);
    mustwork({"erase"});
    if (!host::Catalogue::standard().find(device_).autosteps.empty()) {
        mustwork({"auto", other});
        mustwork({"verify", other});
    }
    faults_ = {"wrongid"};
    const ProgramResult wrong = keld2({"verify", other});
    EXPECT_EQ(wrong.status, 1);
    EXPECT_THAT(wrong.err, HasSubstr("Device Code Error!"));
}

TEST_P(Logic, ReadsInEveryLayoutThatComparesRows) {
    const std::string wanted = jedec("wanted.jed", map());
    const std::string other = jedec("other.jed", flipped());
    mustwork({"program", wanted});
    const bool replays = logic_.procedure->sdr95;
    for (const std::string layout : {"A2", "B1", "B2", "C1", "C2", "C3", "C4"}) {
        const auto make = [&](const std::string& data, const std::string& out) {
            return runprogram({"-d", device_, "--force", "svf", "make", "--operation", "verify",
                               "--layout", layout, data, "-o", out});
        };
        const std::string good = file("good.svf").string();
        const std::string bad = file("bad.svf").string();
        const bool impossible = layout == "C3" || (replays && layout == "C4") ||
                                (logic_.family == 50 && layout[0] == 'C' && layout != "C1");
        ASSERT_EQ(make(wanted, good).status, impossible ? 64 : 0) << layout;
        if (impossible) continue;
        make(other, bad);
        const ProgramResult checked = runprogram({"-d", device_, "check", good});
        EXPECT_EQ(checked.status, 0) << layout << checked.out;
        EXPECT_EQ(keld2({"play", good}).status, 0) << layout;
        EXPECT_EQ(keld2({"play", bad}).status, 1) << layout;
    }
}

class SvfCheck : public Bench {
  protected:
    SvfCheck() { device_ = "logic-16160"; }
    ProgramResult check(const std::string& text) {
        return runprogram({"-d", device_, "check", folder_.file("text.svf", text).string()});
    }
};

TEST_F(SvfCheck, NamesLineColumnAndReason) {
    struct Case {
        const char* text;
        int status;
        const char* says;
    };
    const Case cases[] = {
        {"! fine\n\nHIR 0;\nSIR 8 TDI (16);\nSDR 8 TDI (A5);\n", 0, ":3: skipped: HIR: no header"},
        {"HIR 8 TDI (FF);\n", 65, ":1: lost: HIR 8TDI(FF): is not supported"},
        {"SIR 8 TDI (16);\n  SDR 8 TDI (A5);\n", 65, ":2: lost: SDR: stands behind blanks"},
        {"BLAH 1;\n", 65, ":1: lost: no statement begins with \"BLAH\""},
        {"SIR 8 TDI (16);\r\nSDR 8 TDI (AG);\r\n", 65, ":2:13: the run fails here: "},
        {"SDR 16 TDI (0\n\tZ00);\nSDR", 65, ":2:2: the run fails here: "},
        {"SIR 8 TDI (8000);", 65, ":1:1: the run fails here: "},
        {"RUNTEST 1 SEC;", 65, ":1:1: the run fails here: "},
        {"SDR 8 TDI (1\n2\n3\n4\n5\n6\n78);\n", 65, ":1: lost: SDR: its TDI has more than four"},
        {"RUNTEST IDLE 20 TCK 2.00E-003 SEC;\n", 0, "20 clocks, 0.002 s of waiting"},
        {"SDR 12 TDI (ABC);\nSIR 8 TDI (01);\n", 0, "20 bits shifted"},
        {"SDR 32 TDI (00000000) TDO (00000000);\n", 0, "1 rows stored, 1 compared"},
    };
    for (const Case& c : cases) {
        const ProgramResult result = check(c.text);
        EXPECT_EQ(result.status, c.status) << c.text;
        EXPECT_THAT(result.out, HasSubstr(c.says)) << c.text;
    }
}

TEST_F(SvfCheck, TellsRowsThatNobodyCompares) {
    std::string text = "SDR 32 TDI (00000000) TDO (00000000);\n";
    for (int i = 0; i < 81; ++i) text += "SDR 8 TDI (00) TDO (00);\n";
    const ProgramResult result = check(text);
    EXPECT_EQ(result.status, 65);
    EXPECT_THAT(result.out,
                AllOf(HasSubstr(":82: lost: SDR: its row is number 81"),
                      HasSubstr("82 rows stored, 81 compared"), Not(HasSubstr(":81:"))));
}

TEST_F(SvfCheck, TellsWhatLiesBeyondTheLineLimit) {
    const ProgramResult result = check(std::string(10000, '\n') + "SIR 8 TDI (16);\n");
    EXPECT_EQ(result.status, 65);
    EXPECT_THAT(result.out, HasSubstr(":10001: lost: the run reads 10000 lines"));
}

TEST_F(SvfCheck, PlayRefusesATextThatLosesStatements) {
    const std::string text = folder_.file("text.svf", " SIR 8 TDI (16);\n").string();
    const ProgramResult refused = keld2({"play", text});
    EXPECT_EQ(refused.status, 65);
    EXPECT_THAT(refused.err, HasSubstr("--anyway"));
    EXPECT_EQ(keld2({"play", text, "--anyway"}).status, 0);
}

TEST_F(SvfCheck, RefusesWhatCannotBe) {
    device_ = "serial-2k";
    EXPECT_EQ(check("").status, 64);
    device_ = "logic-16160";
    EXPECT_EQ(runprogram({"-d", device_, "check", "/none"}).status, 66);
    EXPECT_EQ(runprogram({"-d", device_, "svf", "make", "--operation", "cook"}).status, 64);
    EXPECT_EQ(runprogram({"-d", device_, "svf", "make", "--operation", "verify"}).status, 64);
    EXPECT_EQ(
        runprogram({"-d", device_, "svf", "make", "--operation", "id", "--layout", "D1"}).status,
        64);
}

}  // namespace
}  // namespace keld2::test
