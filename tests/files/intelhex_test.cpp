#include "host/files/intelhex.h"

#include <gmock/gmock.h>

namespace keld2::host {
namespace {

using ::testing::ElementsAre;

constexpr auto end = ":00000001FF\n";

Image read(const std::string& text) { return readintelhex(text, "a.hex"); }

TEST(IntelHex, DataInAnyOrderIsJoinedAndGapsStay) {
    const Image image =
        read(":020002000304F5\r\n:020000000102FB\r\n\r\n:01001000aa45\n" + std::string(end));
    ASSERT_EQ(image.segments.size(), 2u);
    EXPECT_EQ(image.segments[0].address, 0u);
    EXPECT_THAT(image.segments[0].bytes, ElementsAre(1, 2, 3, 4));
    EXPECT_EQ(image.segments[1].address, 0x10u);
    EXPECT_THAT(image.segments[1].bytes, ElementsAre(0xAA));
    EXPECT_FALSE(image.entry.has_value());
}

struct AddressCase {
    std::string what;
    std::string text;
    std::uint32_t first;   // address of the first segment
    std::size_t segments;  // how many there are
};

TEST(IntelHex, AddressesFollowTheExtendedAddressRecords) {
    const AddressCase cases[] = {
        {"linear", ":020000040001F9\n:02FFFF00AABB9B\n", 0x1FFFF, 1},
        {"segment", ":020000021000EC\n:02000000AABB99\n", 0x10000, 1},
        {"segment that wraps", ":020000021000EC\n:02FFFF00AABB9B\n", 0x10000, 2},
        {"back to the first 64 KiB", ":020000040001F9\n:020000040000FA\n:02000000AABB99\n", 0, 1},
    };
    for (const AddressCase& c : cases) {
        SCOPED_TRACE(c.what);
        const Image image = read(c.text + end);
        EXPECT_EQ(image.segments.front().address, c.first);
        EXPECT_EQ(image.segments.size(), c.segments);
        EXPECT_EQ(image.size(), 2u);
    }
}

TEST(IntelHex, StartAddressesAreKept) {
    EXPECT_EQ(read(":0400000310003800B1\n:0100000055AA\n" + std::string(end)).entry, 0x13800u);
    EXPECT_EQ(read(":04000005000000CD2A\n:0100000055AA\n" + std::string(end)).entry, 0xCDu);
}

TEST(IntelHex, WhatIsWrittenIsReadBack) {
    Image image;
    image.segments = {{0xFFF8, std::vector<std::uint8_t>(40, 0x5A)}, {0x12345678, {1, 2, 3}}};
    image.entry = 0x1234;
    const std::string text = writeintelhex(image);
    EXPECT_THAT(text, ::testing::StartsWith(":08FFF800"));  // does not cross the 64 KiB
    const Image again = read(text);
    ASSERT_EQ(again.segments.size(), 2u);
    EXPECT_EQ(again.segments[0].bytes, image.segments[0].bytes);
    EXPECT_EQ(again.segments[1].address, 0x12345678u);
    EXPECT_EQ(again.entry, image.entry);
}

}  // namespace
}  // namespace keld2::host
