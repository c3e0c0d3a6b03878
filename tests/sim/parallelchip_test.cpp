// The parallel chips obey the bus, through the components that a run uses.
#include "sim/parallelchip.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "sim/simbench.h"

namespace keld2::test {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::int32_t base = 0x100000;            // the chip's select
constexpr std::int32_t first = 0x40;               // of the chip's cells
constexpr int programtime = 20, erasetime = 1000;  // µs

sim::ChipSpec smallchip(const std::string& kind) {
    sim::ChipSpec description{.device = "parallel-test",
                              .kind = kind,
                              .values = {{"start", first},
                                         {"size", 64},
                                         {"pins", 7},
                                         {"select", base},
                                         {"gndpin", 16},
                                         {"vccpin", 32},
                                         {"vccmin", 4500},
                                         {"vccmax", 5500},
                                         {"vpppin", 1},
                                         {"vppmin", 11'500},
                                         {"vppmax", 12'500},
                                         {"programtime", programtime},
                                         {"erasetime", erasetime}}};
    if (kind == "parallelpage") description.values.insert({{"page", 8}, {"loadtime", 100}});
    return description;
}

class ParallelBench : public SimBench {
  public:
    explicit ParallelBench(const std::string& kind, const sim::Faults& faults = {})
        : SimBench({.chip = sim::makechip(smallchip(kind), faults)}) {
        poweron();
    }

    void poweron() {
        d->setvcc(5000);
        d->setvpp(12'000, 0);
        d->setgndpin(16, 1);
        d->setvccpin(32, 1);
        d->setvpppin(1, 1);
        d->regwrite(0, 6);
        d->regwrite(16, 6);
        d->busconfig(0, 0, 1);
        d->buswrite(0x1FFFFF, 255, 255);
    }
    void powercycle() {
        d->powerdown();
        poweron();
    }
    void write(std::int32_t address, std::uint8_t data) {
        d->buswrite(base | address, data, 252);
        d->buswrite(base | address, 0x99, 253);  // taken at the strobe's end, as it stood then
    }
    std::uint8_t sample(std::int32_t address) {
        d->busconfig(0, 255, 1);
        d->buswrite(base | address, 0, 249);
        const std::uint8_t b = d->regread(0);
        d->buswrite(base | address, 0, 253);
        d->busconfig(0, 0, 1);
        return b;
    }
    Bytes read(std::int32_t address, int n) {
        write(0, 0);
        Bytes bytes;
        for (int i = 0; i < n; ++i) bytes.push_back(sample(address + i));
        return bytes;
    }
    void erase() {
        write(0, 32);
        write(0, 32);
    }
    void programbyte(std::int32_t address, std::uint8_t data, int pause = programtime) {
        write(address, 64);
        write(address, data);
        d->waitshort(pause);
        write(address, 192);
    }
    void programpage(std::int32_t address, const Bytes& data, int pause = programtime) {
        write(address, 64);
        for (std::size_t i = 0; i < data.size(); ++i)
            write(address + static_cast<std::int32_t>(i), data[i]);
        d->waitshort(pause);
    }
};

struct Step {
    const char* what;
    std::function<void(ParallelBench&)> make;
};

TEST(ParallelChip, ProgramsClearingBitsAndErasesWhole) {
    ParallelBench b("parallelbyte");
    b.programbyte(first, 0xF0);
    b.programbyte(first, 0x3C);
    b.programbyte(first + 63, 1);
    b.programbyte(first - 1, 0);  // no cell there
    EXPECT_EQ(b.read(first - 1, 2), (Bytes{255, 0x30}));
    b.powercycle();
    EXPECT_EQ(b.sample(first + 63), 1);  // reads without a command
    b.erase();
    EXPECT_EQ(b.sample(first), 0);  // busy, wherever one looks
    b.d->waitshort(erasetime);
    EXPECT_EQ(b.sample(first), 0x80);  // ready
    EXPECT_EQ(b.read(first, 64), Bytes(64, 255));
}

TEST(ParallelChip, TakesNothingUnlessAllIsAsItHasToBe) {
    const auto byte = [](ParallelBench& b) { b.programbyte(first, 0); };
    const Step table[] = {
        {"no VPP", [&](ParallelBench& b) { b.d->setvpppin(1, 0), byte(b); }},
        {"VPP low", [&](ParallelBench& b) { b.d->setvpp(5000, 0), byte(b); }},
        {"VPP lost in the pulse",
         [&](ParallelBench& b) {
             b.write(first, 64);
             b.write(first, 0);
             b.d->setvpppin(1, 0);
             b.d->waitshort(programtime);
         }},
        {"no VCC", [&](ParallelBench& b) { b.d->setvccpin(32, 0), byte(b); }},
        {"in reset", [&](ParallelBench& b) { b.d->regwrite(0, 6), byte(b); }},
        {"pulse cut short", [](ParallelBench& b) { b.programbyte(first, 0, programtime / 2); }},
        {"no program command", [](ParallelBench& b) { b.write(first, 0); }},
        {"reset command in the pulse",
         [](ParallelBench& b) {
             b.write(first, 64);
             b.write(first, 0);
             b.write(first, 255);
             b.d->waitshort(programtime);
         }},
        {"not selected",
         [](ParallelBench& b) {
             for (const std::uint8_t data : Bytes{64, 0}) {
                 b.d->buswrite(first, data, 252);
                 b.d->buswrite(first, data, 253);
             }
             b.d->waitshort(programtime);
         }},
        {"not enabled",
         [](ParallelBench& b) {
             for (const std::uint8_t data : Bytes{64, 0}) {
                 b.d->buswrite(base | first, data, 254);
                 b.d->buswrite(base | first, data, 255);
             }
             b.d->waitshort(programtime);
         }},
        {"data lines not driven",
         [&](ParallelBench& b) { b.d->busconfig(0, 255, 1), byte(b), b.d->busconfig(0, 0, 1); }},
    };
    for (const Step& step : table) {
        ParallelBench b("parallelbyte");
        step.make(b);
        b.powercycle();
        EXPECT_EQ(b.read(first, 1), Bytes{255}) << step.what;
        byte(b);
        EXPECT_EQ(b.read(first, 1), Bytes{0}) << step.what;
    }
}

TEST(ParallelChip, ErasesByBothCommandsVppAndTime) {
    struct EraseCase {
        const char* what;
        std::function<void(ParallelBench&)> make;
        std::uint8_t status;  // behind it
        bool erases = false;
    };
    const auto cycles = [](std::initializer_list<std::uint8_t> codes) {
        return [codes = Bytes(codes)](ParallelBench& b) {
            for (const std::uint8_t code : codes) b.write(0, code);
            b.d->waitshort(erasetime);
            b.write(0, 192);
        };
    };
    const EraseCase table[] = {
        {"whole", cycles({32, 32}), 0x80, true},
        {"one command", cycles({32}), 0x80},
        {"another between", cycles({32, 0, 32}), 0x80},
        {"no VPP",
         [&](auto& b) {
             b.d->setvpppin(1, 0), cycles({32, 32})(b);
         },
         0x20},
        {"too soon", [](auto& b) { b.erase(), b.d->waitshort(erasetime / 2); }, 0},
    };
    for (const std::string kind : {"parallelbyte", "parallelpage"})
        for (const EraseCase& row : table) {
            ParallelBench b(kind);
            b.programpage(first, kind == "parallelbyte" ? Bytes{7} : Bytes(8, 7));
            row.make(b);
            EXPECT_EQ(b.sample(0x7F), row.status) << kind << " " << row.what;
            b.powercycle();
            EXPECT_EQ(b.read(first, 1), row.erases ? Bytes{255} : Bytes{7}) << kind << row.what;
        }
}

TEST(ParallelChip, HearsOnlyAResetBehindAnError) {
    ParallelBench b("parallelpage");
    b.d->setvpppin(1, 0);
    b.erase();
    b.d->setvpppin(1, 1);
    for (const std::uint8_t code : Bytes{0, 192, 64}) b.write(0, code);
    EXPECT_EQ(b.sample(first), 0x20);
    b.write(0, 255);
    EXPECT_EQ(b.sample(first), 255);
    b.programpage(first, Bytes(8, 1));
    EXPECT_EQ(b.read(first, 8), Bytes(8, 1));
}

TEST(PageChip, LoadsAPageAndWritesItAtItsEndOrByTime) {
    ParallelBench b("parallelpage");
    b.programpage(first + 4, {1, 2, 3, 4, 5, 6, 7, 8});  // runs on at the page's beginning
    EXPECT_EQ(b.read(first, 9), (Bytes{5, 6, 7, 8, 1, 2, 3, 4, 255}));
    b.programpage(first + 8, {64, 32}, 0);  // data, though they look like commands
    b.d->waitshort(100 + programtime / 2);
    EXPECT_EQ(b.sample(first), 0);
    b.programpage(first + 16, Bytes(8, 0), 0);  // while it writes
    b.d->waitshort(100 + programtime);
    EXPECT_EQ(b.read(first + 8, 9), (Bytes{64, 32, 255, 255, 255, 255, 255, 255, 255}));
    b.programpage(first + 24, Bytes(8, 0), programtime / 2);
    b.powercycle();
    EXPECT_EQ(b.read(first + 24, 8), Bytes(8, 255));
}

TEST(ParallelChip, IsReadBlockwiseByTheProgrammer) {
    sim::Faults faults;
    sim::addfault(faults, "stuck=5:1");
    ParallelBench b("parallelbyte", faults);
    b.programbyte(first, 0x21);
    b.write(0, 0);
    b.d->busconfig(0, 255, 1);
    const std::vector<std::uint8_t> frame{11, 9, first, 0, 16, 64, 0, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(b.usb->usbcomwrite(frame), 0);
    Bytes target(65, 7);
    ASSERT_EQ(b.bulkread(target), BulkState::done);
    Bytes expected(65, 255);
    expected[0] = 0x21;
    expected[5] = 253;
    expected[64] = 0;
    EXPECT_EQ(target, expected);
}

}  // namespace

}  // namespace keld2::test
