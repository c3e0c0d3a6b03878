#include "host/files/imagefile.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <fstream>

#include "common/refusal.h"
#include "host/files/files.h"
#include "host/files/outputfile.h"

namespace keld2::host {
namespace {

class FolderTest : public ::testing::Test {
  protected:
    FolderTest() {
        std::string name = ::testing::TempDir() + "keld2filesXXXXXX";
        folder_ = mkdtemp(name.data());
    }
    ~FolderTest() override { std::filesystem::remove_all(folder_); }

    std::filesystem::path file(const std::string& name) const { return folder_ / name; }
    std::filesystem::path put(const std::string& name, const std::string& text) const {
        std::ofstream(file(name), std::ios::binary) << text;
        return file(name);
    }

  private:
    std::filesystem::path folder_;
};

using ImageFile = FolderTest;
using OutputFile = FolderTest;

TEST_F(ImageFile, TheEndingTellsTheFormatUnlessOneIsNamed) {
    const std::string hex = ":0100000055AA\n:00000001FF\n";
    const std::string srec = "S104000055A6\nS9030000FC\n";
    for (const auto& [name, text] : {std::pair{"a.hex", hex},
                                     {"a.IHX", hex},
                                     {"a.s19", srec},
                                     {"a.srec", srec},
                                     {"a.mot", srec},
                                     {"a.bin", {"U"}}})
        EXPECT_EQ(loadimage(put(name, text)).segments.at(0).bytes.at(0), 0x55) << name;
    EXPECT_EQ(loadimage(put("b.txt", hex), formatnamed("hex")).segments.at(0).bytes.size(), 1u);
    EXPECT_EQ(loadimage(put("a.jed",
                            "\x02*QF2*L0 01*\x03"
                            "0000"))
                  .segments.at(0)
                  .bytes,
              (std::vector<std::uint8_t>{'0', '1'}));
}

TEST_F(ImageFile, AFileThatCannotBeUsedIsNamed) {
    EXPECT_EQ(refusalof([&] { loadimage(put("a.txt", "x")); }),
              file("a.txt").string() +
                  ": the ending \".txt\" names no format, expected one of .bin, .hex, .ihx, .s19, "
                  ".srec, .mot, .jed");
    EXPECT_EQ(refusalof([&] { loadimage(put("a.bin", "")); }),
              file("a.bin").string() + ": the file holds no data");
    EXPECT_EQ(refusalof([&] { loadimage(file("none.hex")); }, exitstatus::nofile),
              file("none.hex").string() + ": cannot be opened: No such file or directory");
}

TEST_F(ImageFile, RawFilesFillGaps) {
    Image image;
    image.segments = {{2, {'a'}}, {5, {'b'}}};
    EXPECT_EQ(imagetext(image, FileFormat::raw, '.'), "..a..b");
}

// Another program's reading and writing of the same formats.
TEST_F(ImageFile, OtherToolsReadWhatIsWrittenAndWriteWhatIsRead) {
    if (std::system("srec_cat --version > /dev/null 2>&1") != 0) GTEST_SKIP() << "no srec_cat";
    Image image;
    for (std::uint32_t i = 0; i < 3; ++i) {
        Segment segment{i * 0x1FFF0 + 7, {}};
        for (int k = 0; k < 1000; ++k)
            segment.bytes.push_back(static_cast<std::uint8_t>(k * 7 + static_cast<int>(i)));
        image.segments.push_back(segment);
    }
    const auto hex = put("a.hex", imagetext(image, FileFormat::intelhex));
    const auto srec = put("a.srec", imagetext(image, FileFormat::srecord));
    const std::string compare =
        "srec_cmp " + hex.string() + " -intel " + srec.string() + " -motorola";
    EXPECT_EQ(std::system(compare.c_str()), 0);
    for (const auto& [name, option] : {std::pair{"b.hex", "-intel"},
                                       {"c.hex", "-intel -address-length=3"},
                                       {"b.srec", "-motorola"}}) {
        const std::string convert =
            "srec_cat " + hex.string() + " -intel -o " + file(name).string() + " " + option;
        ASSERT_EQ(std::system(convert.c_str()), 0) << convert;
        const Image again = loadimage(file(name));
        ASSERT_EQ(again.segments.size(), image.segments.size()) << convert;
        for (std::size_t i = 0; i < image.segments.size(); ++i) {
            EXPECT_EQ(again.segments[i].address, image.segments[i].address) << convert;
            EXPECT_EQ(again.segments[i].bytes, image.segments[i].bytes) << convert;
        }
    }
}

TEST_F(OutputFile, AnOlderFileStaysUnlessItMayBeOverwritten) {
    const auto path = put("a.bin", "old");
    EXPECT_EQ(refusalof([&] { writeoutput(path, "new", false); }, exitstatus::nofile),
              path.string() + ": exists already; --force overwrites it");
    EXPECT_EQ(readtext(path), "old");
    writeoutput(path, "new", true);
    EXPECT_EQ(readtext(path), "new");
    writeoutput(file("b.bin"), "first", false);
    EXPECT_EQ(readtext(file("b.bin")), "first");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(path.parent_path()), {}), 2)
        << "nothing but the results stays";
}

TEST_F(OutputFile, AMissingFolderIsKnownBeforehand) {
    EXPECT_EQ(refusalof([&] { checkoutput(file("no/a.bin"), false); }, exitstatus::nofile),
              file("no/a.bin").string() + ": cannot be written: No such file or directory");
}

}  // namespace
}  // namespace keld2::host
