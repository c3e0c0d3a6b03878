// What is written where, on a terminal and off it.
#include "cli/bench.h"

namespace keld2::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

class Terminal : public Bench {};

TEST_F(Terminal, PipedProgressIsPlainLines) {
    const ProgramResult result = keld2({"program", hex("a.hex", {{0, {1}}})});
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr("\n 50 % Program ...\n"));
    EXPECT_THAT(result.err, Not(HasSubstr("\r")));
    EXPECT_THAT(keld2({"blank", "--progress", "none"}).err, Not(HasSubstr(" % ")));
}

TEST_F(Terminal, TheProgrammerIsNamedWheneverNobodyHasChosenIt) {
    const std::string named = "keld2: simulated programmer, ";
    EXPECT_THAT(keld2({"erase"}).err, StartsWith(named + "the chip is kept in " + chip().string()));
    EXPECT_EQ(keld2({"erase", "--quiet"}).err, "");
    EXPECT_EQ(runprogram({"-d", "serial-2k", "erase", "--quiet"}).err,
              named + "a fresh chip that is not kept (-p sim:image=FILE keeps it)\n");
}

TEST_F(Terminal, TheLogSpeaksTheLanguageThatIsAsked) {
    EXPECT_THAT(keld2({"erase", "--language", "it"}).err, HasSubstr(">>Cancellazione ...\n"));
}

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

}  // namespace
}  // namespace keld2::test
