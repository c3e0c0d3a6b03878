#include "host/files/srecord.h"

#include <gmock/gmock.h>

#include "common/refusal.h"

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

TEST(SRecord, WhatIsWrongIsSaidWithItsLine) {
    const RefusedCase cases[] = {
        {"checksum", "S1050010AABB86\n", "a.s19:1: checksum is 86, expected 85"},
        {"odd digits", "S1050010AABB8\n",
         "a.s19:1: record has 11 hexadecimal digits, expected an even number"},
        {"no digit", "S105001zAABB85\n", "a.s19:1: 'z' in column 8, expected a hexadecimal digit"},
        {"no S", ":00000001FF\n", "a.s19:1: ':' begins the record, expected 'S'"},
        {"reserved type", "S4030000FC\n", "a.s19:1: record type S4, expected S0 to S3 or S5 to S9"},
        {"type missing", "S\n", "a.s19:1: record type S , expected S0 to S3 or S5 to S9"},
        {"short", "S103\n", "a.s19:1: record has 1 byte, expected at least 4"},
        {"cut", "S1060010AABB85\n",
         "a.s19:1: record holds 5 bytes behind its length byte, which says 6"},
        {"data in the end", "S9040000FFFC\n",
         "a.s19:1: record of type S9 holds 1 data byte, expected 0"},
        {"count", "S1050010AABB85\nS5030002FA\n",
         "a.s19:2: count record says 2 data records, the file has 1 before it"},
        {"no end", "S1050010AABB85\n",
         "a.s19: the file ends without an end record (S7, S8, S9) or a count (S5, S6)"},
        {"data behind the count", "S1050010AABB85\nS5030001FB\nS1050012AABB83\n",
         "a.s19: the file ends without an end record (S7, S8, S9) or a count (S5, S6)"},
        {"behind the end", "S1050010AABB85\nS9030000FC\nS1050012AABB83\n",
         "a.s19:3: text behind the end record"},
        {"overlap", "S1050010AABB85\nS1050011AABB84\nS9030000FC\n",
         "a.s19:2: address 0011 was already given in line 1"},
    };
    for (const RefusedCase& c : cases)
        EXPECT_EQ(refusalof([&] { read(c.text); }), c.message) << c.what;
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
