#include "identifiers/vocabulary.h"

#include <gtest/gtest.h>

namespace NS_KXDU {
namespace {

bool IsNone(const Listing::Cell& cell) {
    return std::holds_alternative<Listing::None>(cell);
}

std::int64_t Number(const Listing::Cell& cell) {
    return std::get<std::int64_t>(cell);
}

std::string Text(const Listing::Cell& cell) {
    return std::get<std::string>(cell);
}

TEST(Vocabulary, KnowsLevels) {
    EXPECT_EQ(Text(RateOfLevel(12313)), "OTU1");
    EXPECT_EQ(Number(LevelOfRate("OTU1")), 12313);
    EXPECT_EQ(Number(LevelOfRate("oDuFlex")), 12336);
    EXPECT_EQ(Number(FbTypeOfLevel(12313)), 810);
    EXPECT_TRUE(IsNone(RateOfLevel(12342))) << "a level without a client rate";
    EXPECT_EQ(Number(FbTypeOfLevel(12342)), 25);
}

TEST(Vocabulary, KnowsFbTypes) {
    EXPECT_EQ(Text(NameOfFbType(122)), "CSK");
    EXPECT_EQ(Number(LevelOfFbType(861)), 12313);
    EXPECT_EQ(Number(BidirOfFbType(33)), 1);
    EXPECT_EQ(Number(BidirOfFbType(1)), 1);
}

TEST(Vocabulary, KnowsReservedCtps) {
    EXPECT_EQ(Number(IdOfCtp("E0")), 65535);
    EXPECT_EQ(Text(NameOfCtp(65524)), "E11");
}

TEST(Vocabulary, AMissIsNoneAndNotTheNumberItself) {
    for (const int unknown : {0, 5, 12343, 65536 + 33, 2147483647}) {
        EXPECT_TRUE(IsNone(RateOfLevel(unknown))) << unknown;
        EXPECT_TRUE(IsNone(FbTypeOfLevel(unknown))) << unknown;
        EXPECT_TRUE(IsNone(NameOfFbType(unknown))) << unknown;
        EXPECT_TRUE(IsNone(LevelOfFbType(unknown))) << unknown;
        EXPECT_TRUE(IsNone(NameOfCtp(unknown))) << unknown;
    }
    EXPECT_TRUE(IsNone(BidirOfFbType(0)));
    EXPECT_TRUE(IsNone(BidirOfFbType(65536 + 33))) << "a larger number is not cut";
    EXPECT_TRUE(IsNone(LevelOfRate("OTU9")));
    EXPECT_TRUE(IsNone(LevelOfRate("")));
    EXPECT_TRUE(IsNone(IdOfCtp("e0")));
}

}  // namespace
}  // namespace NS_KXDU
