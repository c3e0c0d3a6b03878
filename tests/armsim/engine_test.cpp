// The simulated programmer's own work on ARM devices, frame by frame.
#include "sim/armengine.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "sim/armflash.h"

namespace keld2::sim {
namespace {

using ::testing::ElementsAre;
using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t done = 100;
constexpr std::uint8_t failed = 0xFA;
constexpr std::uint8_t stopped = 0x1E;

// A chip of 1 KiB with sectors of 256 bytes, worked on in blocks of 512.
class ArmEngineTest : public ::testing::Test {
  protected:
    void make(const std::string& more = "", ArmFaults armfaults = {}) {
        ChipSpec spec{.device = "flash", .kind = "arm", .values = {}};
        spec.values = {{"bytes", std::int64_t{1024}},
                       {"sector", std::int64_t{256}},
                       {"maker", std::int64_t{0x1F}},
                       {"code", std::vector<std::int64_t>{0xAB, 0x0C}}};
        if (serial) spec.values["serial"] = std::vector<std::int64_t>{1, 2, 3, 4, 5, 6, 7, 8, 9};
        SpecReader reader(spec);
        chip = std::make_unique<ArmFlash>(reader, faults);
        reader.finish();
        engine = std::make_unique<ArmEngine>(chip.get(), 7, armfaults);
        engine->start(ArmFamily::a);
        const std::string text =
            "keld2 simulated algorithm 1\nfamily A\nwords 1024 1\nram 512\n"
            "operation auto erase blank program verify config secure\n"
            "operation program program verify\noperation read read\noperation verify verify\n"
            "operation blank blank\noperation erase erase\noperation 9 config\n" +
            more;
        load({text.begin(), text.end()});
    }
    void load(const Bytes& image) {
        engine->frame(Bytes{0x33, 1, 0x80, 0, 0, 0, 0, 0});
        EXPECT_TRUE(engine->bulkwrite(image));
    }
    // The first record that ends an operation, and how many there were before.
    Bytes operate(std::uint8_t op, std::uint8_t block = 0, bool mark = false,
                  const Bytes& configuration = Bytes(11, 255)) {
        Bytes frame{0x34, static_cast<std::uint8_t>(op == 2 ? 2 : op + 1),
                    static_cast<std::uint8_t>(mark ? 0x80 : 0), block, 0};
        frame.insert(frame.end(), configuration.begin(), configuration.end());
        engine->frame(frame);
        return end();
    }
    Bytes record() {
        Bytes bytes(20);
        EXPECT_TRUE(engine->record(bytes));
        return bytes;
    }
    Bytes end() {
        phases.clear();
        for (records = 0; records < 1000; ++records) {
            const Bytes bytes = record();
            if (phases.empty() || phases.back() != bytes[2]) phases.push_back(bytes[2]);
            if (bytes[0] == done || bytes[1] == failed || bytes[1] == stopped) return bytes;
        }
        return {};
    }
    void feed(const Bytes& data) {
        engine->frame(Bytes{0x0A, 0, 0x80, 1});
        EXPECT_TRUE(engine->bulkwrite(data));
    }
    Bytes fetch(std::size_t count, std::uint8_t index = 0) {
        engine->frame(Bytes{0x0A, index, 0x40, 1, 0, 0, 0, 0});
        Bytes data(count);
        EXPECT_TRUE(engine->bulkread(data));
        return data;
    }

    bool serial = false;
    Faults faults;
    std::unique_ptr<ArmFlash> chip;
    std::unique_ptr<ArmEngine> engine;
    Bytes phases;
    int records = 0;
};

TEST_F(ArmEngineTest, ImageIsReadBackAndTheFirmwareTold) {
    make();
    load({5, 6, 7});
    engine->frame(Bytes{0x33, 1, 0x40, 0, 0, 0, 0, 0});
    Bytes back(4);
    EXPECT_TRUE(engine->bulkread(back));
    EXPECT_THAT(back, ElementsAre(5, 6, 7, 255));
    engine->frame(Bytes{0x34, 0x1A, 0, 0x10, 0});
    EXPECT_EQ(record()[0], done);
    EXPECT_EQ(record()[2], 7);
    EXPECT_EQ(operate(8)[1], failed);  // no image that it can run
}

TEST_F(ArmEngineTest, DeviceCodeComesWithItsCount) {
    make();
    engine->frame(Bytes{0x34, 0x1D, 0, 0});
    const Bytes bytes = record();
    EXPECT_EQ(Bytes(bytes.begin(), bytes.begin() + 6), (Bytes{done, 0, 1, 0x1F, 0xAB, 0x0C}));
}

TEST_F(ArmEngineTest, AutoGoesThroughItsPhases) {
    make("margin 5\n");
    feed(Bytes(512, 0x11));
    EXPECT_EQ(operate(0, 0)[0], done);
    EXPECT_THAT(phases, ElementsAre(0x1E, 0x28, 0x32, 0x3C));
    feed(Bytes(612, 0x22));  // more than the block holds
    EXPECT_EQ(operate(0, 1, true, {0xF0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10})[0], done);
    EXPECT_THAT(phases, ElementsAre(0x32, 0x3C, 0x46, 0x50));
    const std::span<const std::uint8_t> flash = chip->state()[0].bytes;
    EXPECT_EQ(flash[511], 0x11);
    EXPECT_EQ(flash[512], 0x22);
    EXPECT_EQ(flash[1023], 0x22);
    EXPECT_EQ(chip->configuration()[0], 0xF0);
    EXPECT_EQ(chip->configuration()[10], 10);
    EXPECT_TRUE(chip->secured());
    const Bytes verify = operate(3);  // shows nothing any more
    EXPECT_EQ(verify[1], failed);
    EXPECT_EQ(verify[7], 255);
    EXPECT_EQ(operate(8)[0], done);  // until it has been erased
    EXPECT_FALSE(chip->secured());
    EXPECT_EQ(chip->configuration()[0], 255);
    EXPECT_EQ(operate(2)[0], done);
}

TEST_F(ArmEngineTest, ProgrammingOnlyClearsBits) {
    make();
    feed(Bytes(512, 0xF0));
    EXPECT_EQ(operate(6, 0)[0], done);
    feed(Bytes(512, 0x0F));
    const Bytes bytes = operate(6, 0);
    EXPECT_EQ(bytes[1], failed);
    EXPECT_EQ(Bytes(bytes.begin() + 2, bytes.begin() + 11),
              (Bytes{0x3C, 0, 0, 0, 0, 0, 0, 0x0F, 0x0F}));
    const Bytes blankcheck = operate(4);
    EXPECT_EQ(blankcheck[1], failed);
    EXPECT_EQ(operate(8)[0], done);
    EXPECT_EQ(operate(4)[0], done);
}

TEST_F(ArmEngineTest, ReadFillsTheRamAndBringsConfigurationOrSerialNumber) {
    for (const bool with : {false, true}) {
        serial = with;
        make();
        for (int i = 512; i < 1024; ++i) chip->program(i, static_cast<std::uint8_t>(i));
        chip->programcell(0, 0x5A);
        const Bytes bytes = operate(2, 1, true);
        EXPECT_EQ(bytes[2], with ? 1 : 0x5A);
        EXPECT_EQ(bytes[10], with ? 9 : 255);
        const Bytes data = fetch(512);
        for (int i = 0; i < 512; ++i)
            ASSERT_EQ(data[static_cast<std::size_t>(i)], static_cast<std::uint8_t>(i));
    }
}

TEST_F(ArmEngineTest, FailuresCountInWords) {
    make();
    std::string text =
        "keld2 simulated algorithm 1\nfamily A\nwords 512 2\nram 512\noperation blank blank\n";
    load({text.begin(), text.end()});
    chip->program(0x302, 0x12);
    chip->program(0x303, 0x34);
    const Bytes bytes = operate(4);
    EXPECT_EQ(Bytes(bytes.begin() + 1, bytes.begin() + 9),
              (Bytes{failed, 0x28, 0x81, 0x01, 0, 0, 0x12, 0x34}));
}

TEST_F(ArmEngineTest, RangeBeyondTheDeviceIsLeftAlone) {
    make();
    feed(Bytes(512, 0));
    EXPECT_EQ(operate(6, 2, true)[0], done);
    EXPECT_EQ(chip->read(0, nominalvcc), 255);
}

TEST_F(ArmEngineTest, WrongFamilyBankAndOperationAreRefused) {
    make("bank 1\n");
    EXPECT_EQ(operate(4)[1], failed);  // the frame names bank 0
    make();
    EXPECT_EQ(operate(100)[1], failed);
    make("family B\n");
    EXPECT_EQ(operate(4)[1], failed);
    engine->powerdown();
    Bytes bytes(20);
    EXPECT_FALSE(engine->record(bytes));
}

TEST_F(ArmEngineTest, StopsInTheMiddleAndKeepsWhatIsDone) {
    make("time program 100000\n");  // 10 ms: 102 bytes
    feed(Bytes(512, 0));
    Bytes frame(16, 255);
    frame[0] = 0x34, frame[1] = 7, frame[2] = 0, frame[3] = 0, frame[4] = 0;
    engine->frame(frame);
    EXPECT_EQ(record()[0], 102 * 100 / 512);
    engine->frame(Bytes{0x34, 0x1E, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(record()[1], stopped);
    EXPECT_EQ(chip->read(101, nominalvcc), 0);
    EXPECT_EQ(chip->read(102, nominalvcc), 255);
}

TEST_F(ArmEngineTest, Faults) {
    make("", {.failphase = ArmPhase::program, .failaddress = 300});
    feed(Bytes(512, 0));
    const Bytes bytes = operate(6);
    EXPECT_EQ(bytes[1], failed);
    EXPECT_EQ(bytes[2], 0x32);
    EXPECT_EQ(bytes[3] | bytes[4] << 8, 300);
    EXPECT_EQ(chip->read(299, nominalvcc), 0);

    make("", {.neverdone = true});
    EXPECT_TRUE(operate(8).empty());

    make("time erase 1000000\n", {.nostop = true});
    engine->frame(Bytes{0x34, 9, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    engine->frame(Bytes{0x34, 0x1E, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(end()[0], done);

    faults.weak.push_back(40);
    make("margin 5\n");
    feed(Bytes(512, 0));
    const Bytes weak = operate(6);
    EXPECT_EQ(weak[1], failed);
    EXPECT_EQ(weak[3], 40);

    faults = {};
    faults.stuck.push_back({.address = 3, .bit = 0, .level = true});
    make();
    feed(Bytes(512, 0));
    EXPECT_EQ(operate(6)[7], 1);
}

}  // namespace
}  // namespace keld2::sim
