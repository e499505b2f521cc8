#include "catalogue/vocabulary.h"

#include <gmock/gmock.h>

namespace NS_KX {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(Vocabulary, KnowsLevels) {
    EXPECT_EQ(RateOfLevel(12313), "OTU1");
    EXPECT_EQ(LevelOfRate("OTU1"), 12313);
    EXPECT_EQ(LevelOfRate("oDuFlex"), 12336);
    EXPECT_EQ(FbTypeOfLevel(12313), 810);
    EXPECT_EQ(RateOfLevel(12342), std::nullopt) << "a level without a client rate";
    EXPECT_EQ(FbTypeOfLevel(12342), 25);
    EXPECT_THAT(FbTypesOfLevel(12313), AllOf(Contains(810), Contains(861)));
}

TEST(Vocabulary, KnowsFbTypes) {
    EXPECT_EQ(NameOfFbType(122), "CSK");
    EXPECT_EQ(LevelOfFbType(861), 12313);
    EXPECT_EQ(BidirOfFbType(33), 1);
    EXPECT_EQ(BidirOfFbType(1), 1);
    EXPECT_THAT(FbTypesOfName("com"), ElementsAre(131, 132, 133));
}

TEST(Vocabulary, KnowsReservedCtps) {
    EXPECT_EQ(IdOfCtp("E0"), 65535);
    EXPECT_EQ(IdOfCtp("e11"), 65524);
    EXPECT_EQ(NameOfCtp(65524), "E11");
}

TEST(Vocabulary, AMissIsNoneAndNotTheNumberItself) {
    for (const int unknown : {0, 5, 12343, 65536 + 33, 2147483647}) {
        EXPECT_EQ(RateOfLevel(unknown), std::nullopt) << unknown;
        EXPECT_EQ(FbTypeOfLevel(unknown), std::nullopt) << unknown;
        EXPECT_EQ(NameOfFbType(unknown), std::nullopt) << unknown;
        EXPECT_EQ(LevelOfFbType(unknown), std::nullopt) << unknown;
        EXPECT_EQ(NameOfCtp(unknown), std::nullopt) << unknown;
    }
    EXPECT_EQ(BidirOfFbType(0), std::nullopt);
    EXPECT_EQ(BidirOfFbType(65536 + 33), std::nullopt) << "a larger number is not cut";
    EXPECT_EQ(LevelOfRate("OTU9"), std::nullopt);
    EXPECT_EQ(LevelOfRate(""), std::nullopt);
    EXPECT_EQ(IdOfCtp("E12"), std::nullopt);
    EXPECT_THAT(FbTypesOfLevel(12343), IsEmpty());
    EXPECT_THAT(FbTypesOfName("XYZ"), IsEmpty());
}

}  // namespace
}  // namespace NS_KX
