#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <kx_platform/selfutilcommon.h>

#include "support/exacttext.h"
#include "support/services.h"

namespace {

using NS_TEST::Configuration;
using NS_TEST::ExactText;
using NS_UTIL::SelfUtilCommon;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

using TextMap = std::map<std::string, std::string>;

const SelfUtilCommon& Util() {
    return *SelfUtilCommon::Instance();
}

TEST(SelfUtilCommon, IsOne) {
    ASSERT_NE(SelfUtilCommon::Instance(), nullptr);
    EXPECT_EQ(SelfUtilCommon::Instance(), SelfUtilCommon::Instance());
}

TEST(SelfUtilCommon, AnswersFromTheConfigurationItems) {
    const Configuration configuration{{"EventSwitch", "1"}, {"Whitelist", ""}};
    std::string value = "old";
    EXPECT_TRUE(Util().IsSupportCfgItem("EventSwitch"));
    EXPECT_TRUE(Util().GetSupportCfgItem("EventSwitch", value));
    EXPECT_EQ(value, "1");
    EXPECT_TRUE(Util().IsSupportCfgItem("Whitelist")) << "an empty item is an item";
    EXPECT_TRUE(Util().GetSupportCfgItem("Whitelist", value));
    EXPECT_EQ(value, "");
}

TEST(SelfUtilCommon, LeavesTheValueOfAMissingItemUntouched) {
    const Configuration configuration;
    std::string value = "old";
    EXPECT_FALSE(Util().IsSupportCfgItem("EventSwitch"));
    EXPECT_FALSE(Util().GetSupportCfgItem("EventSwitch", value));
    EXPECT_EQ(value, "old");
}

TEST(GetSpliteFDNData, AddsItemsAndSkipsThoseWithoutEqualitySign) {
    TextMap items;
    Util().GetSpliteFDNData(items, ExactText("NE=5,XY,FR=a=b,S=,,=7"), ",");
    EXPECT_THAT(items, ElementsAre(Pair("", "7"), Pair("FR", "a=b"), Pair("NE", "5"), Pair("S", "")));
}

TEST(GetSpliteFDNData, KeepsTheFirstOfARepeatedName) {
    TextMap items{{"NE", "9"}};
    Util().GetSpliteFDNData(items, ExactText("NE=5,FR=1,FR=2"), ",");
    EXPECT_THAT(items, ElementsAre(Pair("FR", "1"), Pair("NE", "9")));
}

TEST(GetSpliteFDNData, AddsNothingOfAnEmptyText) {
    TextMap items;
    Util().GetSpliteFDNData(items, "", ",");
    EXPECT_THAT(items, IsEmpty());
}

TEST(GetSpliteFDNData, SplitsAtAnySeparator) {
    TextMap items;
    Util().GetSpliteFDNData(items, "a=1;;b=2,c;;d", ";;");
    EXPECT_THAT(items, ElementsAre(Pair("a", "1"), Pair("b", "2,c")));
}

TEST(GetDataFromMap, LeavesTheValueUntouchedOnAMiss) {
    const TextMap byName{{"NE", "5"}};
    const std::map<int, std::string> byNumber{{5, "five"}};
    std::string value = "old";
    EXPECT_FALSE(Util().GetDataFromMap(byName, "FR", value));
    EXPECT_FALSE(Util().GetDataFromMap(byNumber, 6, value));
    EXPECT_EQ(value, "old");
    EXPECT_TRUE(Util().GetDataFromMap(byName, "NE", value));
    EXPECT_EQ(value, "5");
    EXPECT_TRUE(Util().GetDataFromMap(byNumber, 5, value));
    EXPECT_EQ(value, "five");
}

TEST(GetIntegerValueByName, ReadsTheValueAsStr2IntDoes) {
    const TextMap items{{"NE", " 12x"}, {"FR", "abc"}, {"S", "4294967295"}};
    int value = 9;
    EXPECT_FALSE(Util().GetIntegerValueByName(items, "SS", value));
    EXPECT_EQ(value, 9);
    EXPECT_TRUE(Util().GetIntegerValueByName(items, "NE", value));
    EXPECT_EQ(value, 12);
    EXPECT_TRUE(Util().GetIntegerValueByName(items, "FR", value));
    EXPECT_EQ(value, 0);
    EXPECT_TRUE(Util().GetIntegerValueByName(items, "S", value));
    EXPECT_EQ(value, -1);
}

TEST(upperStr, ChangesLettersOfTheLatinAlphabetAlone) {
    EXPECT_EQ(Util().upperStr("az AZ 09 {`\xE4"), "AZ AZ 09 {`\xE4");
    EXPECT_EQ(Util().upperStr(""), "");
}

}  // namespace
