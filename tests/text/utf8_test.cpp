#include "text/utf8.h"

#include <gtest/gtest.h>

namespace NS_KX {
namespace {

TEST(Utf8, AsciiEndsAtTheEighthBit) {
    EXPECT_TRUE(IsAscii(""));
    EXPECT_TRUE(IsAscii("NE=1\x7f"));
    EXPECT_FALSE(IsAscii("a\x80"));
}

TEST(Utf8, FindsTheFirstByteThatIsInvalid) {
    EXPECT_EQ(FindInvalidUtf8("abc"), 3U);
    EXPECT_EQ(FindInvalidUtf8("K\xc3\xb6ln"), 5U);
    EXPECT_EQ(FindInvalidUtf8("K\xc3\xb6ln\xff"), 5U);
    EXPECT_EQ(FindInvalidUtf8("ab\xc3"), 2U) << "cut in the middle of a character";
    EXPECT_EQ(FindInvalidUtf8("\xc0\x80"), 0U) << "overlong";
    EXPECT_EQ(FindInvalidUtf8("a\xed\xa0\x80"), 1U) << "a surrogate";
    EXPECT_EQ(FindInvalidUtf8(""), 0U);
}

}  // namespace
}  // namespace NS_KX
