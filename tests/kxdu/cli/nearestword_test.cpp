#include "cli/nearestword.h"

#include <gtest/gtest.h>

namespace NS_KX::NS_KXDU {
namespace {

const std::vector<std::string> WORDS{"decode", "encode", "fb", "get"};

TEST(NearestWord, IsTheOneThatDiffersLeast) {
    EXPECT_EQ(NearestWord("decod", WORDS), "decode");
    EXPECT_EQ(NearestWord("endcode", WORDS), "encode");
    EXPECT_EQ(NearestWord("dceode", WORDS), "decode") << "two characters that changed places";
    EXPECT_EQ(NearestWord("fbb", WORDS), "fb");
    EXPECT_EQ(NearestWord("DECODE", WORDS), "decode");
}

TEST(NearestWord, IsTheOneThatWasBegun) {
    EXPECT_EQ(NearestWord("dec", WORDS), "decode") << "get differs less";
    EXPECT_EQ(NearestWord("E", WORDS), "encode");
}

TEST(NearestWord, WhatIsFarFromAllIsNone) {
    EXPECT_EQ(NearestWord("nonsense", WORDS), "");
    EXPECT_EQ(NearestWord("xy", WORDS), "") << "nothing of it is right";
    EXPECT_EQ(NearestWord("", WORDS), "");
}

}  // namespace
}  // namespace NS_KX::NS_KXDU
