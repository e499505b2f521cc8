#include "cli/nearestword.h"

#include <gtest/gtest.h>

namespace NS_KX::NS_KXDU {
namespace {

const std::vector<std::string> WORDS{"decode", "encode", "fb", "get"};

TEST(NearestWord, DiffersLeast) {
    EXPECT_EQ(NearestWord("decod", WORDS), "decode");
    EXPECT_EQ(NearestWord("endcode", WORDS), "encode");
    EXPECT_EQ(NearestWord("dceode", WORDS), "decode") << "two letters swapped";
    EXPECT_EQ(NearestWord("fbb", WORDS), "fb");
    EXPECT_EQ(NearestWord("DECODE", WORDS), "decode");
}

TEST(NearestWord, BeginsWithTheText) {
    EXPECT_EQ(NearestWord("dec", WORDS), "decode") << "although get differs in fewer characters";
    EXPECT_EQ(NearestWord("E", WORDS), "encode");
}

TEST(NearestWord, IsEmptyIfNoWordIsNear) {
    EXPECT_EQ(NearestWord("nonsense", WORDS), "");
    EXPECT_EQ(NearestWord("xy", WORDS), "") << "no letter is right";
    EXPECT_EQ(NearestWord("", WORDS), "");
}

}  // namespace
}  // namespace NS_KX::NS_KXDU
