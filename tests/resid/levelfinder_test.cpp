#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <kx_domain_util/fdnscanner.h>
#include <kx_domain_util/levelfinder.h>

#include "support/exacttext.h"
#include "support/generated.h"
#include "support/literalresidutil.h"
#include "support/scale.h"

namespace {

using NS_TEST::ExactView;
using NS_TEST::IdentifierGenerator;
using NS_TEST::LiteralResIDUtil;
using NS_TEST::Scaled;
using NS_UTIL::NS_FDN::LevelFinder;
using NS_UTIL::NS_FDN::NS_DETAIL::PackHead;

TEST(PackHead, ReadsZerosPastTheEnd) {
    const std::string text = "ABCDEFGHIJ";
    for (std::size_t size = 0; size <= text.size(); ++size) {
        const ExactView view(std::string_view(text).substr(0, size));
        const std::string_view fdn = view;
        for (std::size_t begin = 0; begin <= size; ++begin) {
            std::uint64_t expected = 0;
            for (std::size_t place = 0; place < 8 && begin + place < size; ++place) {
                expected |= static_cast<std::uint64_t>(text[begin + place]) << 8 * place;
            }
            EXPECT_EQ(PackHead(fdn, fdn.data() + begin), expected) << size << " from " << begin;
        }
    }
}

TEST(LevelFinder, TellsTagsThatBeginAlikeApart) {
    const LevelFinder<"S", "SS", "SUBIF"> levels("SS=1,SUBIF=2,S=5");
    EXPECT_EQ(levels.Value<"S">(), "5");
    EXPECT_EQ(levels.Value<"SS">(), "1");
    EXPECT_EQ(levels.Value<"SUBIF">(), "2");
    const LevelFinder<"VR", "VRF"> longer("VRFS=1,VRF=3,VR=4");
    EXPECT_EQ(longer.Value<"VR">(), "4");
    EXPECT_EQ(longer.Value<"VRF">(), "3");
}

TEST(LevelFinder, TakesNothingElseForATag) {
    for (const std::string& other :
         {std::string("SSS=1"), std::string("ss=1"), std::string("SS\0=1", 5), std::string("\0SS=1", 5),
          std::string("=SS=1"), std::string(" SS=1"), std::string("SS =1"), std::string("SSSSSSSSSSSS"),
          std::string("S\0", 2), std::string("")}) {
        const std::string text = other + ",SS=2";
        const ExactView fdn(text);
        const LevelFinder<"S", "SS"> levels(fdn);
        EXPECT_FALSE(levels.Has<"S">()) << testing::PrintToString(text);
        EXPECT_EQ(levels.Value<"SS">(), "2") << testing::PrintToString(text);
    }
}

TEST(LevelFinder, FindsTagsInTheShortestTexts) {
    EXPECT_EQ(LevelFinder<"NE">(ExactView("NE=1")).Value<"NE">(), "1");
    EXPECT_EQ(LevelFinder<"S">(ExactView("S=")).Value<"S">(), "");
    EXPECT_TRUE(LevelFinder<"S">(ExactView("S=")).Has<"S">());
    EXPECT_TRUE(LevelFinder<"S">(ExactView("S")).Has<"S">());
    EXPECT_FALSE(LevelFinder<"S">(ExactView("")).Has<"S">());
    EXPECT_FALSE(LevelFinder<"S">({}).Has<"S">());
}

TEST(LevelFinder, FindsTagsOfTheLongestSize) {
    EXPECT_EQ(LevelFinder<"VEGROUP">(ExactView("NE=1,VEGROUP=2")).Value<"VEGROUP">(), "2");
    EXPECT_TRUE(LevelFinder<"VEGROUP">(ExactView("VEGROUP")).Has<"VEGROUP">());
    EXPECT_FALSE(LevelFinder<"VEGROUP">(ExactView("VEGROUPS=2,VEGROUPS")).Has<"VEGROUP">());
}

TEST(LevelFinder, TakesEmptyLevelsAndNulsForNoRepetition) {
    for (const std::string& text :
         {std::string(","), std::string("NE=1,"), std::string("NE=1,\0\0\0\0\0\0\0\0\0,S=2", 17)}) {
        const ExactView fdn(text);
        EXPECT_FALSE((LevelFinder<"OS">(fdn).MayRepeat())) << testing::PrintToString(text);
        EXPECT_FALSE((LevelFinder<"OS", "NE", "PP">(fdn).MayRepeat())) << testing::PrintToString(text);
    }
}

TEST(LevelFinder, TellsWhenATagMayRepeat) {
    EXPECT_FALSE((LevelFinder<"NE", "S">("NE=1,PP=2,PP=3").MayRepeat()));
    EXPECT_TRUE((LevelFinder<"NE", "S">("NE=1,PP=2,NE=3").MayRepeat()));
    EXPECT_TRUE((LevelFinder<"NE", "S">("S,S").MayRepeat()));
    EXPECT_TRUE((LevelFinder<"NE", "S">("NE=1,S=2,S=3").MayRepeat())) << "it looks no further once it has all tags";
}

TEST(LevelFinder, FindsTheFirstOfEachTag) {
    const LevelFinder<"NE", "PP", "S"> levels("S,PP=,NE=7,PP=8,NE=9");
    EXPECT_TRUE(levels.Has<"NE">());
    EXPECT_TRUE(levels.Has<"PP">());
    EXPECT_TRUE(levels.Has<"S">());
    EXPECT_EQ(levels.Value<"NE">(), "7");
    EXPECT_EQ(levels.Value<"PP">(), "");
    EXPECT_EQ(levels.Value<"S">(), "");
}

TEST(LevelFinder, LeavesAFieldWithoutValueUntouched) {
    const LevelFinder<"NE", "PP", "S"> levels("PP=,S=|5");
    std::int32_t field = 42;
    EXPECT_FALSE(levels.ReadNumber<"NE">(field));
    EXPECT_FALSE(levels.ReadNumber<"PP">(field));
    EXPECT_EQ(field, 42);
    EXPECT_TRUE(levels.ReadNumber<"S">(field));
    EXPECT_EQ(field, 0) << "the first sub-value is empty, but present";
}

template <NS_UTIL::NS_FDN::Tag Wanted, class Levels>
void ExpectLevel(const Levels& levels, const LiteralResIDUtil::Map& map, const std::string& text) {
    const auto level = map.find(std::string(Wanted.Text()));
    ASSERT_EQ(levels.template Has<Wanted>(), level != map.end()) << testing::PrintToString(text);
    std::vector<std::string> subValues;
    NS_UTIL::NS_FDN::SubValueScanner scanner(levels.template Value<Wanted>());
    std::string_view subValue;
    while (scanner.Next(subValue)) {
        subValues.emplace_back(subValue);
    }
    EXPECT_EQ(subValues, level != map.end() ? level->second : std::vector<std::string>{})
        << testing::PrintToString(text);
}

TEST(LevelFinder, FindsWhatALiteralParsingFinds) {
    IdentifierGenerator identifiers(42);
    for (std::size_t round = 0; round < Scaled(20000) && !HasFailure(); ++round) {
        const std::string text = identifiers.Next();
        const ExactView view(text);
        LiteralResIDUtil::Map map;
        LiteralResIDUtil::Fdn2MocLvlValueMap(text, map);
        const LevelFinder<"NE", "SUBIF", "PP", "S", "AP"> levels(view);
        ExpectLevel<"NE">(levels, map, text);
        ExpectLevel<"SUBIF">(levels, map, text);
        ExpectLevel<"PP">(levels, map, text);
        ExpectLevel<"S">(levels, map, text);
        ExpectLevel<"AP">(levels, map, text);
    }
}

}  // namespace
