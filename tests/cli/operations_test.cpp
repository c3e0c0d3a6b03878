// What the commands do to a chip, from one process to the next.
#include <csignal>
#include <nlohmann/json.hpp>
#include <thread>

#include "cli/bench.h"
#include "host/files/files.h"
#include "host/files/imagefile.h"

namespace keld2::test {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

class Operations : public Bench {};

// Whether this is a block of a run whose process has gone.
bool leftover(const std::filesystem::path& block) {
    const std::string name = block.filename();
    const std::string prefix = "keld2-run-";
    if (!name.starts_with(prefix)) return false;
    return ::kill(std::stoi(name.substr(prefix.size())), 0) != 0;
}

TEST_F(Operations, AChipGoesTheWholeWay) {
    struct Case {
        const char* device;
        std::uint32_t program;  // bytes of program memory
    };
    for (const Case& c : {Case{"serial-2k", 2048}, Case{"serial-4k", 4096}}) {
        SCOPED_TRACE(c.device);
        device_ = c.device;
        std::filesystem::remove(chip());
        const std::string all =
            hex("all.hex", {{0, somebytes(c.program + 32)}, {c.program + 32, {0xFA, 0x3C}}});
        mustwork({"blank"});
        mustwork({"program", all});
        mustwork({"verify", all});
        mustwork({"config", all});
        EXPECT_EQ(keld2({"blank"}).status, 1);
        const std::string out = file(std::string(c.device) + ".srec").string();
        mustwork({"read", out});
        EXPECT_EQ(host::loadimage(out).segments.at(0).bytes,
                  host::loadimage(all).segments.at(0).bytes);
        mustwork({"erase"});
        mustwork({"blank"});
        EXPECT_EQ(keld2({"verify", all}).status, 1);
        mustwork({"auto", all});
        mustwork({"verify", all});
    }
}

TEST_F(Operations, ProgramAddsToWhatIsThere) {
    mustwork({"program", hex("a.hex", {{0, {0xF0}}})});
    mustwork({"verify", hex("a.hex", {{0, {0xF0}}})});
    const ProgramResult result = keld2({"program", hex("b.hex", {{0, {0x0F}}})});
    EXPECT_EQ(result.status, 1) << "no bit goes back to 1 without an erase";
    EXPECT_THAT(result.err, HasSubstr(">>Program failed\n"));
    EXPECT_THAT(result.err, EndsWith("keld2: serial-2k: failed in program at 98 %\n"));
}

TEST_F(Operations, CompareListsEveryDifference) {
    mustwork({"program", hex("a.hex", {{0, somebytes(2080)}})});
    auto other = somebytes(2080);
    std::string expected;
    for (const std::size_t at : {0, 31, 255, 1024, 2079}) {
        std::array<char, 64> line{};
        std::snprintf(line.data(), line.size(), ">> %06zX      %02X         %02X\n", at, other[at],
                      other[at] ^ 0x81u);
        expected += line.data();
        other[at] ^= 0x81;
    }
    const std::string file = hex("b.hex", {{0, other}});
    const ProgramResult plain = keld2({"compare", file});
    EXPECT_EQ(plain.status, 1);
    EXPECT_EQ(plain.out, expected);
    EXPECT_THAT(plain.err, EndsWith("keld2: serial-2k: 5 differences\n"));

    const auto json = nlohmann::json::parse(keld2({"compare", file, "--json"}).out);
    EXPECT_EQ(json["differences"].size(), 5u);
    EXPECT_EQ(json["differences"][1]["address"], "00001F");
    EXPECT_EQ(json["status"], 1);
    EXPECT_EQ(keld2({"compare", hex("a.hex", {{0, somebytes(2080)}})}).out, "");
}

TEST_F(Operations, AutoDoesItsStepsInOrderUntilOneFails) {
    const std::string data = hex("a.hex", {{0, {1, 2, 3}}});
    const ProgramResult well =
        keld2({"auto", data, "--steps", "program,verify", "--progress", "none"});
    EXPECT_EQ(well.status, 0);
    EXPECT_LT(well.err.find(">>Program OK"), well.err.find(">>Verify OK"));
    // the second blank check finds a programmed chip; without a terminal its question is answered
    // with Cancel
    const ProgramResult failed =
        keld2({"auto", data, "--steps", "erase,program,blank,verify", "--json"});
    EXPECT_EQ(failed.status, 1);
    const auto json = nlohmann::json::parse(failed.out);
    EXPECT_EQ(json["done"], 2);
    EXPECT_THAT(failed.err, HasSubstr("The chip is not blank. Go on?"));
    EXPECT_THAT(failed.err, HasSubstr("keld2: answered with cancel\n"));
    EXPECT_THAT(failed.err, Not(HasSubstr(">>Verify OK")));
    EXPECT_EQ(keld2({"auto", data, "--steps", "blank,verify", "--on-box", "ok"}).status, 0);
}

TEST_F(Operations, AutoNeedsNoFileForStepsThatUseNone) {
    mustwork({"program", hex("a.hex", {{0, {0}}})});
    mustwork({"auto", "--steps", "erase,blank"});
}

TEST_F(Operations, ReadNeverCoversAFileUnasked) {
    const auto out = folder_.file("out.bin", "mine").string();
    const ProgramResult result = keld2({"read", out});
    EXPECT_EQ(result.status, 66);
    EXPECT_EQ(result.err, "keld2: " + out + ": exists already; --force overwrites it\n");
    EXPECT_EQ(host::readtext(out), "mine");
    EXPECT_FALSE(std::filesystem::exists(chip())) << "the programmer is not touched";
    mustwork({"read", out, "--force"});
    EXPECT_EQ(host::readbytes(out).size(), 2048u + 32 + 2);
    faults_ = {"bulkfail"};
    EXPECT_EQ(keld2({"read", file("new.bin").string()}).status, 3);
    EXPECT_FALSE(std::filesystem::exists(file("new.bin"))) << "a failed read leaves no file";
}

struct FaultCase {
    const char* fault;
    const char* command;  // erase, blank or program
    int status;
    const char* message;  // last line on standard error
};

TEST_F(Operations, FaultsEndInTheirStatus) {
    const std::string data = hex("a.hex", {{0x10, {0xFF, 0x00}}});
    const FaultCase cases[] = {
        {"refuse", "erase", 1, "the programmer is not ready; nothing was done"},
        {"modefail", "erase", 1, "the programmer could not be set up; nothing was done"},
        {"wrongid", "erase", 1, "aborted before the first operation"},
        {"bulkfail", "blank", 3, "a transfer timed out in blank at 98 %"},
        {"stuck=0x10:3", "program", 1, "failed in program at 98 %"},
        {"nopower", "erase", 1, "aborted before the first operation"},
    };
    for (const FaultCase& c : cases) {
        faults_ = {c.fault};
        std::vector<std::string> arguments{c.command};
        if (arguments[0] == "program") arguments.push_back(data);
        const ProgramResult result = keld2(arguments);
        EXPECT_EQ(result.status, c.status) << c.fault;
        EXPECT_THAT(result.err, EndsWith(std::string("keld2: serial-2k: ") + c.message + "\n"))
            << c.fault;
    }
}

TEST_F(Operations, BoxesTakeTheAnswerThatIsGiven) {
    faults_ = {"wrongid"};
    const ProgramResult result = keld2({"erase", "--on-box", "ignore"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.err, HasSubstr("Warning! Device Code Error!\nMaker: "));
    EXPECT_THAT(result.err, HasSubstr("keld2: answered with ignore\n"));
    EXPECT_EQ(keld2({"erase", "--on-box", "retry"}).status, 1) << "not retried for ever";
}

// The signal has to arrive within the few milliseconds of the run: tried until it does.
TEST_F(Operations, AnInterruptStopsTheRun) {
    const std::string data = hex("a.hex", {{0, somebytes(2048)}});
    ProgramResult result;
    for (int i = 0; i < 50 && result.status != 2; ++i) {
        Program program(command({"auto", data, "--steps", "erase,program,verify"}));
        ASSERT_TRUE(program.waitfor(">>Program ..."));
        program.signal(SIGINT);
        result = program.finish();
    }
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.err, HasSubstr("\n>>Stopped\n"));
    EXPECT_THAT(result.err, Not(HasSubstr(">>Verify ...")));
    EXPECT_THAT(result.err, ::testing::MatchesRegex(
                                "(.|\n)*keld2: serial-2k: stopped in program at [0-9]+ %, done: "
                                "erase\n"));
}

TEST_F(Operations, ASecondInterruptLeavesAtOnce) {
    faults_ = {"bulkhang"};
    Program program(command({"blank"}));
    ASSERT_TRUE(program.waitfor(">>Blank Check ..."));
    const auto start = std::chrono::steady_clock::now();
    program.signal(SIGINT);
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    program.signal(SIGINT);
    EXPECT_EQ(program.finish().status, 2);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

TEST_F(Operations, AKilledHostLeavesAChipAndNoBlocks) {
    const std::string data = hex("a.hex", {{0, somebytes(2080)}});
    for (int i = 0; i < 5; ++i) {
        Program program(command({"auto", data, "--steps", "erase,program,verify"}));
        ASSERT_TRUE(program.waitfor(">>Program ..."));
        program.signal(SIGKILL);
        EXPECT_NE(program.finish().status, 0);
        mustwork({"read", file("back.bin").string(), "--force"});
    }
    mustwork({"auto", data, "--steps", "erase,program,verify"});
    for (const auto& entry : std::filesystem::directory_iterator("/dev/shm"))
        EXPECT_FALSE(leftover(entry.path())) << entry.path();
}

TEST_F(Operations, AnotherDevicesChipIsRefused) {
    mustwork({"erase"});
    device_ = "serial-4k";
    const ProgramResult result = keld2({"erase"});
    EXPECT_EQ(result.status, 65);
    EXPECT_THAT(result.err, HasSubstr("serial-2k"));
}

}  // namespace
}  // namespace keld2::test
