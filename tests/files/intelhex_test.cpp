#include "host/files/intelhex.h"

#include <gmock/gmock.h>

#include "common/refusal.h"

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

TEST(IntelHex, WhatIsWrongIsSaidWithItsLine) {
    const RefusedCase cases[] = {
        {"checksum", ":0100000055AB\n", "a.hex:1: checksum is AB, expected AA"},
        {"odd digits", ":0100000055A\n",
         "a.hex:1: record has 11 hexadecimal digits, expected an even number"},
        {"no digit", ":01000G0055AA\n", "a.hex:1: 'G' in column 7, expected a hexadecimal digit"},
        {"no colon", "\n0100000055AA\n", "a.hex:2: '0' begins the record, expected ':'"},
        {"short", ":010000\n", "a.hex:1: record has 3 bytes, expected at least 5"},
        {"cut", ":0200000055A9\n", "a.hex:1: record holds 1 data byte, its length byte says 2"},
        {"type", ":0100000655A4\n", "a.hex:1: record type 06, expected 00 to 05"},
        {"length of a type", ":0100000400FB\n",
         "a.hex:1: record of type 04 holds 1 data byte, expected 2"},
        {"no end", ":0100000055AA\n",
         "a.hex: the file ends without an end-of-file record (:00000001FF)"},
        {"behind the end", ":0100000055AA\n:00000001FF\n:0100010055A9\n",
         "a.hex:3: text behind the end-of-file record"},
        {"overlap", ":020000000102FB\n:0100010055A9\n:00000001FF\n",
         "a.hex:2: address 0001 was already given in line 1"},
        {"overlap, lower address later", ":0100010055A9\n:020000000102FB\n:00000001FF\n",
         "a.hex:2: address 0001 was already given in line 1"},
        {"beyond 32 bits", ":02000004FFFFFC\n:02FFFF000102FD\n:00000001FF\n",
         "a.hex:2: data from address FFFFFFFF on go beyond FFFFFFFF"},
        {"no data", end, "a.hex: the file holds no data"},
    };
    for (const RefusedCase& c : cases)
        EXPECT_EQ(refusalof([&] { read(c.text); }), c.message) << c.what;
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
