// A chip's state outlives the programmer that wrote it, or is refused.
#include "sim/chipimage.h"

#include <gmock/gmock.h>

#include <array>

#include "common/madefolder.h"
#include "sim/simbench.h"

namespace keld2::test {

namespace {

using testing::HasSubstr;

class TwoSections final : public sim::Chip {
  public:
    std::vector<sim::StateSection> state() override { return {{"one", one}, {"two", two}}; }
    std::array<std::uint8_t, 4> one{1, 2, 3, 4};
    std::array<std::uint8_t, 2> two{10, 0};
};

sim::SimSetting socketed(const MadeFolder& folder, std::unique_ptr<sim::Chip> chip,
                         const std::string& device = "chip-a") {
    return {.chip = std::move(chip), .image = sim::ImageFile{folder / "chip.img", device}};
}

TEST(ChipImage, CarriesAChipFromProcessToProcess) {
    const MadeFolder folder;
    {
        auto chip = std::make_unique<TwoSections>();
        TwoSections& cells = *chip;
        SimBench b(socketed(folder, std::move(chip)));
        EXPECT_FALSE(std::filesystem::exists(folder / "chip.img"));
        cells.one = {9, '\n', 0, 255};
        b.d->powerdown();
        cells.two = {7, 7};  // after the last power-down: not written
    }
    EXPECT_EQ(host::readtext(folder / "chip.img").substr(0, 34),
              "keld2 chip image 1\ndevice chip-a\ns");
    auto chip = std::make_unique<TwoSections>();
    const TwoSections& cells = *chip;
    SimBench b(socketed(folder, std::move(chip)));
    EXPECT_EQ(cells.one, (std::array<std::uint8_t, 4>{9, '\n', 0, 255}));
    EXPECT_EQ(cells.two, (std::array<std::uint8_t, 2>{10, 0}));
    const auto written = std::filesystem::last_write_time(folder / "chip.img");
    b.d->powerdown();  // nothing has changed
    EXPECT_EQ(std::filesystem::last_write_time(folder / "chip.img"), written);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder / "."), {}), 1);
}

TEST(ChipImage, TellsTheHostWhatCouldNotBeWritten) {
    const MadeFolder folder;
    SimBench b({.chip = std::make_unique<TwoSections>(),
                .image = sim::ImageFile{folder / "missing" / "chip.img", "chip-a"}});
    EXPECT_NO_THROW(b.d->powerdown());
    EXPECT_THROW(b.programmer.save(), RunFault);
    std::filesystem::create_directory(folder / "missing");
    EXPECT_NO_THROW(b.programmer.save());
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
        {with(33, 'b'), "expected 'section one 4 CRC'"},
        {with(31, 'b'), "has the line 'device chip-b', expected 'device chip-a'"},
        {good.substr(0, 40), "ends early, expected the line 'section one 4 CRC'"},
        {good.substr(0, good.size() - 1), "has 5 bytes of data, expected 6"},
        {good + "x", "has 7 bytes of data, expected 6"},
        {with(data + 5, 'x'), "is damaged: the checksum of section 'two' is"},
    };
    for (const Wrong& wrong : table) {
        host::writetext(file, wrong.content);
        TwoSections fresh;
        fresh.one = {};
        try {
            sim::loadimage(file, "chip-a", fresh.state());
            ADD_FAILURE() << wrong.message;
        } catch (const RunFault& fault) {
            EXPECT_THAT(fault.what(), HasSubstr("chip image " + file.string() + ": "));
            EXPECT_THAT(fault.what(), HasSubstr(wrong.message));
        }
        EXPECT_EQ(fresh.one, (std::array<std::uint8_t, 4>{})) << wrong.message;
    }
}

}  // namespace

}  // namespace keld2::test
