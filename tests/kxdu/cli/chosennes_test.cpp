#include "cli/chosennes.h"

#include <gtest/gtest.h>

namespace NS_KX::NS_KXDU {
namespace {

TEST(ChosenNes, AreNumbersAndRanges) {
    ChosenNes nes;
    EXPECT_TRUE(nes.AreAll());
    EXPECT_EQ(nes.Add("1,5,10-12"), "");
    EXPECT_EQ(nes.Add("2147483647"), "");
    EXPECT_FALSE(nes.AreAll());
    for (const std::int32_t neId : {1, 5, 10, 11, 12, 2147483647}) {
        EXPECT_TRUE(nes.Has(neId)) << neId;
    }
    for (const std::int32_t neId : {-1, 0, 2, 4, 9, 13}) {
        EXPECT_FALSE(nes.Has(neId)) << neId;
    }
}

TEST(ChosenNes, AreNothingElse) {
    ChosenNes nes;
    for (const char* const text : {"", ",", "1,", "x", "3-1", "-1", "1-", "1-2-3", "2147483648", " 1"}) {
        EXPECT_NE(nes.Add(text), "") << text;
    }
    EXPECT_TRUE(nes.AreAll());
    EXPECT_EQ(nes.Add("7,x-9"), "\"x-9\" is neither an NE number nor a range of them, such as 10-20");
}

}  // namespace
}  // namespace NS_KX::NS_KXDU
