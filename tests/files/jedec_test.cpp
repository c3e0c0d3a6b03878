#include "host/files/jedec.h"

#include <gmock/gmock.h>

namespace keld2::host {
namespace {

// The fields between STX and ETX, with no transmission checksum.
std::string transmission(const std::string& fields, const std::string& sum = "0000") {
    return "\x02header*\n" + fields + "\x03" + sum + "\n";
}

FuseMap read(const std::string& fields) { return readjedec(transmission(fields), "a.jed"); }

TEST(Jedec, FieldsOfAMapAreRead) {
    const FuseMap map = read(
        "N made by hand*\r\nQP44*\nQV1*\nQF24*\nG1*\nF0*\nX1*\nV0001 11NN*\n"
        "L0 1111 0000*\nL0016\r\n0101\r\n0101*\nE01 1*\nUHA5000001*\nC00B9*\n");
    // 1111 0000 from fuse 0 is the byte 0F, 0101 0101 is AA: 00B9
    EXPECT_EQ(map.fuses, "111100000000000001010101");
    EXPECT_EQ(map.usercode, "10100101000000000000000000000001");
    EXPECT_EQ(map.secured, true);
    EXPECT_EQ(map.electrical, "011");
    EXPECT_EQ(map.pins, 44u);
    EXPECT_EQ(map.header, "header");
    EXPECT_THAT(map.notes, ::testing::ElementsAre("made by hand"));
}

TEST(Jedec, TheUserCodeHasThreeForms) {
    const std::string cells = "01000001010000100100001101000100";
    for (const char* field :
         {"UAABCD*", "UH41424344*", "UH 4142 4344*", "U0100 0001 0100 0010\n0100 0011 0100 0100*"})
        EXPECT_EQ(read("QF1*F0*" + std::string(field)).usercode, cells) << field;
}

TEST(Jedec, CellsHoldACharacterAFuseWithTheUserCodeBehind) {
    const Image image = cellsof(read("QF4*L0 1001*UH80000000*"));
    ASSERT_EQ(image.segments.size(), 1u);
    const auto& cells = image.segments[0].bytes;
    EXPECT_EQ(std::string(cells.begin(), cells.end()),
              "1001"
              "1" +
                  std::string(31, '0'));
}

TEST(Jedec, FuseZeroIsTheLowestBitOfTheChecksum) {
    EXPECT_EQ(fusechecksum("10000000"), 1);
    EXPECT_EQ(fusechecksum("00000001"), 128);
    EXPECT_EQ(fusechecksum("111111111"), 256);
    EXPECT_EQ(fusechecksum(std::string(8 * 300, '1')), (300 * 255) & 0xFFFF);
}

TEST(Jedec, WhatIsWrittenIsReadBack) {
    FuseMap map;
    map.header = "keld2";
    map.fuses = std::string(172, '1') + "0" + std::string(99, '1');
    map.usercode = "00000000000000000000000000000001";
    map.secured = false;
    map.pins = 84;
    map.notes = {"one", "two"};
    const std::string text = writejedec(map);
    EXPECT_EQ(text.find("L0 "), std::string::npos) << "rows in the default state are left out";
    const FuseMap again = readjedec(text, "again");
    EXPECT_EQ(again.fuses, map.fuses);
    EXPECT_EQ(again.usercode, map.usercode);
    EXPECT_EQ(again.secured, map.secured);
    EXPECT_EQ(again.pins, map.pins);
    EXPECT_EQ(again.notes, map.notes);
}

}  // namespace
}  // namespace keld2::host
