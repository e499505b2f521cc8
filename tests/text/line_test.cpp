#include "text/line.h"

#include <gtest/gtest.h>

namespace NS_KX {
namespace {

using namespace std::string_view_literals;

TEST(Line, IsTakenWithoutItsEnd) {
    std::string_view text = "a\r\n\nb\rc\n\r\nd\r";
    for (const std::string_view line : {"a", "", "b\rc", "", "d\r"}) {
        EXPECT_FALSE(text.empty());
        EXPECT_EQ(TakeLine(text), line);
    }
    EXPECT_EQ(text, "");
}

TEST(Line, TakenVerbatimKeepsItsCarriageReturn) {
    std::string_view text = "a\r\n\nb";
    for (const std::string_view line : {"a\r", "", "b"}) {
        EXPECT_FALSE(text.empty());
        EXPECT_EQ(TakeVerbatimLine(text), line);
    }
    EXPECT_EQ(text, "");
}

TEST(LineFlaw, IsEmptinessANulByteOrInvalidUtf8) {
    EXPECT_STREQ(FindFlaw("").value().reason, "the line is empty");
    EXPECT_EQ(FindFlaw("").value().column, 0U);
    EXPECT_STREQ(FindFlaw("NE=1\0\xff"sv).value().reason, "NUL byte");
    EXPECT_EQ(FindFlaw("NE=1\0\xff"sv).value().column, 5U);
    EXPECT_STREQ(FindFlaw("NE=1\xff").value().reason, "not UTF-8");
    EXPECT_EQ(FindFlaw("NE=1\xff").value().column, 5U);
    EXPECT_FALSE(FindFlaw("NE=1,CTP=K\xc3\xb6ln").has_value());
}

TEST(LineFlaw, BinaryLinesNeedNotBeUtf8) {
    EXPECT_FALSE(FindFlaw("NE=1\xff", true).has_value());
    EXPECT_STREQ(FindFlaw("NE=1\0"sv, true).value().reason, "NUL byte");
}

}  // namespace
}  // namespace NS_KX
