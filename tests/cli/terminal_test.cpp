// What somebody at a terminal sees and is asked.
#include "cli/bench.h"
#include "host/files/files.h"

namespace keld2::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class Terminal : public Bench {};

TEST_F(Terminal, ProgressIsABarThatGoesAway) {
    Program program(command({"program", hex("a.hex", {{0, {1}}})}), Program::On::terminal);
    const ProgramResult result = program.finish();
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, HasSubstr("\r\033[K[####################....................]  50 % "));
    EXPECT_THAT(result.out, HasSubstr("\r\033[K>>Program OK\r\n"));
}

TEST_F(Terminal, BoxesAreAskedUntilTheAnswerIsOneOfTheirs) {
    faults_ = {"wrongid"};
    Program program(command({"erase"}), Program::On::terminal);
    ASSERT_TRUE(program.waitfor("abort, retry, ignore? "));
    program.type("ok\n");
    ASSERT_TRUE(program.waitfor("ok\r\nabort, retry, ignore? "));
    program.type("i\n");
    const ProgramResult result = program.finish();
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, HasSubstr(">>Erase OK"));
}

TEST_F(Terminal, AnInterruptAtAQuestionTakesTheSafeAnswer) {
    faults_ = {"wrongid"};
    Program program(command({"erase"}), Program::On::terminal);
    ASSERT_TRUE(program.waitfor("abort, retry, ignore? "));
    program.type("\x03");  // Ctrl-C
    const ProgramResult result = program.finish();
    EXPECT_THAT(result.out, HasSubstr("keld2: answered with abort"));
    EXPECT_THAT(result.out, Not(HasSubstr("Erase OK")));
    EXPECT_EQ(result.status, 1);
}

class TerminalSvf : public Bench {
  protected:
    TerminalSvf() { device_ = "logic-16160"; }
    Program played(const std::string& text, std::vector<std::string> more = {}) const {
        more.insert(more.begin(), {"play", folder_.file("text.svf", text).string()});
        return Program(command(more), Program::On::terminal);
    }
};

TEST_F(TerminalSvf, PlayAsksBeforeATextThatLosesStatements) {
    for (const auto& [answer, status] : {std::pair{"ok\n", 0}, std::pair{"cancel\n", 65}}) {
        Program asked = played(" SIR 8 TDI (16);\n");
        ASSERT_TRUE(asked.waitfor("ok, cancel?"));
        asked.type(answer);
        EXPECT_EQ(asked.finish().status, status) << answer;
    }
}

TEST_F(TerminalSvf, AFailureIsExplainedUnlessNotWanted) {
    const std::string text = "SDR 32 TDI (00000000) TDO (00000000) MASK (00000100);\n";
    EXPECT_THAT(played(text).finish().out, HasSubstr("bit 8: expected 0, read 1"));
    EXPECT_THAT(played(text, {"--no-explain"}).finish().out, Not(HasSubstr("bit 8")));
}

class TerminalEditors : public Bench {
  protected:
    // What is on the screen when these lines have been typed into the editors of a job.
    std::string typed(const std::string& shared, const std::string& call, const char* input) const {
        const std::string job = folder_
                                    .file("job.toml", "[shared]\n" + shared +
                                                          "buflength = 200100\n[buffer]\nfill = "
                                                          "0\n[run]\ncalls = [\"" +
                                                          call + "\"]\n")
                                    .string();
        Program program({"job", job, "--replay", folder_.file("replay", "").string(), "--dump",
                         file("dump").string()},
                        Program::On::terminal);
        EXPECT_TRUE(program.waitfor("ok or cancel: "));
        program.type(input);
        return program.finish().out;
    }
    std::string left(std::size_t offset, std::size_t count) const {
        const std::string dump = host::readtext(file("dump"));
        return dump.substr(dump.find("\"ibuffer\": \"") + 12 + 2 * offset, 2 * count);
    }
};

TEST_F(TerminalEditors, FieldsAreChosenByNumbers) {
    const std::string out =
        typed("prgmode = 21\ntlength = 48\n", "editfigkeld2", "2=1\n 6 = 1 \n7=1\n1=2\n1\n\nok\n");
    EXPECT_EQ(left(32, 2), "0202");
    EXPECT_THAT(out, HasSubstr("   2  XTAL Osc Bypass  Disable(1)  [0 Enable(0), 1 Disable(1)]"));
    EXPECT_THAT(out, HasSubstr("no such field, expected a number from 1 to 6"));
    EXPECT_THAT(out, HasSubstr("no such entry, expected a number from 0 to 1"));
    EXPECT_THAT(out, HasSubstr("expected NUMBER=VALUE for this field"));
    EXPECT_THAT(out, Not(HasSubstr("UserCode"))) << "the other layout is hidden";
}

TEST_F(TerminalEditors, OptionsAndTextsToo) {
    const std::string out =
        typed("prgmode = 1\ntlength = 200000\n", "editfigkeld2", "1=12aBxF\n3\n7\nok\n");
    EXPECT_EQ(left(200000, 5), "12abf00002");
    EXPECT_THAT(out, HasSubstr("refused: \"x\""));
    EXPECT_THAT(out, HasSubstr("   3  (*) Serial Slave/Master Modes(1)"));
    EXPECT_THAT(out, Not(HasSubstr("HF Crystal"))) << "outside the window";
}

TEST_F(TerminalEditors, AnInputThatEndsCancels) {
    const std::string out = typed("prgmode = 41\ntlength = 48\n", "usercode", "2=FFFFFFFF\n\x04");
    EXPECT_THAT(out, HasSubstr("usercode0 is cancelled"));
    EXPECT_EQ(left(48, 4), "00000000");
}

}  // namespace
}  // namespace keld2::test
