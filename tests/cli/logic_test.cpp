// Logic devices that the plug-in works by SVF texts: a chip's life from the command line, texts in
// every layout, and the check of texts.
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

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
using ::testing::StartsWith;

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

    // The chip has this fuse the other way than the map.
    void flipfuse(std::size_t fuse) {
        faults_ = {"stuck=" + std::to_string(fuse) + (map()[fuse] == '1' ? ":0:0" : ":0:1")};
    }
    std::string text(const std::string& operation, const std::string& layout,
                     const std::string& data) const {
        const std::string out = file("made.svf").string();
        std::vector<std::string> arguments{"-d", device_,       "--force", "svf",      "make", "-o",
                                           out,  "--operation", operation, "--layout", layout};
        if (!data.empty()) arguments.push_back(data);
        const ProgramResult made = runprogram(arguments);
        EXPECT_EQ(made.status, 0) << made.err;
        return host::readtext(out);
    }
    // The run has failed by this fuse alone, whose level differs from fuses; text: what was played.
    void expectexplained(const ProgramResult& run, std::size_t fuse, char level,
                         const std::string& text) const {
        EXPECT_EQ(run.status, 1);
        const auto explanation = nlohmann::json::parse(run.out)["explanation"];
        ASSERT_EQ(explanation.value("count", 0), 1) << run.out;
        const auto one = explanation["mismatches"][0];
        const int coderows = logic_.family == 89 ? 10 : 1;
        const int row = coderows + static_cast<int>(fuse / logic_.width);
        EXPECT_EQ(one["row"], row);
        EXPECT_EQ(one["bit"], fuse % logic_.width);
        EXPECT_EQ(one["expected"], level - '0');
        EXPECT_EQ(one["read"], '1' - level);
        // Each statement that stores a row has one TDO, and the line is that of its beginning.
        std::istringstream lines(text);
        std::string line;
        int stored = 0;
        for (int i = 1; std::getline(lines, line) && i < one["line"]; ++i)
            stored += line.find("TDO") != std::string::npos ? 1 : 0;
        EXPECT_THAT(line, StartsWith("SDR"));
        EXPECT_EQ(stored, row);
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
    const std::string fuses = map();
    const std::string wanted = jedec("wanted.jed", fuses);
    const std::string other = jedec("other.jed", flipped());
    mustwork({"erase"});
    mustwork({"blank"});
    mustwork({"program", wanted});
    mustwork({"verify", wanted});
    EXPECT_EQ(keld2({"blank"}).status, 1);
    for (const std::size_t fuse :
         {std::size_t{0}, logic_.rows / 2 * logic_.width + 5, fuses.size() - 1}) {
        flipfuse(fuse);
        const ProgramResult failed = keld2({"verify", wanted, "--json"});
        expectexplained(failed, fuse, fuses[fuse], text("verify", "A2", wanted));
        EXPECT_EQ(nlohmann::json::parse(failed.out)["explanation"]["mismatches"][0]["fuse"], fuse);
    }
    faults_.clear();
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

TEST_P(Logic, PlaysTheTextsOfItsOperations) {
    const std::string wanted = jedec("wanted.jed", map());
    for (const std::string operation : {"id", "erase", "blank", "program", "verify", "secure"}) {
        const bool data = operation == "program" || operation == "verify";
        const std::string made =
            folder_.file("text.svf", text(operation, "A2", data ? wanted : "")).string();
        const ProgramResult checked = runprogram({"-d", device_, "check", made});
        EXPECT_EQ(checked.status, 0) << operation << checked.out;
        EXPECT_EQ(keld2({"play", made}).status, 0) << operation;
    }
}

TEST_P(Logic, ReadsInEveryLayoutThatComparesRows) {
    const std::string wanted = jedec("wanted.jed", map());
    const std::string other = jedec("other.jed", flipped());
    mustwork({"program", wanted});
    const bool replays = logic_.procedure->sdr95;
    for (const std::string layout : {"A2", "B1", "B2", "C1", "C2", "C3", "C4"}) {
        const bool impossible = layout == "C3" || (replays && layout == "C4") ||
                                (logic_.family == 50 && layout[0] == 'C' && layout != "C1");
        if (impossible) {
            EXPECT_EQ(runprogram({"-d", device_, "svf", "make", "--operation", "verify", "--layout",
                                  layout, wanted})
                          .status,
                      64)
                << layout;
            continue;
        }
        SCOPED_TRACE(layout);
        const std::string good = folder_.file("good.svf", text("verify", layout, wanted)).string();
        const ProgramResult checked = runprogram({"-d", device_, "check", good});
        EXPECT_EQ(checked.status, 0) << checked.out;
        EXPECT_EQ(keld2({"play", good}).status, 0);
        const std::string wrong = text("verify", layout, other);
        const std::string bad = folder_.file("bad.svf", wrong).string();
        expectexplained(keld2({"play", bad, "--json"}), map().size() - 1, flipped().back(), wrong);
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
        {"STATE RESET;\nTRST ON;\n", 0, ":1: skipped: STATE: the run begins with a reset"},
        {"SIR 8 TDI (16);\nSTATE RESET;\n", 65, ":2: lost: STATE RESET: is not supported"},
        {"SDR 16 TDI (A5);\n", 65, ":1:1: the run fails here: a field has fewer digits"},
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

TEST_F(SvfCheck, ListsTheStatementsThatRunInTheirOrder) {
    const std::string text = folder_
                                 .file("text.svf",
                                       "SIR 8 TDI (16);\nSDR 32 TDI (00000000)\n\tTDO (00000000);\n"
                                       "HIR 0;\nSDR 12 TDI (123);\nRUNTEST 12 TCK;\n"
                                       "RUNTEST IDLE 8 TCK 1.5 SEC;\nBLAH;\n")
                                 .string();
    const ProgramResult result = runprogram({"-d", device_, "check", "--statements", text});
    std::string expected;
    for (const char* line :
         {"1: SIR: 8 bits", "2: SDR: 32 bits back, row 0", "4: skipped: HIR: no header bits",
          "5: SDR: 12 bits out", "6: RUNTEST: 16 clocks, 0 us of waiting",
          "7: RUNTEST: 8 clocks, 1500000 us of waiting",
          "8: lost: no statement begins with \"BLAH\""})
        expected += text + ":" + line + "\n";
    EXPECT_THAT(result.out, StartsWith(expected));
    const auto json =
        nlohmann::json::parse(runprogram({"-d", device_, "check", "--json", text}).out);
    EXPECT_EQ(json["run"].size(), 5U);
    EXPECT_EQ(json["seconds"], 1.5);
    EXPECT_EQ(json["usesall"], false);
}

TEST_F(SvfCheck, TellsRowsThatNobodyCompares) {
    std::string text = "SDR 32 TDI (00000000) TDO (00000000);\n";
    for (int i = 0; i < 81; ++i) text += "SDR 8 TDI (00) TDO (00);\n";
    const ProgramResult result = check(text);
    EXPECT_EQ(result.status, 65);
    EXPECT_THAT(result.out,
                AllOf(HasSubstr(":82: lost: SDR: its row is number 81"),
                      HasSubstr("number 1 and has 8 bits, the device's comparison takes 202; 79 "
                                "more rows of other widths"),
                      HasSubstr("82 rows stored, 81 compared"), HasSubstr("takes rows 1 to 80"),
                      Not(HasSubstr(":81:"))));
}

TEST_F(SvfCheck, TellsWhatLiesBeyondTheLineLimit) {
    const ProgramResult result = check(std::string(10000, '\n') + "SIR 8 TDI (16);\n");
    EXPECT_EQ(result.status, 65);
    EXPECT_THAT(result.out, HasSubstr(":10001: lost: the run reads 10000 lines"));
}

TEST_F(SvfCheck, PlayAsksBeforeATextThatLosesStatements) {
    const std::string text = folder_.file("text.svf", " SIR 8 TDI (16);\n").string();
    const ProgramResult refused = keld2({"play", text});
    EXPECT_EQ(refused.status, 65);
    EXPECT_THAT(refused.err, AllOf(HasSubstr(":1: lost: "), HasSubstr("Play it?"),
                                   HasSubstr("answered with cancel"), HasSubstr("--anyway")));
    EXPECT_EQ(keld2({"play", text, "--anyway"}).status, 0);
    EXPECT_EQ(keld2({"play", text, "--on-box", "ok"}).status, 0);
    for (const auto& [answer, status] : {std::pair{"ok\n", 0}, std::pair{"cancel\n", 65}}) {
        Program asked(command({"play", text}), Program::On::terminal);
        ASSERT_TRUE(asked.waitfor("ok, cancel?"));
        asked.type(answer);
        EXPECT_EQ(asked.finish().status, status) << answer;
    }
}

TEST_F(SvfCheck, AFailureIsExplainedOnATerminalOrWhenAsked) {
    const std::string text =
        folder_
            .file("text.svf",
                  "SIR 8 TDI (16);\nSDR 32 TDI (00000000) TDO (00000000) MASK (00000100);\n")
            .string();
    const std::string line = text + ":2: device code, row 0, bit 8: expected 0, read 1\n";
    EXPECT_EQ(keld2({"play", text}).out, "");
    EXPECT_EQ(keld2({"play", text, "--explain"}).out, line);
    Program silent(command({"play", text, "--no-explain"}), Program::On::terminal);
    EXPECT_THAT(silent.finish().out, Not(HasSubstr("bit 8")));
    Program telling(command({"play", text}), Program::On::terminal);
    EXPECT_THAT(telling.finish().out, HasSubstr("bit 8: expected 0, read 1"));
}

TEST_F(SvfCheck, AFailureOfASequenceIsExplainedByTheTextOfItsStep) {
    faults_ = {"stuck=809:0:1"};
    const std::string zeros = folder_
                                  .file("zeros.jed",
                                        "\x02t*\nQF16160*\nF0*\n\x03"
                                        "0000\n")
                                  .string();
    const auto json = nlohmann::json::parse(keld2({"auto", zeros, "--json"}).out);
    EXPECT_EQ(json["done"], 2) << "erased and blank";
    EXPECT_EQ(json["explanation"]["count"], 1);
    EXPECT_EQ(json["explanation"]["mismatches"][0]["fuse"], 809);
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
