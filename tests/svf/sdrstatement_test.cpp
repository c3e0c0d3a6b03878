// SDR statements: what each layout reads, and what is a fault.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "jtag/sdrstatement.h"
#include "platform/fault.h"

namespace keld2 {
namespace {

std::string hex(const std::vector<std::uint8_t>& bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += text.empty() ? "" : " ";
        text += "0123456789ABCDEF"[byte >> 4];
        text += "0123456789ABCDEF"[byte & 15];
    }
    return text;
}

struct Reading {
    std::string statement;  // "drive TDI", "read EXPECTED/MASK", "replay TDI EXPECTED/MASK", ...
    std::int64_t counted;   // characters
    std::string rest;       // of the text behind the statement
};

Reading reading(const std::string& text, const SdrRules& rules = sdrrules80, std::int32_t fuses = 0,
                std::int32_t row = 0) {
    SvfReader reader({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    const auto first = static_cast<std::int64_t>(reader.readcounted().size());
    SdrStatement s;
    try {
        readsdr(reader, rules, fuses, row, s);
    } catch (const RunFault&) {
        return {.statement = "fault", .counted = 0, .rest = {}};
    }
    const std::string rowtext = !s.counted         ? " -"
                                : s.expect.empty() ? " empty"
                                                   : " " + hex(s.expect) + "/" + hex(s.mask);
    std::string told;
    switch (s.kind) {
        case SdrStatement::Kind::givenup:
            told = "given up";
            break;
        case SdrStatement::Kind::drive:
            told = "drive " + hex(s.tdi);
            break;
        case SdrStatement::Kind::read:
            told = "read" + rowtext;
            break;
        case SdrStatement::Kind::replay:
            told = "replay " + hex(s.tdi) + rowtext;
            break;
    }
    std::string rest;
    while (!reader.atend()) rest += std::string(reader.read()) + "|";
    return {told, reader.svfchars() - first, rest};
}

std::string told(const std::string& text, const SdrRules& rules = sdrrules80,
                 std::int32_t fuses = 0) {
    return reading(text, rules, fuses).statement;
}

struct Case {
    const char* text;
    const char* statement;
};

TEST(SdrStatement, OneLine) {
    const Case cases[] = {
        {"SDR 8 TDI (A5);", "drive A5"},
        {"  sdr8\tTDI (A5);", "drive A5"},
        {"SDR16 tdi (A55A);", "fault"},
        {"SDR 16 Tdi (A55a);  ", "drive 5A A5"},
        {"SDR 8x TDI (A5);", "fault"},
        {"SDR 8xTDI (A5);", "drive A5"},  // whatever stands ahead of the T is dropped
        {"SDR 8TDI (A5);", "fault"},
        {"SDR TDI (A5);", "fault"},
        {"SDR", "fault"},
        {"SDR 8 (A5);", "fault"},
        {"SDR 0 TDI (A5);", "fault"},
        {"SDR -8 TDI (A5);", "fault"},
        {"SDR 32768 TDI (A5);", "fault"},
        {"SDR +8 TDI (A5);", "drive A5"},
        {"SDR 8 TDO (A5);", "fault"},
        {"SDR 8 TDI A5);", "fault"},
        {"SDR 8 TDI (A5;", "fault"},
        {"SDR 8 TDI ();", "fault"},
        {"SDR 8 TDI (5);", "fault"},
        {"SDR 8 TDI (G5);", "fault"},
        {"SDR 8 TDI (XXA5);", "drive A5"},  // digits that are not used are not looked at
        {"SDR 4 TDI (A);", "drive 0A"},
        {"SDR 4 TDI (FA);", "drive FA"},
        {"SDR 12 TDI (ABC);", "drive BC 0A"},
        {"SDR 12 TDI (9ABC);", "drive BC 9A"},
        {"SDR 12 TDI (BC);", "fault"},
        {"SDR 15 TDI (ABC);", "drive BC 0A"},
        {"SDR 8 TDI (00) TDO (01);", "read 01/FF"},
        {"SDR 8 TDI (XX) TDO (01) MASK (7F);", "read 01/7F"},
        {"SDR 8 TDI (00) SMASK (FF) TDO (01) MASK (F0);", "read 01/F0"},
        {"SDR 8 TDI (00) MASK (F0) TDO (01);", "read 01/FF"},
        {"SDR 8 TDI (00) TDO (01) SMASK (0F);", "read 01/0F"},
        {"SDR 8 TDI (00) TDO (001) MASK (00F0);", "read 01/F0"},  // each by its own length
        {"SDR 8 TDI (00) TDO (1) MASK (FF);", "fault"},
        {"SDR 8 TDI (00) TDO (01) MASK (F);", "fault"},
        {"SDR 12 TDI (000) TDO (F12);", "read 12 0F/FF FF"},
        {"SDR 12 TDI (000) TDO (F12) MASK (734);", "read 12 0F/34 07"},
        {"SDR 15 TDI (0000) TDO (7F12) MASK (6034);", "read 12 7F/34 60"},
        {"SDR 15 TDI (000) TDO (F12);", "fault"},  // five bits and more take two digits
    };
    for (const Case& c : cases) EXPECT_EQ(told(c.text), c.statement) << c.text;
}

TEST(SdrStatement, TwoAndThreeLines) {
    const Case cases[] = {
        {"SDR 8 TDI (00)\n\tTDO (01);\nnext", "read 01/FF"},
        {"SDR 12 TDI (000)\nTDO (F01);", "read 01 0F/FF FF"},
        {"SDR 8 TDI (00)\nTDO (01)\n\tMASK (7F);", "read 01/7F"},
        {"SDR 8 TDI (00)\nTDO (01)\nSMASK (FF) MASK (7F);", "read 01/FF"},
        {"SDR 8 TDI (00)\nx (01);\nMASK (7F)", "read 01/7F"},
        {"SDR 8 TDI (00) TDO (02)\nMASK (01)\nMASK (7F);", "read 01/7F"},
        {"SDR 8 TDI (00)\ntdo (01);\nMASK (7F);", "read 01/7F"},
        {"SDR 8 TDI (00)\nTDO (1234) MASK (FF)\nMASK (7F);",
         "read 12/7F"},  // by the length of MASK
        {"SDR 8 TDI (00)\nTDO (01)\nx (7F);", "fault"},
        {"SDR 8 TDI (00)\nTDO (01)", "fault"},
        {"SDR 8 TDI (00)\n\nTDO (01);", "fault"},
        {"SDR 8 TDI (00)", "fault"},
        {"SDR 8 TDI 00)\nTDO (01);", "fault"},
        {"SDR 8 TDI (00)\nTDO 01;", "fault"},
        {"SDR 8 TDI (00)\nTDO (01)\nMASK (F);", "fault"},
        {"SDR 8 TDI (00)\nTDO (1)\nMASK (FF);", "fault"},
    };
    for (const Case& c : cases) EXPECT_EQ(told(c.text), c.statement) << c.text;
    EXPECT_EQ(reading("SDR 8 TDI (00)\n\tTDO (01);\nnext").counted, 0);
    EXPECT_EQ(reading("SDR 8 TDI (00)\nTDO (01)\nMASK (7F);\nnext").counted, 0);
    EXPECT_EQ(reading("SDR 8 TDI (00)\nTDO (01)\nMASK (7F);\nnext").rest, "next|");
}

TEST(SdrStatement, TdiOverSeveralLines) {
    const Case cases[] = {
        {"SDR 16 TDI (A5\n\t5A \n\t);", "fault"},  // nothing stands before the bracket
        {"SDR 16 TDI (A5\n\t5A);", "drive 5A A5"},
        {"SDR 24 TDI (  \n12\n\t34\t\n56);", "drive 56 34 12"},
        {"SDR 16 TDI (A5\n5A;", "fault"},
        {"SDR 16 TDI (A5\n\n5A);", "fault"},
        {"SDR 16 TDI (A5\n5A", "fault"},
        {"SDR 16 TDI A5\n5A);", "fault"},
        {"SDR 8 TDI (1\n2\n3\n4\n5\n67);", "drive 67"},
        {"SDR 8 TDI (1\n2\n3\n4\n5\n6\n78);", "given up"},
        {"SDR 8 TDI (XX\nYY)\nTDO (0\n1)\nMASK (7\nF);", "read 01/7F"},
        {"SDR 8 TDI (XX\n)\nTDO (0\n1);\nMASK (7\nF);", "read 01/FF"},
        {"SDR 12 TDI (X\nX)\nTDO (F\n01)\nMASK (7\nFF);", "read 01 0F/FF 07"},
        {"SDR 8 TDI (X\nX)\n01\n7F", "read 01/7F"},  // bare digits on lines of their own
        {"SDR 8 TDI (X\nX)\n01;", "read 01/FF"},
        {"SDR 8 TDI (X\nX)\nTDO (01);\n02);", "read 02/FF"},  // TDO never closes on its first line
        {"SDR 8 TDI (X\nX)\nTDO (0\n1)\nnone", "fault"},
        {"SDR 8 TDI (X\nX)\nTDO (0\n1)", "fault"},
        {"SDR 8 TDI (X\nX)", "fault"},
    };
    for (const Case& c : cases) EXPECT_EQ(told(c.text), c.statement) << c.text;
    EXPECT_EQ(reading("SDR 16 TDI (A5\n\t5A  );  \nnext").counted, 9) << "blanks count";
    EXPECT_EQ(reading("SDR 8 TDI (1\n2\n3\n4\n5\n6\n78);\nx").rest, "78);|x|");
    EXPECT_EQ(reading("SDR 8 TDI (X\nX)\nTDO (0\n1)\nMASK (7\nF);\nx").counted, 2 + 6 + 2 + 7 + 3);
}

TEST(SdrStatement, TdoBeginsOnAnUnfinishedFirstLine) {
    const Case cases[] = {
        // TDO as far as the line goes and on, MASK from the lines behind that.
        {"SDR 8 TDI (00) TDO (MASK (\n7F)\n0000003C);", "read 7F/3C"},
        {"SDR 8 TDI (00) SMASK (FF) TDO (MASK (\n7F)\n0000003C);", "read 7F/3C"},
        {"SDR 8 TDI (00) TDO (01) MASK (0\n7F)", "fault"},
        {"SDR 8 TDI (XX) TDO (0", "read -"},
        {"SDR 8 TDI (XX) TDO (01) x", "read -"},
        {"SDR 8 TDI (XX TDO 0", "fault"},
        {"SDR 8 TDI (00) MASK (FF) TDO (0\n1)", "fault"},
        {"SDR 8 TDI (00) SMASK (FF) TDO (0\n1) MASK (3\nC);", "fault"},
        {"SDR 8 TDI (00) SMASK (FF) TDO (0\n1) MASK (3C);", "read 01/3C"},
        {"SDR 12 TDI (000) SMASK (FFF) TDO (0\n71) MASK (3CC);", "read 71 00/CC 03"},
        {"SDR 8 TDI (00) SMASK (FF) TDO (000\n1) MASK (3C);", "read 01/3C"},
        {"SDR 8 TDI (00) SMASK (FF) TDO (0\n1);", "fault"},
        {"SDR 8 TDI (00) SMASK (FF) TDO (0\n1) MASK 3C);", "fault"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(told(c.text), c.statement) << c.text;
        EXPECT_EQ(told(c.text, sdrrules50), "fault") << "family 50: " << c.text;
    }
    for (const std::int32_t fuses : {25809, 25813}) {
        // The mask's text keeps what stands behind its bracket, and its length is that of TDO.
        EXPECT_EQ(told("SDR 8 TDI (00) SMASK (FF) TDO (00\n01) MASK (3C);", sdrrules80, fuses),
                  "read 01/FF");
        EXPECT_EQ(told("SDR 8 TDI (00) SMASK (FF) TDO (0\n1) MASK (3C);", sdrrules80, fuses),
                  "fault");
        EXPECT_EQ(told("SDR 12 TDI (00) SMASK (FF) TDO (0\n1) MASK (3C);", sdrrules80, fuses),
                  "read empty");
    }
}

TEST(SdrStatement, SomeWidthsAlwaysDrive) {
    struct Width {
        std::int32_t fuses;
        int bits;
    };
    for (const Width w : {Width{11529, 121}, Width{24481, 131}, Width{52009, 274},
                          Width{115869, 313}, Width{189969, 121}, Width{278721, 121}}) {
        const std::string digits(static_cast<std::size_t>(w.bits + 3) / 4, '0');
        const std::string text =
            "SDR " + std::to_string(w.bits) + " TDI (" + digits + ") TDO (" + digits + ");";
        EXPECT_EQ(told(text, sdrrules92, w.fuses).substr(0, 5), "drive") << w.fuses;
        EXPECT_EQ(told(text, sdrrules92, 12345).substr(0, 4), "read") << w.fuses;
        EXPECT_EQ(told(text, sdrrules80, w.fuses).substr(0, 4), "read") << w.fuses;
        EXPECT_EQ(told(text, sdrrules94, w.fuses).substr(0, 4), "read") << w.fuses;
    }
    EXPECT_EQ(told("SDR 18 TDI (12345) TDO (1234A);", sdrrules94), "drive 45 23 01");
    EXPECT_EQ(told("SDR 18 TDI (12345) TDO (1234A);", sdrrules80), "read 4A 23 01/FF FF FF");
}

TEST(SdrStatement, ReplaysShiftTheirTdiInEveryLayout) {
    const std::string replay = "replay 44 33 22 11";
    const std::string row = " 78 56 34 12 00/FF FF FF FF 03";
    const Case cases[] = {
        {"SDR 34 TDI (011223344) TDO (012345678) MASK (3FFFFFFFF);", "row"},
        {"SDR 34 TDI (011223344)\nTDO (012345678)\nMASK (3FFFFFFFF);", "row"},
        {"SDR 34 TDI (0112\n\t23344)\nTDO (0123\n45678)\nMASK (3\nFFFFFFFF);", "row"},
        {"SDR 34 TDI (0112\n23\n344\n)\nTDO (0123\n45678)\nMASK (3\nFFFFFFFF);", "row"},
        {"SDR 34 TDI (011223344) TDO (0", "-"},
        {"SDR 34 TDI (011223344) SMASK (F) TDO (0\n1) MASK (F);", "empty"},
    };
    for (const Case& c : cases) {
        const bool stored = std::string(c.statement) == "row";
        EXPECT_EQ(told(c.text, sdrrules94),
                  replay + (stored ? row : " " + std::string(c.statement)))
            << c.text;
    }
    EXPECT_EQ(told("SDR 34 TDI (000000001)\nTDO (012345678);", sdrrules94),
              "replay 01 00 00 00 78 56 34 12 00/FF FF FF FF FF");
    EXPECT_EQ(told("SDR 34 TDI (0000001)\nTDO (012345678);", sdrrules94), "fault")
        << "digits of TDI are used";
    EXPECT_EQ(told("SDR 40 TDI (00) TDO (0123456789);", sdrrules94), "fault")
        << "a one-line TDI is stored whatever becomes of it";
    EXPECT_EQ(told("SDR 40 TDI (00)\nTDO (0123456789);", sdrrules94).substr(0, 4), "read");
    EXPECT_EQ(told("SDR 16 TDI (00) SMASK (F) TDO (0\n001) MASK (F0FF);", sdrrules94),
              "read 01 00/FF F0");
}

TEST(SdrStatement, RowsHaveLimits) {
    const auto statement = [](int bytes, bool read) {
        const std::string digits(static_cast<std::size_t>(2 * bytes), '0');
        return "SDR " + std::to_string(8 * bytes) + " TDI (" + digits + ")" +
               (read ? " TDO (" + digits + ");" : ";");
    };
    struct Limit {
        const SdrRules& rules;
        int bytes;
        std::int32_t rows;
    };
    for (const Limit& limit : {Limit{sdrrules80, 2001, 5001}, Limit{sdrrules94, 2001, 5001},
                               Limit{sdrrules50, 4001, 501}}) {
        EXPECT_NE(told(statement(limit.bytes, true), limit.rules), "fault");
        EXPECT_EQ(told(statement(limit.bytes + 1, true), limit.rules), "fault");
        EXPECT_NE(told(statement(4095, false), limit.rules), "fault") << "a drive has no limit";
        EXPECT_NE(reading(statement(1, true), limit.rules, 0, limit.rows - 1).statement, "fault");
        EXPECT_EQ(reading(statement(1, true), limit.rules, 0, limit.rows).statement, "fault");
        EXPECT_NE(reading(statement(1, false), limit.rules, 0, limit.rows).statement, "fault")
            << "a drive stores no row";
    }
}

}  // namespace
}  // namespace keld2
