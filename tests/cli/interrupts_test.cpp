// Runs that are interrupted, left or killed in the middle.
#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

#include "cli/bench.h"

namespace keld2::test {
namespace {

using std::chrono::milliseconds;
using ::testing::HasSubstr;
using ::testing::Not;

class Interrupts : public Bench {
  protected:
    std::string image(std::size_t count) const {
        const auto bytes = somebytes(count);
        return folder_.file("data.bin", std::string(bytes.begin(), bytes.end())).string();
    }
    // A run that is sent a signal when its log has this line.
    ProgramResult sent(int signal, const std::vector<std::string>& arguments,
                       const std::string& line) const {
        Program program(command(arguments));
        EXPECT_TRUE(program.waitfor(line));
        program.signal(signal);
        return program.finish();
    }
    // Two interrupts, so far apart.
    int interruptedtwice(const std::string& operation, const std::string& line,
                         milliseconds apart) const {
        Program program(command({operation}));
        EXPECT_TRUE(program.waitfor(line));
        program.signal(SIGINT);
        std::this_thread::sleep_for(apart);
        program.signal(SIGINT);
        return program.finish().status;
    }
};

// The signal has to arrive within the few milliseconds of the run: tried until it does.
TEST_F(Interrupts, OneStopsTheRun) {
    ProgramResult result;
    for (int i = 0; i < 50 && result.status != 2; ++i)
        result =
            sent(SIGINT, {"auto", image(2048), "--steps", "erase,program,verify"}, ">>Program ...");
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.err, HasSubstr("\n>>Stopped\n"));
    EXPECT_THAT(result.err, Not(HasSubstr(">>Verify ...")));
    EXPECT_THAT(result.err, ::testing::MatchesRegex(
                                "(.|\n)*keld2: serial-2k: stopped in program at [0-9]+ %, done: "
                                "erase\n"));
}

TEST_F(Interrupts, OneStopsADeviceThatTheProgrammerWorksByItself) {
    for (const auto& [device, bytes] :
         {std::pair{"arm-b-1m", 1 << 20}, std::pair{"arm-a-256k-word", 262144}}) {
        SCOPED_TRACE(device);
        device_ = device;
        std::filesystem::remove(chip());
        const std::string data = image(static_cast<std::size_t>(bytes));
        const ProgramResult result =
            sent(SIGINT, {"program", data, "--progress", "none"}, ">>Program ...");
        EXPECT_EQ(result.status, 2);
        EXPECT_THAT(result.err, HasSubstr(">>Stopped\n"));
        EXPECT_THAT(result.err, HasSubstr(": stopped in program at "));
        mustwork({"erase"});
        mustwork({"blank"});
    }
}

TEST_F(Interrupts, ASecondLeavesAtOnce) {
    faults_ = {"bulkhang"};
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(interruptedtwice("blank", ">>Blank Check ...", milliseconds(50)), 2);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

TEST_F(Interrupts, AProgrammerThatNeverEndsCanBeLeft) {
    device_ = "arm-a-64k";
    faults_ = {"neverdone"};
    EXPECT_EQ(sent(SIGINT, {"erase"}, ">>Erase ...").status, 2);
    faults_.push_back("nostop");
    EXPECT_EQ(interruptedtwice("erase", ">>Erase ...", milliseconds(300)), 2)
        << "two at once count as one";
}

// Whether this is a block of a run whose process has gone.
bool leftover(const std::filesystem::path& block) {
    const std::string name = block.filename();
    const std::string prefix = "keld2-run-";
    return name.starts_with(prefix) && ::kill(std::stoi(name.substr(prefix.size())), 0) != 0;
}

TEST_F(Interrupts, AKilledHostLeavesAChipAndNoBlocks) {
    const std::string data = image(2080);
    for (int i = 0; i < 5; ++i) {
        EXPECT_NE(sent(SIGKILL, {"auto", data, "--steps", "erase,program,verify"}, ">>Program ...")
                      .status,
                  0);
        mustwork({"read", file("back.bin").string(), "--force"});
    }
    mustwork({"auto", data, "--steps", "erase,program,verify"});
    for (const auto& entry : std::filesystem::directory_iterator("/dev/shm"))
        EXPECT_FALSE(leftover(entry.path())) << entry.path();
}

}  // namespace
}  // namespace keld2::test
