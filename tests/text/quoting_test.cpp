#include "text/quoting.h"

#include <gtest/gtest.h>

namespace NS_KX {
namespace {

TEST(Quoting, LeavesNothingThatSteersATerminal) {
    EXPECT_EQ(Quoted("a\x1b[2Jb"), "\"a\\x1b[2Jb\"");
    EXPECT_EQ(Quoted("a\xc2\x9b"
                     "2Jb\xc2\x85"),
              "\"a\\xc2\\x9b2Jb\\xc2\\x85\"")
        << "C1";
    EXPECT_EQ(Quoted("\xe2\x80\xaa.\xe2\x80\xae"), "\"\\xe2\\x80\\xaa.\\xe2\\x80\\xae\"") << "overrides of direction";
    EXPECT_EQ(Quoted("\xe2\x81\xa6.\xe2\x81\xa9"), "\"\\xe2\\x81\\xa6.\\xe2\\x81\\xa9\"") << "isolates";
    EXPECT_EQ(Quoted("\xc2\xa0\xe2\x80\xa9\xe2\x80\xaf\xe2\x81\xa5\xe2\x81\xaa"),
              "\"\xc2\xa0\xe2\x80\xa9\xe2\x80\xaf\xe2\x81\xa5\xe2\x81\xaa\"")
        << "their neighbours";
    EXPECT_EQ(Quoted("K\xc3\xb6ln"), "\"K\xc3\xb6ln\"");
    EXPECT_EQ(Quoted("a\xff"), "\"a\\xff\"");
}

TEST(Quoting, CutsLongTextsUnlessTheyMustBeWhole) {
    EXPECT_EQ(Quoted("abcdef", 3), "\"abc...\"");
    EXPECT_EQ(QuotedWhole(std::string(1000, 'x')), "\"" + std::string(1000, 'x') + "\"");
}

}  // namespace
}  // namespace NS_KX
