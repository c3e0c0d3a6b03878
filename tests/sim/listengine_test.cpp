// The shift codes do on every wiring what single register writes would do.
#include "sim/listengine.h"

#include <gtest/gtest.h>

#include <array>

#include "sim/simbench.h"

namespace keld2::test {

namespace {

// A shift register of 16 cells between TDI and TDO, which counts its edges and remembers TMS.
class ShiftChip final : public sim::Chip {
  public:
    ShiftChip(const sim::JtagLines& lines, bool fast) : lines_(lines), fast_(fast) {}

    void registerwritten(const sim::Socket& socket, std::uint8_t) override {
        const bool tck = level(socket, lines_.tck);
        if (tck && !tck_) clock(level(socket, lines_.tdi), level(socket, lines_.tms));
        tck_ = tck;
    }
    std::uint8_t registerread(const sim::Socket&, std::uint8_t reg, std::uint8_t idle) override {
        if (reg != lines_.tdo.reg) return idle;
        return static_cast<std::uint8_t>((idle & ~lines_.tdo.bit) | (tdo() ? lines_.tdo.bit : 0));
    }
    std::optional<std::uint8_t> clock8(const sim::Socket& socket, std::uint8_t tdi) override {
        if (!fast_) return {};
        std::uint8_t read = 0;
        for (int i = 0; i < 8; ++i) {
            if (tdo()) read = static_cast<std::uint8_t>(read | 1U << i);
            clock((tdi >> i & 1) != 0, level(socket, lines_.tms));
        }
        return read;
    }

    std::uint16_t cells = 0x1A5C;  // the lowest next to TDO
    int edges = 0;
    int tmshigh = 0;  // edges with TMS high

  private:
    static bool level(const sim::Socket& socket, const sim::Line& line) {
        return (socket.registers[line.reg] & line.bit) != 0;
    }
    bool tdo() const { return (cells & 1) != 0; }
    void clock(bool tdi, bool tms) {
        cells = static_cast<std::uint16_t>(cells >> 1 | (tdi ? 0x8000 : 0));
        ++edges;
        if (tms) ++tmshigh;
    }

    const sim::JtagLines lines_;
    bool fast_;
    bool tck_ = false;
};

// The parameter records as the start-ups send them: frame bytes 4 to 14.
struct Record {
    std::uint8_t family;
    std::array<std::uint8_t, sim::recordlength> bytes;
};
constexpr Record records[] = {
    {80, {0, 8, 16, 128, 2, 1, 0, 8, 8, 0, 0}},   {81, {4, 8, 4, 0, 16, 8, 16, 8, 8, 6, 16}},
    {82, {4, 8, 1, 0, 2, 16, 0, 8, 8, 10, 32}},   {85, {2, 8, 2, 4, 128, 1, 0, 8, 8, 6, 6}},
    {86, {4, 8, 64, 179, 32, 8, 0, 8, 8, 0, 0}},  {88, {4, 8, 32, 0, 128, 1, 0, 8, 8, 6, 16}},
    {90, {0, 8, 16, 162, 2, 1, 0, 8, 8, 0, 0}},   {91, {2, 8, 4, 0, 128, 1, 128, 8, 8, 2, 0}},
    {92, {4, 8, 32, 219, 128, 1, 0, 8, 8, 6, 0}}, {43, {6, 8, 4, 8, 64, 1, 0, 8, 8, 10, 0}},
    {43, {6, 8, 4, 8, 64, 1, 0, 8, 8, 4, 0}},     {42, {2, 8, 2, 4, 128, 1, 0, 8, 8, 6, 6}},
};

struct ShiftBench {
    ShiftBench(const Record& record, std::uint8_t mode, bool fast) {
        auto made = std::make_unique<ShiftChip>(*sim::jtaglines(record.family), fast);
        chip = made.get();
        board = std::make_unique<sim::Board>(std::move(made), false);
        engine = std::make_unique<sim::ListEngine>(*board);
        engine->setmode(mode);
        engine->setrecord(record.bytes);
        raiseotherlines(*sim::jtaglines(record.family));
    }
    // TMS and all lines that are not JTAG's, which a shift has to leave alone.
    void raiseotherlines(const sim::JtagLines& lines) {
        for (std::uint8_t reg = 0; reg < 12; ++reg) {
            int others = 255;
            for (const sim::Line& line : {lines.tck, lines.tdi})
                if (line.reg == reg) others &= ~line.bit;
            board->writeregister(reg, others);
        }
    }

    ShiftChip* chip;
    std::unique_ptr<sim::Board> board;
    std::unique_ptr<sim::ListEngine> engine;
};

struct Code {
    std::uint8_t mode;
    std::uint8_t code;
    std::uint8_t value;
    std::uint16_t cells;               // behind it
    std::optional<std::uint8_t> read;  // its read-back byte
    bool tdiafter;                     // level of TDI behind it
};
constexpr Code codes[] = {
    {42, 142, 0, 0x001A, {}, false},   {42, 143, 1, 0x001A, 0x5C, false},
    {42, 147, 1, 0x001A, 0x5C, false}, {42, 144, 0xB1, 0xB11A, {}, true},
    {42, 146, 0xB1, 0xB11A, {}, true}, {42, 145, 7, 0x1A5C, {}, false},
    {10, 143, 1, 0x001A, 0x3A, false}, {10, 147, 1, 0x001A, 0x3A, false},
    {10, 144, 0xB1, 0xB11A, {}, true}, {10, 146, 0xB0, 0x0D1A, {}, false},
};

TEST(ListEngine, ShiftsEightBitsOnEveryWiring) {
    for (const Record& record : records)
        for (const Code& code : codes)
            for (const bool fast : {false, true}) {
                SCOPED_TRACE(testing::Message() << "family " << +record.family << " code "
                                                << +code.code << " mode " << +code.mode);
                ShiftBench b(record, code.mode, fast);
                auto expected = b.board->socket().registers;
                const sim::Line tdi = sim::jtaglines(record.family)->tdi;
                if (code.tdiafter) expected[tdi.reg] |= tdi.bit;
                EXPECT_EQ(b.engine->run(code.code, code.value), code.read);
                EXPECT_EQ(b.chip->cells, code.cells);
                EXPECT_EQ(b.chip->edges, code.code == 145 ? 0 : 8);
                EXPECT_EQ(b.chip->tmshigh, b.chip->edges);
                EXPECT_EQ(b.board->socket().registers, expected);
            }
}

TEST(ListEngine, StartsFromAHighClockWithoutAnEdge) {
    for (const bool fast : {false, true}) {
        ShiftBench b(records[0], 42, fast);
        b.board->writeregister(0, b.board->socket().registers[0] | 16);
        EXPECT_EQ(b.chip->edges, 1);
        b.engine->run(142, 0);
        EXPECT_EQ(b.chip->edges, 8);
    }
}

TEST(ListEngine, GetsRecordAndModeFromFramesAndPinSetUps) {
    auto owned = std::make_unique<ShiftChip>(*sim::jtaglines(85), false);
    ShiftChip& chip = *owned;
    SimBench b({.chip = std::move(owned)});
    const auto listframe = [&](std::uint8_t mode, const Record& record) {
        std::vector<std::uint8_t> frame{13, mode, 0, 0};
        frame.insert(frame.end(), record.bytes.begin(), record.bytes.end());
        b.frame(frame);
    };
    // A byte shifted in, by way of a list and its read-back.
    const auto shifted = [&] {
        chip.cells = 0x1A5C;
        b.frame({10, 16, 64});
        b.d->qregwrite(1, 143);
        b.d->qrun();
        std::array<std::uint8_t, 2> target{};
        EXPECT_EQ(b.bulkread(target), BulkState::done);
        return target[0];
    };
    listframe(42, records[0]);
    EXPECT_EQ(shifted(), 0xFF);  // the pulses went to another wiring
    std::ranges::copy(records[3].bytes, &b.s.ubuf1[4]);
    b.d->drivercommit();
    EXPECT_EQ(shifted(), 0x5C);
    listframe(10, records[3]);
    EXPECT_EQ(shifted(), 0x3A);
}

}  // namespace

}  // namespace keld2::test
