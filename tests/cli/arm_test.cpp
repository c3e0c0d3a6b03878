// ARM devices from the command line.
#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

#include "cli/bench.h"
#include "host/files/files.h"
#include "host/files/imagefile.h"

namespace keld2::test {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

class ArmCommands : public Bench {
  protected:
    std::string image(std::size_t count) {
        const auto bytes = somebytes(count);
        return folder_.file("data.bin", std::string(bytes.begin(), bytes.end())).string();
    }
};

TEST_F(ArmCommands, EveryDeviceGoesTheWholeWay) {
    struct Case {
        const char* device;
        std::size_t bytes;
    };
    for (const Case& c : {Case{"arm-a-64k", 65536}, Case{"arm-a-256k-word", 262144},
                          Case{"arm-b-32k-serial", 32768}, Case{"arm-b-128k-file", 131072}}) {
        SCOPED_TRACE(c.device);
        device_ = c.device;
        std::filesystem::remove(chip());
        const std::string data = image(c.bytes);
        mustwork({"blank"});
        mustwork({"program", data});
        mustwork({"verify", data});
        mustwork({"compare", data});
        EXPECT_EQ(keld2({"blank"}).status, 1);
        const std::string out = file(std::string(c.device) + ".bin").string();
        mustwork({"read", out});
        EXPECT_EQ(host::readtext(out).substr(0, c.bytes), host::readtext(data));
        mustwork({"erase"});
        mustwork({"blank"});
        EXPECT_EQ(keld2({"verify", data}).status, 1);
        mustwork({"auto", data});
        mustwork({"verify", data});
    }
}

TEST_F(ArmCommands, AMebibyteGoesThroughSeveralBlocksAndBulks) {
    device_ = "arm-b-1m";
    const std::string data = image(1 << 20);
    mustwork({"program", data});
    const std::string out = file("out.bin").string();
    mustwork({"read", out});
    EXPECT_EQ(host::readtext(out).substr(0, 1 << 20), host::readtext(data));
}

TEST_F(ArmCommands, ConfigurationBytesGoInAndComeBack) {
    device_ = "arm-a-64k";
    std::vector<std::uint8_t> bytes{0xA5, 1, 2, 3, 4, 5, 6, 7, 8, 9, 0x3C};
    mustwork({"config", hex("config.hex", {{65536, bytes}})});
    const std::string out = file("out.bin").string();
    mustwork({"read", out});
    EXPECT_EQ(host::loadimage(out).segments.at(0).bytes.at(65536), 0xA5);
    EXPECT_EQ(host::loadimage(out).segments.at(0).bytes.at(65546), 0x3C);
    mustwork({"erase"});
    mustwork({"read", out, "--force"});
    EXPECT_EQ(host::loadimage(out).segments.at(0).bytes.at(65536), 0xFF);
}

TEST_F(ArmCommands, ASecuredChipShowsNothingUntilItIsErased) {
    device_ = "arm-a-256k-word";
    const std::string data = image(262144);
    mustwork({"program", data});
    mustwork({"secure"});
    EXPECT_EQ(keld2({"read", file("out.bin").string()}).status, 1);
    EXPECT_FALSE(std::filesystem::exists(file("out.bin")));
    EXPECT_THAT(keld2({"verify", data}).err, HasSubstr("Device Data:FFFFH"));
    mustwork({"erase"});
    mustwork({"blank"});
}

TEST_F(ArmCommands, FaultsEndInTheirResults) {
    struct Case {
        const char* fault;
        int status;
        const char* message;
    };
    const Case cases[]{
        {"phasefail=program:0x1234", 1, ">>Device Address:00001234H"},
        {"phasefail=erase:70", 1, "failed in erase at"},
        {"stuck=6:0:1", 1, ">>Device Address:00000006H"},
        {"weak=99", 0, "ended well"},  // this device verifies at nominal VCC alone
        {"transferfail=10+", 3, ">>Transfer timed out"},
        {"sendfail=2", 3, ">>Transfer timed out"},
        {"bulkfail=1", 3, ">>Transfer timed out"},
        {"modefail", 3, ">>Transfer timed out"},
        {"wrongid", 2, "Warning! Device Code Error!"},
    };
    device_ = "arm-a-64k";
    const std::string data = image(65536);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.fault);
        faults_ = {c.fault};
        const ProgramResult result = keld2({"auto", data, "--progress", "none"});
        EXPECT_EQ(result.status, c.status);
        EXPECT_THAT(result.err, HasSubstr(c.message));
    }
    device_ = "arm-a-256k-word";
    std::filesystem::remove(chip());
    faults_ = {"weak=99"};
    EXPECT_THAT(keld2({"auto", image(262144)}).err, HasSubstr(">>Device Address:00000031H"));
}

TEST_F(ArmCommands, InterruptInTheMiddleStopsAndKeepsWhatIsDone) {
    for (const char* device : {"arm-b-1m", "arm-a-256k-word"}) {
        SCOPED_TRACE(device);
        device_ = device;
        std::filesystem::remove(chip());
        const std::string data = image(device_ == "arm-b-1m" ? 1 << 20 : 262144);
        Program program(command({"program", data, "--progress", "none"}));
        ASSERT_TRUE(program.waitfor(">>Program ..."));
        program.signal(SIGINT);
        const ProgramResult result = program.finish();
        EXPECT_EQ(result.status, 2);
        EXPECT_THAT(result.err, HasSubstr(">>Stopped\n"));
        EXPECT_THAT(result.err, HasSubstr(": stopped in program at "));
        mustwork({"erase"});
        mustwork({"blank"});
    }
}

TEST_F(ArmCommands, AProgrammerThatNeverEndsCanBeLeft) {
    device_ = "arm-a-64k";
    faults_ = {"neverdone"};
    Program one(command({"erase"}));
    ASSERT_TRUE(one.waitfor(">>Erase ..."));
    one.signal(SIGINT);
    EXPECT_EQ(one.finish().status, 2);
    faults_.push_back("nostop");
    Program two(command({"erase"}));
    ASSERT_TRUE(two.waitfor(">>Erase ..."));
    two.signal(SIGINT);
    std::this_thread::sleep_for(std::chrono::milliseconds(300));  // two at once count as one
    two.signal(SIGINT);
    EXPECT_EQ(two.finish().status, 2);
}

TEST_F(ArmCommands, AlgoMakeWritesTheImageWhereARunFindsIt) {
    device_ = "arm-a-64k";
    const ProgramResult made =
        runprogram({"-d", device_, "algo", "make", "--folder", file("run").string()});
    EXPECT_EQ(made.status, 0) << made.err;
    const auto path = file("run") / "algo" / "flasha" / "arm-a-64k.bin";
    EXPECT_EQ(made.out, path.string() + "\n");
    EXPECT_THAT(host::readtext(path), HasSubstr("operation program program verify\n"));
    const auto again = runprogram({"-d", device_, "algo", "make", "-o", path.string()});
    EXPECT_EQ(again.status, 66);
    EXPECT_EQ(runprogram({"-d", "serial-2k", "algo", "make"}).status, 65);
}

}  // namespace
}  // namespace keld2::test
