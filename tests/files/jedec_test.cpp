#include "host/files/jedec.h"

#include <gmock/gmock.h>

#include "common/refusal.h"

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

TEST(Jedec, WhatIsWrongIsSaidWithLineAndField) {
    const RefusedCase cases[] = {
        {"fuse checksum", "QF8*\nL0 11110000*\nC000E*\n",
         "a.jed:4: field C: fuse checksum is 000E, expected 000F"},
        {"checksum digits", "QF8*F0*\nC0F*\n",
         "a.jed:3: field C: \"0F\", expected four hexadecimal digits"},
        {"fuse behind the end", "QF8*\nL4 1111\n1*\n",
         "a.jed:4: field L: fuse 8 lies behind the last fuse 7"},
        {"fuse given twice", "QF8*F0*\nL0 11*\nL1 0*\n",
         "a.jed:4: field L: fuse 1 was already given"},
        {"state of a fuse", "QF8*F0*\nL0 12*\n",
         "a.jed:3: field L: fuse 1 has the state '2', expected 0 or 1"},
        {"fuse number", "QF8*F0*\nLx 1*\n",
         "a.jed:3: field L: \"x 1\", expected a decimal fuse number, a blank and fuse states"},
        {"no default", "QF8*\nL0 1111*\n",
         "a.jed: fuse 4 is given in no field L, and there is no default (field F)"},
        {"no count", "F0*\n", "a.jed: no field QF, the number of fuses"},
        {"count too late", "L0 1*\nQF8*\n",
         "a.jed:2: field L: stands before the number of fuses (QF)"},
        {"count no number", "QF8x*\n", "a.jed:2: field QF: \"8x\", expected a decimal number"},
        {"count of 0", "QF0*\n", "a.jed:2: field QF: 0 fuses, expected 1 to 16777216"},
        {"count twice", "QF8*QF8*\n", "a.jed:2: field QF: given twice"},
        {"default", "QF8*F2*\n", "a.jed:2: field F: \"2\", expected 0 or 1"},
        {"security", "QF8*F0*G*\n", "a.jed:2: field G: \"\", expected 0 or 1"},
        {"user code too short", "QF8*F0*\nUHFF*\n",
         "a.jed:3: field UH: user code of 8 bits, expected 32"},
        {"user code digit", "QF8*F0*\nUHFG*\n",
         "a.jed:3: field UH: 'G', expected a hexadecimal digit"},
        {"user code twice", "QF8*F0*\nUAABCD*\nUAABCD*\n", "a.jed:4: field UA: given twice"},
        {"electrical", "QF8*F0*E2*\n", "a.jed:2: field E: '2', expected 0 or 1"},
        {"unknown field", "QF8*F0*\n\n?8*\n",
         "a.jed:4: field begins with '?', expected a field name of a fuse map"},
        {"open field", "QF8*F0*\nN note", "a.jed:3: the last field does not end with '*'"},
    };
    for (const RefusedCase& c : cases)
        EXPECT_EQ(refusalof([&] { read(c.text); }), c.message) << c.what;
}

TEST(Jedec, TheTransmissionIsCheckedFirst) {
    const RefusedCase cases[] = {
        {"no STX", "QF8*F0*", "a.jed: no STX (character 2), which begins a fuse map"},
        {"no ETX", "\x02QF8*F0*", "a.jed: no ETX (character 3), which ends a fuse map"},
        {"sum", transmission("QF8*F0*", "1234"),
         "a.jed:2: transmission checksum is 1234, expected 043B"},
        {"no sum", transmission("QF8*F0*", ""),
         "a.jed:2: \"\" behind ETX, expected the transmission checksum, four hexadecimal digits "
         "(0000 for none), and nothing more"},
        {"text behind", transmission("QF8*F0*", "0000 QF8*"),
         "a.jed:2: \"0000 QF8*\" behind ETX, expected the transmission checksum, four hexadecimal "
         "digits (0000 for none), and nothing more"},
    };
    for (const RefusedCase& c : cases)
        EXPECT_EQ(refusalof([&] { readjedec(c.text, "a.jed"); }), c.message) << c.what;
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
    std::string changed = text;
    changed[changed.find("U0000") + 1] = '1';
    EXPECT_THAT(refusalof([&] { readjedec(changed, "a.jed"); }),
                ::testing::HasSubstr("transmission checksum"));
}

}  // namespace
}  // namespace keld2::host
