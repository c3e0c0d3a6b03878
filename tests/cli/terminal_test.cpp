// What somebody at a terminal sees and is asked.
#include "cli/bench.h"

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

}  // namespace
}  // namespace keld2::test
