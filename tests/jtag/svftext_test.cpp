// The text helpers: what a field may look like, and what is a fault.
#include "jtag/svftext.h"

#include <gtest/gtest.h>

#include "platform/fault.h"

namespace keld2 {
namespace {

TEST(SvfText, TrimTakesBlanksAlone) {
    EXPECT_EQ(Trim("  \tA B\t  "), "\tA B\t");
    EXPECT_EQ(LTrim("  A "), "A ");
    EXPECT_EQ(Trim("   "), "");
    EXPECT_EQ(LTrim(""), "");
}

TEST(SvfText, ClearTab) {
    EXPECT_EQ(ClearTAB("\t\tAB \r"), "AB");
    EXPECT_EQ(ClearTAB(std::string(21, '\t') + "A"), "A");
    EXPECT_EQ(ClearTAB(std::string(22, '\t') + "A"), "\tA") << "21 characters at the most";
    EXPECT_EQ(ClearTAB("\xE4 "), "\xE4") << "codes above 127 are no blanks";
    EXPECT_THROW(ClearTAB(""), RunFault);
    EXPECT_THROW(ClearTAB(" \t\r"), RunFault);
    EXPECT_THROW(ClearTAB(std::string(40, ' ')), RunFault);
}

TEST(SvfText, Integers) {
    EXPECT_EQ(readint16(" 32767 "), 32767);
    EXPECT_EQ(readint16("-32768"), -32768);
    EXPECT_EQ(readint16("+7"), 7);
    EXPECT_EQ(readint32("2147483647"), 2147483647);
    for (const char* text : {"", " ", "32768", "-32769", "8.0", "8x", "0x8", "8 8", "\t8", "+-8",
                             "--8", "+ 8", "-", "+"})
        EXPECT_THROW(readint16(text), RunFault) << text;
    EXPECT_THROW(readint32("2147483648"), RunFault);
}

}  // namespace
}  // namespace keld2
