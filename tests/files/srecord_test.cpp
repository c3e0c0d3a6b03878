#include "host/files/srecord.h"

#include <gmock/gmock.h>

namespace keld2::host {
namespace {

using ::testing::ElementsAre;

Image read(const std::string& text) { return readsrecord(text, "a.s19"); }

TEST(SRecord, AllAddressLengthsTheHeaderAndTheEntryAreRead) {
    const Image image = read(
        "S00600004844521B\r\nS1050010AABB85\r\nS2060100001122C5\r\n"
        "S3070200000033447F\r\nS5030003F9\r\nS9031234B6\r\n");
    ASSERT_EQ(image.segments.size(), 3u);
    EXPECT_EQ(image.header, "HDR");
    EXPECT_EQ(image.segments[0].address, 0x10u);
    EXPECT_EQ(image.segments[1].address, 0x10000u);
    EXPECT_EQ(image.segments[2].address, 0x2000000u);
    EXPECT_THAT(image.segments[2].bytes, ElementsAre(0x33, 0x44));
    EXPECT_EQ(image.entry, 0x1234u);
}

struct WidthCase {
    std::uint32_t address;
    const char* data;  // type of the data records
    const char* last;  // type of the end record
};

TEST(SRecord, TheShortestAddressesThatReachAreWritten) {
    const WidthCase cases[] = {
        {0xFFF0, "S1", "S9"}, {0xFFF1, "S2", "S8"}, {0xFFFFF0, "S2", "S8"}, {0xFFFFF1, "S3", "S7"}};
    for (const WidthCase& c : cases) {
        SCOPED_TRACE(c.address);
        Image image;
        image.segments = {{c.address, std::vector<std::uint8_t>(16, 0xA5)}};
        const std::string text = writesrecord(image);
        EXPECT_NE(text.find(std::string("\n") + c.data), std::string::npos);
        EXPECT_NE(text.find(std::string("\n") + c.last), std::string::npos);
        EXPECT_EQ(read(text).segments[0].address, c.address);
        EXPECT_EQ(read(text).segments[0].bytes, image.segments[0].bytes);
    }
}

}  // namespace
}  // namespace keld2::host
