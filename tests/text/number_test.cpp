#include "text/number.h"

#include <gtest/gtest.h>

namespace NS_KX {
namespace {

TEST(Number, IsDecimalDigitsUpToTheLargestInt) {
    EXPECT_EQ(ReadNumber("0"), 0);
    EXPECT_EQ(ReadNumber("007"), 7);
    EXPECT_EQ(ReadNumber("2147483647"), 2147483647);
}

TEST(Number, NothingElseIsOne) {
    for (const char* const text :
         {"", "-1", "+1", " 1", "1 ", "0x1", "1.0", "x", "2147483648", "99999999999999999999"}) {
        EXPECT_EQ(ReadNumber(text), std::nullopt) << text;
    }
}

TEST(Number, IsDecimalAtAnyLengthAndBelowZero) {
    for (const char* const text : {"0", "-1", "007", "99999999999999999999"}) {
        EXPECT_TRUE(IsDecimal(text)) << text;
    }
    for (const char* const text : {"", "-", "+1", "1 ", "--1", "1x"}) {
        EXPECT_FALSE(IsDecimal(text)) << text;
    }
}

TEST(Number, IsGroupedByThreeDigits) {
    EXPECT_EQ(Grouped(0), "0");
    EXPECT_EQ(Grouped(999), "999");
    EXPECT_EQ(Grouped(1000), "1,000");
    EXPECT_EQ(Grouped(123456), "123,456");
    EXPECT_EQ(Grouped(18'446'744'073'709'551'615U), "18,446,744,073,709,551,615");
}

}  // namespace
}  // namespace NS_KX
