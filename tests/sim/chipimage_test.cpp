// A chip's state outlives the programmer that wrote it, or is refused.
#include "sim/chipimage.h"

#include <gmock/gmock.h>

#include <array>

#include "common/madefolder.h"
#include "sim/faultof.h"
#include "sim/simbench.h"

namespace keld2::test {

namespace {

using testing::StartsWith;

class TwoSections final : public sim::Chip {
  public:
    std::vector<sim::StateSection> state() override { return {{"one", one}, {"two", two}}; }
    std::array<std::uint8_t, 4> one{1, 2, 3, 4};
    std::array<std::uint8_t, 2> two{10, 0};
};

// A programmer with a chip whose state is kept in a file.
struct KeepingBench {
    explicit KeepingBench(const std::filesystem::path& file)
        : bench(
              {.chip = std::make_unique<TwoSections>(), .image = sim::ImageFile{file, "chip-a"}}) {}

    SimBench bench;
    TwoSections& cells = dynamic_cast<TwoSections&>(bench.programmer.chip());
};

TEST(ChipImage, CarriesAChipFromProcessToProcess) {
    const MadeFolder folder;
    const auto file = folder / "chip.img";
    {
        KeepingBench b(file);
        EXPECT_FALSE(std::filesystem::exists(file));
        b.cells.one = {9, '\n', 0, 255};
        b.bench.d->powerdown();
        b.cells.two = {7, 7};  // after the last power-down: not written
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder / "."), {}), 1);
    KeepingBench b(file);
    EXPECT_EQ(b.cells.one, (std::array<std::uint8_t, 4>{9, '\n', 0, 255}));
    EXPECT_EQ(b.cells.two, (std::array<std::uint8_t, 2>{10, 0}));
    std::filesystem::remove(file);
    b.bench.d->powerdown();
    EXPECT_FALSE(std::filesystem::exists(file));  // nothing has changed
    b.cells.two[1] = 1;
    b.bench.d->powerdown();
    EXPECT_TRUE(std::filesystem::remove(file));
    b.bench.d->powerdown();
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST(ChipImage, TellsTheHostWhatCouldNotBeWritten) {
    const MadeFolder folder;
    KeepingBench b(folder / "missing" / "chip.img");
    EXPECT_NO_THROW(b.bench.d->powerdown());
    EXPECT_THROW(b.bench.programmer.save(), RunFault);
    std::filesystem::create_directory(folder / "missing");
    EXPECT_NO_THROW(b.bench.programmer.save());
}

TEST(ChipImage, RefusesAForeignOrDamagedFile) {
    const MadeFolder folder;
    const auto file = folder / "chip.img";
    TwoSections chip;
    sim::saveimage(file, "chip-a", chip.state());
    const std::string good = host::readtext(file);
    const std::size_t data = good.find("\ndata\n") + 6;
    struct Wrong {
        std::string content;
        const char* message;
    };
    const auto with = [&](std::size_t at, char c) {
        std::string text = good;
        text[at] = c;
        return text;
    };
    const Wrong table[] = {
        {"", "ends early, expected the line 'keld2 chip image 1'"},
        {"S00600004844521B\n", "has the line 'S00600004844521B', expected 'keld2 chip image 1'"},
        {with(17, '2'), "has the line 'keld2 chip image 2', expected 'keld2 chip image 1'"},
        {with(34, 'b'), "has the line 'sbction one 4 b63cfbcd', expected 'section one 4 CRC'"},
        {with(31, 'b'), "has the line 'device chip-b', expected 'device chip-a'"},
        {good.substr(0, 40), "ends early, expected the line 'section one 4 CRC'"},
        {good.substr(0, good.size() - 1), "has 5 bytes of data, expected 6"},
        {good + "x", "has 7 bytes of data, expected 6"},
        {with(data - 2, 'b'), "has the line 'datb', expected 'data'"},
        {with(data + 5, 'x'), "is damaged: the checksum of section 'two' is"},
    };
    for (const Wrong& wrong : table) {
        host::writetext(file, wrong.content);
        TwoSections fresh;
        fresh.one = {};
        EXPECT_THAT(faultof([&] { sim::loadimage(file, "chip-a", fresh.state()); }),
                    StartsWith("chip image " + file.string() + ": " + wrong.message));
        EXPECT_EQ(fresh.one, (std::array<std::uint8_t, 4>{})) << wrong.message;
    }
}

}  // namespace

}  // namespace keld2::test
