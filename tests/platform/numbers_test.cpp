#include "platform/numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/fault.h"

namespace keld2 {
namespace {

TEST(Numbers, RoundsToNearestTiesToEven) {
    EXPECT_EQ(roundint32(262.5), 262);
    EXPECT_EQ(roundint32(237.5), 238);
    EXPECT_EQ(roundint32(-1.5), -2);
    EXPECT_EQ(roundint32(2147483647.4), 2147483647);
    for (const double x : {2147483647.5, -2147483649.0, std::nan(""), double{INFINITY}})
        EXPECT_THROW(roundint32(x), RunFault) << x;
}

TEST(Numbers, RefusesWhatDoesNotFit) {
    EXPECT_EQ(checkedint32(-2147483648LL), std::numeric_limits<std::int32_t>::min());
    EXPECT_THROW(checkedint32(2147483648LL), RunFault);
    EXPECT_EQ(checkedbyte(255), 255);
    EXPECT_THROW(checkedbyte(256), RunFault);
    EXPECT_THROW(checkedbyte(-1), RunFault);
}

TEST(Numbers, WritesNumbersByDefault) {
    EXPECT_EQ(numbertext(5.25), u" 5.25");
    EXPECT_EQ(numbertext(5), u" 5");
    EXPECT_EQ(numbertext(0.95), u" 0.95");
    EXPECT_EQ(numbertext(100000), u" 100000");
    EXPECT_EQ(numbertext(-0.5), u"-0.5");
}

TEST(Numbers, WritesSecondsAddressesAndHexadecimal) {
    EXPECT_EQ(secondstext(0.424), u"0.42");
    EXPECT_EQ(secondstext(-3), u"0.00");
    EXPECT_EQ(hextext(0xBEEF), u"BEEF");
    EXPECT_EQ(hextext(0), u"0");
    EXPECT_EQ(hextext(-1), u"FFFFFFFF");
    EXPECT_EQ(sixdigits(42), u"000042");
    EXPECT_EQ(sixdigits(1234567), u"1234567");
}

TEST(Numbers, ConvertsTextsBothWays) {
    const std::string text = "a\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80";
    EXPECT_EQ(utf8(utf16(text)), text);
    EXPECT_EQ(utf16(text).size(), 5u);  // the last one takes two
}

TEST(Numbers, ReplacesIllFormedText) {
    for (const char* bad :
         {"\x80", "\xC3", "\xE4\xB8", "\xC0\x80", "\xED\xA0\x80", "\xF5\x80\x80\x80"})
        EXPECT_EQ(utf16(bad).front(), u'\xFFFD') << bad;
    EXPECT_EQ(utf8(std::u16string(1, char16_t{0xD800})), "\xEF\xBF\xBD");
    EXPECT_EQ(utf8(std::u16string{0xDC00, 0xD800}), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

}  // namespace
}  // namespace keld2
