// The serial chip obeys its port, through the components that a run uses.
#include "sim/serialchip.h"

#include <gtest/gtest.h>

#include <functional>
#include <numeric>
#include <string>

#include "mpu/serialport.h"
#include "sim/simbench.h"

namespace keld2::test {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr int writetime = 4000;    // µs
constexpr int erasetime = 50'000;  // µs

sim::ChipSpec smallchip() {
    return {.device = "serial-test",
            .kind = "serial",
            .values = {{"program", 64},
                       {"idarea", 16},
                       {"page", 16},
                       {"id", std::vector<std::int64_t>{90, 68, 1}},
                       {"gndpin", std::vector<std::int64_t>{20, 21}},
                       {"vccpin", 40},
                       {"vccmin", 4500},
                       {"vccmax", 5500},
                       {"vpppin", 31},
                       {"vppmin", 11'500},
                       {"vppmax", 12'500},
                       {"writetime", writetime},
                       {"configtime", writetime},
                       {"erasetime", erasetime}}};
}

Bytes counting(std::size_t n) {
    Bytes bytes(n);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{1});
    return bytes;
}

class SerialBench : public SimBench {
  public:
    explicit SerialBench(const sim::Faults& faults = {})
        : SimBench({.chip = sim::makechip(smallchip(), faults), .faults = faults}) {}

    void poweron() {
        d->setvcc(5000);
        d->setvpp(12'000, 0);
        for (const int pin : {20, 21}) d->setgndpin(static_cast<std::uint8_t>(pin), 1);
        d->setvccpin(40, 1);
        d->regwrite(66, 6);
        d->setvpppin(31, 1);
        d->regwrite(0, 5);
    }
    void start() {
        poweron();
        port.progenable();
    }
    Bytes read(std::uint8_t command, std::uint8_t high, std::uint8_t low, std::size_t n) {
        port.portselect();
        port.send({170, command, high, low});
        port.chipdrives();
        Bytes bytes(n);
        for (auto& b : bytes) b = port.readbyte();
        port.programmerdrives();
        port.portrelease();
        return bytes;
    }
    Bytes readid() { return read(56, 255, 0, 3); }
    Bytes program() { return read(48, 0, 0, 64); }
    void send(std::initializer_list<std::uint8_t> header, const Bytes& data = {}) {
        port.portselect();
        port.send(header);
        for (const auto b : data) port.sendbyte(b);
        port.portrelease();
    }
    // Both halves of a page write, with a pause for the chip.
    void writepage(std::uint8_t address, const Bytes& data, int pause = writetime,
                   std::uint8_t command = 80) {
        send({170, 81, 0, 0}, data);
        send({170, command, 0, address}, data);
        d->waitshort(pause);
    }
    void writeconfiguration(std::uint8_t command, std::uint8_t value, int pause = writetime) {
        send({170, command, 0, 0, value});
        d->waitshort(pause);
    }
    void powercycle() {
        d->powerdown();
        start();
    }

    SerialPort port{*d};
};

struct Obstacle {
    const char* what;
    std::function<void(SerialBench&)> make;  // in place of a good start
};

TEST(SerialChip, DoesNothingUnlessStartedWhole) {
    SerialBench good;
    good.start();
    ASSERT_EQ(good.readid(), (Bytes{90, 68, 1}));
    const Obstacle obstacles[] = {
        {"no enable", [](SerialBench& b) { b.poweron(); }},
        {"wrong enable operand",
         [](SerialBench& b) {
             b.poweron();
             b.send({170, 172, 84});
         }},
        {"enabled before VPP",
         [](SerialBench& b) {
             b.poweron();
             b.d->setvpppin(31, 0);
             b.port.progenable();
             b.d->setvpppin(31, 1);
         }},
        {"a ground pin missing", [](SerialBench& b) { b.start(), b.d->setgndpin(21, 0); }},
        {"VCC low", [](SerialBench& b) { b.start(), b.d->setvcc(4400); }},
        {"VCC high", [](SerialBench& b) { b.start(), b.d->setvcc(5600); }},
        {"VCC on another pin",
         [](SerialBench& b) { b.start(), b.d->setvccpin(40, 0), b.d->setvccpin(39, 1); }},
        {"VPP low", [](SerialBench& b) { b.start(), b.d->setvpp(11'000, 0); }},
        {"VPP gone and back",
         [](SerialBench& b) { b.start(), b.d->setvpppin(31, 0), b.d->setvpppin(31, 1); }},
        {"power gone and back", [](SerialBench& b) { b.start(), b.d->powerdown(), b.poweron(); }},
    };
    for (const Obstacle& obstacle : obstacles) {
        SerialBench b;
        obstacle.make(b);
        EXPECT_EQ(b.readid(), (Bytes{255, 255, 255})) << obstacle.what;
        b.writepage(0, Bytes(16, 0));
        b.powercycle();
        EXPECT_EQ(b.program(), Bytes(64, 255)) << obstacle.what;
    }
}

TEST(SerialChip, NeedsOpenPortAndDrivenData) {
    SerialBench b;
    b.start();
    const auto strobes = [&](std::int32_t high, std::int32_t low) {
        for (const int byte : {170, 56, 255, 0}) {
            b.d->regwrite(byte, 4);
            b.d->regwrite(high, 6);
            b.d->regwrite(low, 6);
        }
        b.d->regwrite(255, 5);
        const std::uint8_t first = b.port.readbyte();
        b.d->regwrite(0, 5);
        b.port.portrelease();
        return first;
    };
    EXPECT_EQ(strobes(32, 0), 255);    // bits 1 and 3 low
    EXPECT_EQ(strobes(106, 74), 255);  // deselected
    EXPECT_EQ(strobes(42, 10), 90);
    b.port.portselect();
    b.port.send({170, 56, 255, 0});
    EXPECT_EQ(b.d->regread(4), 0);  // the programmer still drives its last byte
}

TEST(SerialChip, WritesClearBitsAndWrapInThePage) {
    SerialBench b;
    b.start();
    b.writepage(16, Bytes(16, 0xF0));
    b.writepage(16, Bytes(16, 0x3C));
    b.writepage(36, counting(16));  // from the middle of a page
    Bytes expected(64, 255);
    std::fill_n(expected.begin() + 16, 16, 0x30);
    for (int i = 0; i < 16; ++i)
        expected[static_cast<std::size_t>(32 + (4 + i) % 16)] =
            Bytes(counting(16))[static_cast<std::size_t>(i)];
    EXPECT_EQ(b.program(), expected);
    b.powercycle();
    EXPECT_EQ(b.program(), expected);
    EXPECT_EQ(b.read(48, 0, 60, 6), (Bytes{255, 255, 255, 255, 255, 255}));  // beyond the end
}

TEST(SerialChip, WritesOnlyWhatComesTwiceAndHasItsTime) {
    const Bytes page = counting(16);
    const Obstacle obstacles[] = {
        {"no first transfer",
         [&](SerialBench& b) {
             b.send({170, 80, 0, 0}, page);
         }},
        {"no second transfer",
         [&](SerialBench& b) {
             b.send({170, 81, 0, 0}, page);
         }},
        {"transfers differ",
         [&](SerialBench& b) {
             b.send({170, 81, 0, 0}, Bytes(16, 7)), b.send({170, 80, 0, 0}, page);
         }},
        {"one load for two writes",
         [&](SerialBench& b) {
             b.writepage(0, Bytes(16, 255));
             b.send({170, 80, 0, 0}, page);
         }},
        {"sent while the chip writes",
         [&](SerialBench& b) { b.writepage(48, Bytes(16, 255), 0), b.writepage(0, page); }},
        {"power lost in the write",
         [&](SerialBench& b) { b.writepage(0, page, writetime / 2), b.powercycle(); }},
        {"VPP lost in the write",
         [&](SerialBench& b) {
             b.writepage(0, page, writetime / 2);
             b.d->setvpppin(31, 0);
         }},
    };
    for (const Obstacle& obstacle : obstacles) {
        SerialBench b;
        b.start();
        obstacle.make(b);
        b.d->waitshort(writetime);
        b.powercycle();
        EXPECT_EQ(b.program(), Bytes(64, 255)) << obstacle.what;
        b.writepage(0, page);
        EXPECT_EQ(b.read(48, 0, 0, 16), page) << obstacle.what;
    }
}

TEST(SerialChip, KeepsIdAreaAndConfigurationApart) {
    SerialBench b;
    b.start();
    b.writepage(0, counting(16), writetime, 82);
    b.writeconfiguration(225, 0x55);
    b.writeconfiguration(228, 0x0F);
    b.writeconfiguration(228, 0xFC);
    EXPECT_EQ(b.read(50, 255, 64, 16), counting(16));
    EXPECT_EQ(b.read(97, 255, 255, 1), Bytes{0x55});
    EXPECT_EQ(b.read(100, 255, 255, 1), Bytes{0x0C});
    EXPECT_EQ(b.program(), Bytes(64, 255));
}

// The steps of an erase, each of which can be left out or cut short.
struct EraseSteps {
    const char* what;
    std::uint8_t key = 250;
    int keypause = writetime;
    bool powercycle = true;
    bool command = true;
    int erasepause = erasetime;
    bool erases = false;
};

TEST(SerialChip, ErasesByKeyPowerCycleAndCommand) {
    const EraseSteps table[] = {
        {.what = "whole", .erases = true},
        {.what = "another key", .key = 251},
        {.what = "key without its time", .keypause = writetime / 2},
        {.what = "no power cycle", .powercycle = false},
        {.what = "no command", .command = false},
        {.what = "erase without its time", .erasepause = erasetime / 2},
    };
    for (const EraseSteps& steps : table) {
        SerialBench b;
        b.start();
        b.writepage(0, counting(16));
        b.writepage(0, counting(16), writetime, 82);
        b.writeconfiguration(228, 0);
        b.writeconfiguration(225, steps.key, steps.keypause);
        if (steps.powercycle) b.powercycle();
        if (steps.command) b.send({170, 138});
        b.d->waitshort(steps.erasepause);
        b.powercycle();
        EXPECT_EQ(b.read(48, 0, 0, 16), steps.erases ? Bytes(16, 255) : counting(16)) << steps.what;
        EXPECT_EQ(b.read(50, 255, 0, 16), steps.erases ? Bytes(16, 255) : counting(16))
            << steps.what;
        EXPECT_EQ(b.read(100, 255, 255, 1),
                  Bytes{steps.erases ? std::uint8_t{255} : std::uint8_t{0}})
            << steps.what;
        b.send({170, 138});  // the key is used up
        b.d->waitshort(erasetime);
        b.writepage(32, Bytes(16, 9));
        EXPECT_EQ(b.read(48, 0, 32, 16), Bytes(16, 9)) << steps.what;
    }
}

TEST(SerialChip, HasTheFaultsOfItsOwn) {
    sim::Faults faults;
    for (const char* text : {"stuck=3:0", "stuck=0x11:7:1", "wrongid"}) sim::addfault(faults, text);
    SerialBench b(faults);
    b.start();
    EXPECT_NE(b.readid()[1], 68);
    EXPECT_EQ(b.readid()[0], 90);
    Bytes expected(64, 255);
    expected[3] = 254;
    EXPECT_EQ(b.program(), expected);
    b.writepage(16, Bytes(16, 0));
    std::fill_n(expected.begin() + 16, 16, 0);
    expected[17] = 128;
    EXPECT_EQ(b.program(), expected);
}

TEST(SerialChip, IsMadeFromSoundParametersAlone) {
    struct Wrong {
        std::function<void(sim::ChipSpec&)> make;
        const char* message;
    };
    const Wrong table[] = {
        {[](auto& c) { c.kind = "cereal"; }, "kind 'cereal' is unknown, expected one of "},
        {[](auto& c) { c.values["colour"] = 3; }, "key 'colour' is unknown, expected one of"},
        {[](auto& c) { c.values.erase("page"); }, "key 'page' is missing"},
        {[](auto& c) { c.values["page"] = 0; }, "key 'page' is 0, expected 1 to 65536"},
        {[](auto& c) { c.values["page"] = "16"; }, "key 'page' is no integer"},
        {[](auto& c) { c.values["id"] = 90; }, "key 'id' has not three bytes"},
        {[](auto& c) { c.values["vccmax"] = 4000; }, "key 'vccmax' is 4000, expected 4500 to"},
        {[](auto& c) {
             c.values["gndpin"] = std::vector<std::int64_t>{20, 256};
         },
         "key 'gndpin' holds 256, expected 1 to 255"},
    };
    for (const Wrong& wrong : table) {
        sim::ChipSpec description = smallchip();
        wrong.make(description);
        try {
            sim::makechip(description);
            ADD_FAILURE() << wrong.message;
        } catch (const RunFault& fault) {
            const std::string text = fault.what();
            EXPECT_TRUE(text.starts_with("simulated chip of serial-test: ") &&
                        text.find(wrong.message) != std::string::npos)
                << text;
        }
    }
}

}  // namespace

}  // namespace keld2::test
