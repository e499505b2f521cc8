#include "text/quoting.h"

#include <gtest/gtest.h>

namespace NS_KX {
namespace {

TEST(Quoting, LeavesNothingThatSteersATerminal) {
    EXPECT_EQ(Quoted("a\x1b[2Jb"), "\"a\\x1b[2Jb\"");
    EXPECT_EQ(Quoted("K\xc3\xb6ln"), "\"K\xc3\xb6ln\"");
    EXPECT_EQ(Quoted("a\xff"), "\"a\\xff\"");
}

TEST(Quoting, CutsLongTextsUnlessTheyMustBeWhole) {
    EXPECT_EQ(Quoted("abcdef", 3), "\"abc...\"");
    EXPECT_EQ(QuotedWhole(std::string(1000, 'x')), "\"" + std::string(1000, 'x') + "\"");
}

}  // namespace
}  // namespace NS_KX
