#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <kx_domain_util/fdnscanner.h>

#include "support/exacttext.h"
#include "support/generated.h"
#include "support/literalresidutil.h"
#include "support/scale.h"

namespace {

using NS_TEST::ExactView;
using NS_TEST::IdentifierGenerator;
using NS_TEST::LiteralResIDUtil;
using NS_TEST::Scaled;
using NS_UTIL::NS_FDN::FindNameEscape;
using NS_UTIL::NS_FDN::HasEscapedName;
using NS_UTIL::NS_FDN::LastLevel;
using NS_UTIL::NS_FDN::LastTag;
using NS_UTIL::NS_FDN::Level;
using NS_UTIL::NS_FDN::LevelScanner;
using NS_UTIL::NS_FDN::SplitLevel;
using NS_UTIL::NS_FDN::SubValues;
using NS_UTIL::NS_FDN::SubValueScanner;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

std::vector<std::pair<std::string, std::string>> LevelsOf(std::string_view fdn) {
    std::vector<std::pair<std::string, std::string>> levels;
    LevelScanner scanner(fdn);
    Level level;
    while (scanner.Next(level)) {
        levels.emplace_back(level.tag, level.value);
    }
    EXPECT_FALSE(scanner.Next(level)) << "it stays at the end";
    return levels;
}

std::vector<std::string> SubValuesOf(std::string_view value) {
    std::vector<std::string> subValues;
    SubValueScanner scanner(value);
    std::string_view subValue;
    while (scanner.Next(subValue)) {
        subValues.emplace_back(subValue);
    }
    EXPECT_FALSE(scanner.Next(subValue)) << "it stays at the end";
    return subValues;
}

TEST(LevelScanner, GivesLevelsInTheirOrder) {
    EXPECT_THAT(LevelsOf(ExactView("NE=1,FR=2,NE=3")), ElementsAre(Pair("NE", "1"), Pair("FR", "2"), Pair("NE", "3")));
}

TEST(LevelScanner, GivesNothingOfAnEmptyText) {
    EXPECT_THAT(LevelsOf(ExactView("")), IsEmpty());
    EXPECT_THAT(LevelsOf({}), IsEmpty());
}

TEST(LevelScanner, GivesEmptyPieces) {
    EXPECT_THAT(LevelsOf(ExactView(",NE=1,")), ElementsAre(Pair("", ""), Pair("NE", "1"), Pair("", "")));
}

TEST(LevelScanner, CutsAtTheFirstEqualitySign) {
    EXPECT_THAT(LevelsOf(ExactView("A=b=c,D,=e")), ElementsAre(Pair("A", "b=c"), Pair("D", ""), Pair("", "e")));
}

TEST(LevelScanner, GivesViewsOfTheText) {
    const std::string_view fdn = "NE=1,FR=22";
    LevelScanner scanner(fdn);
    Level level;
    ASSERT_TRUE(scanner.Next(level));
    ASSERT_TRUE(scanner.Next(level));
    EXPECT_EQ(level.tag.data() - fdn.data(), 5);
    EXPECT_EQ(level.value.data() - fdn.data(), 8);
}

TEST(SplitLevel, CutsAsTheScannerDoes) {
    IdentifierGenerator identifiers(41);
    for (std::size_t round = 0; round < Scaled(20000) && !HasFailure(); ++round) {
        const std::string text = identifiers.Next();
        for (const auto& [tag, value] : LevelsOf(ExactView(text))) {
            std::string whole = tag;
            if (!value.empty()) {
                whole.append("=").append(value);
            }
            const ExactView view(whole);
            const Level level = SplitLevel(view);
            EXPECT_EQ(level.tag, tag);
            EXPECT_EQ(level.value, value);
        }
    }
}

TEST(SplitLevel, KnowsALevelWithoutEqualitySign) {
    EXPECT_EQ(SplitLevel("NE").tag, "NE");
    EXPECT_EQ(SplitLevel("NE").value, "");
    EXPECT_EQ(SplitLevel("").tag, "");
    EXPECT_EQ(SplitLevel("NE=").tag, "NE");
}

TEST(SubValueScanner, KeepsEmptySubValues) {
    EXPECT_THAT(SubValuesOf(ExactView("16||0|")), ElementsAre("16", "", "0", ""));
    EXPECT_THAT(SubValuesOf(ExactView("|")), ElementsAre("", ""));
    EXPECT_THAT(SubValuesOf(ExactView("16")), ElementsAre("16"));
}

TEST(SubValueScanner, GivesNothingOfAnEmptyValue) {
    EXPECT_THAT(SubValuesOf(ExactView("")), IsEmpty());
}

TEST(SubValuesOfALevel, StopAtTheLastPlace) {
    const ExactView value("a|b|c");
    const SubValues<2> two(value);
    EXPECT_EQ(two.Count(), 2U);
    EXPECT_EQ(two[0], "a");
    EXPECT_EQ(two[1], "b");
}

TEST(SubValuesOfALevel, AreEmptyAfterTheLast) {
    const SubValues<3> one("a");
    EXPECT_EQ(one.Count(), 1U);
    EXPECT_EQ(one[0], "a");
    EXPECT_EQ(one[1], "");
    const SubValues<3> none("");
    EXPECT_EQ(none.Count(), 0U);
    EXPECT_EQ(none[0], "");
}

TEST(LastLevel, IsWhatFollowsTheLastComma) {
    EXPECT_EQ(LastLevel(ExactView("NE=1,PP=16||2|a=b")), "PP=16||2|a=b");
    EXPECT_EQ(LastLevel(ExactView("NE=1")), "NE=1");
    EXPECT_EQ(LastLevel(ExactView("NE=1,")), "");
    EXPECT_EQ(LastLevel({}), "");
}

TEST(LastTag, EndsAtTheFirstEqualsOfTheLastLevel) {
    EXPECT_EQ(LastTag(ExactView("NE=1,PP=16||2|a=b")), "PP");
    EXPECT_EQ(LastTag(ExactView("NE=1,XY")), "XY");
    EXPECT_EQ(LastTag(ExactView("=1")), "");
    EXPECT_EQ(LastTag({}), "");
}

TEST(HasEscapedName, WantsTheFbTypeAndABackslash) {
    EXPECT_TRUE(HasEscapedName(ExactView("16|1025|7|a\\|b")));
    EXPECT_TRUE(HasEscapedName(ExactView("16|1025|7|a\\")));
    EXPECT_FALSE(HasEscapedName(ExactView("16|1025|7|a|b")));
    EXPECT_FALSE(HasEscapedName(ExactView("16|1026|7|a\\|b")));
    EXPECT_FALSE(HasEscapedName(ExactView("16|1025|7\\|a|b")));
    EXPECT_FALSE(HasEscapedName({}));
    EXPECT_EQ(FindNameEscape(1025, "ab\\c\\"), 2U);
}

}  // namespace
