#include "text/text.h"

#include <gtest/gtest.h>

namespace NS_KX {
namespace {

TEST(Text, AsciiEndsAtTheEighthBit) {
    EXPECT_TRUE(IsAscii(""));
    EXPECT_TRUE(IsAscii("NE=1\x7f"));
    EXPECT_FALSE(IsAscii("a\x80"));
}

TEST(Text, FindsTheFirstByteThatIsNotUtf8) {
    EXPECT_EQ(FindInvalidUtf8("abc"), 3U);
    EXPECT_EQ(FindInvalidUtf8("K\xc3\xb6ln"), 5U);
    EXPECT_EQ(FindInvalidUtf8("K\xc3\xb6ln\xff"), 5U);
    EXPECT_EQ(FindInvalidUtf8("ab\xc3"), 2U) << "cut in the middle of a character";
    EXPECT_EQ(FindInvalidUtf8("\xc0\x80"), 0U) << "overlong";
    EXPECT_EQ(FindInvalidUtf8("a\xed\xa0\x80"), 1U) << "a surrogate";
    EXPECT_EQ(FindInvalidUtf8(""), 0U);
}

TEST(Text, QuotesWithoutWhatSteersATerminal) {
    EXPECT_EQ(Quoted("a\x1b[2Jb"), "\"a\\x1b[2Jb\"");
    EXPECT_EQ(Quoted("K\xc3\xb6ln"), "\"K\xc3\xb6ln\"");
    EXPECT_EQ(Quoted("a\xff"), "\"a\\xff\"");
}

TEST(Text, CutsLongTextsUnlessTheyMustBeWhole) {
    EXPECT_EQ(Quoted("abcdef", 3), "\"abc...\"");
    EXPECT_EQ(QuotedWhole(std::string(1000, 'x')), "\"" + std::string(1000, 'x') + "\"");
}

TEST(Text, NumbersAreGroupedByThreeDigits) {
    EXPECT_EQ(Grouped(0), "0");
    EXPECT_EQ(Grouped(999), "999");
    EXPECT_EQ(Grouped(1000), "1,000");
    EXPECT_EQ(Grouped(123456), "123,456");
    EXPECT_EQ(Grouped(18'446'744'073'709'551'615U), "18,446,744,073,709,551,615");
}

TEST(Text, IsWrappedAtTheWidthOfALine) {
    EXPECT_EQ(Wrapped("  ", {}), "  ");
    EXPECT_EQ(Wrapped("  of: ", {"a", "b"}), "  of: a b");
    const std::string word(57, 'x');
    EXPECT_EQ(Wrapped("head ", {word, word, "y"}), "head " + word + " " + word + "\n     y");
    EXPECT_EQ(Wrapped("head:", {word, word + "x", "y"}), "head:" + word + "\n     " + word + "x y");
    EXPECT_EQ(Wrapped("", {std::string(200, 'x'), "y"}), std::string(200, 'x') + "\ny") << "a word stays whole";
}

}  // namespace
}  // namespace NS_KX
