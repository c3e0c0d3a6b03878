#include "platform/posix/posixstrings.h"

#include <gtest/gtest.h>

#include "platform/fault.h"

namespace keld2 {
namespace {

TEST(PosixStrings, KeepsTextsBehindHandles) {
    PosixStrings strings;
    const StringHandle one = strings.allocate(u"one");
    const StringHandle withzero = strings.allocate(std::u16string_view(u"a\0b", 3));
    EXPECT_EQ(strings.text(one), u"one");
    EXPECT_EQ(strings.text(withzero).size(), 3u);
    EXPECT_EQ(strings.text(0), u"");
    EXPECT_EQ(strings.allocate(u""), 0u);
    EXPECT_EQ(strings.living(), 2u);
}

TEST(PosixStrings, ReportsHandlesThatAreNoTexts) {
    PosixStrings strings;
    const StringHandle gone = strings.allocate(u"gone");
    strings.free(gone);
    EXPECT_THROW(strings.free(gone), RunFault);
    EXPECT_THROW(strings.text(gone), RunFault);
    const StringHandle next = strings.allocate(u"next");  // takes the same place
    EXPECT_NE(next, gone);
    EXPECT_THROW(strings.text(gone), RunFault);
    EXPECT_THROW(strings.text(0xDEADBEEF), RunFault);
    EXPECT_EQ(strings.text(next), u"next");
    strings.free(0);
    EXPECT_EQ(strings.living(), 1u);
}

TEST(PosixStrings, AnOldHandleIsNeverRightAgain) {
    PosixStrings strings;
    const StringHandle old = strings.allocate(u"old");
    strings.free(old);
    for (int i = 0; i < 10000; ++i) {  // more than a place has generations
        const StringHandle handle = strings.allocate(u"new");
        ASSERT_NE(handle, old) << i;
        strings.free(handle);
    }
    EXPECT_THROW(strings.text(old), RunFault);
    EXPECT_EQ(strings.living(), 0u);
}

}  // namespace
}  // namespace keld2
