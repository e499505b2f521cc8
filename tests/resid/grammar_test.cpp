#include <climits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <kx_domain_util/resIDUtil.h>

#include "support/exacttext.h"
#include "support/generated.h"
#include "support/literalresidutil.h"
#include "support/scale.h"

namespace {

using NS_TEST::ExactText;
using NS_TEST::IdentifierGenerator;
using NS_TEST::LiteralResIDUtil;
using NS_TEST::Scaled;
using NS_UTIL::MocLvlValueMap;
using NS_UTIL::ResIDUtil;
using testing::ElementsAre;
using testing::PrintToString;

template <class Visit>
void ForEachIdentifier(Visit visit) {
    IdentifierGenerator identifiers(11);
    for (std::size_t round = 0; round < Scaled(50000) && !testing::Test::HasFailure(); ++round) {
        visit(identifiers.Next());
    }
}

TEST(Fdn2MocLvlValueMap, FillsWhatALiteralParsingFills) {
    ForEachIdentifier([](const std::string& text) {
        MocLvlValueMap map{{"NE", {"old"}}};
        LiteralResIDUtil::Map expected;

        ResIDUtil::Fdn2MocLvlValueMap(ExactText(text), map);

        LiteralResIDUtil::Fdn2MocLvlValueMap(text, expected);
        EXPECT_EQ(map, expected) << PrintToString(text);
    });
}

TEST(Fdn2MocLvlValueMap, OrdersTagsByBytes) {
    MocLvlValueMap map;
    ResIDUtil::Fdn2MocLvlValueMap("b=1,\xC4=2,A=3,a=4,AB=5", map);
    std::vector<std::string> tags;
    for (const auto& [tag, values] : map) {
        tags.push_back(tag);
    }
    EXPECT_THAT(tags, ElementsAre("A", "AB", "a", "b", "\xC4"));
}

TEST(ResolveMocLevelObj, SplitsAsALiteralSplittingDoes) {
    ForEachIdentifier([](const std::string& text) {
        std::string tag = "old";
        std::string expectedTag = "old";
        std::vector<std::string> values{"old"};
        std::vector<std::string> expected{"old"};

        ResIDUtil::ResolveMocLevelObj(ExactText(text), tag, values);

        LiteralResIDUtil::ResolveMocLevelObj(text, expectedTag, expected);
        EXPECT_EQ(tag, expectedTag) << PrintToString(text);
        EXPECT_EQ(values, expected) << PrintToString(text);
    });
}

TEST(ResolveMocLevelObj, UndoesConstructMocLevelObj) {
    ForEachIdentifier([](const std::string& text) {
        MocLvlValueMap map;
        ResIDUtil::Fdn2MocLvlValueMap(ExactText(text), map);
        for (const auto& [tag, values] : map) {
            if (values.empty()) {
                continue;
            }
            std::string level;
            std::string tagAgain;
            std::vector<std::string> valuesAgain;
            ResIDUtil::ConstructMocLevelObj(tag, values, level);
            ResIDUtil::ResolveMocLevelObj(ExactText(level), tagAgain, valuesAgain);
            EXPECT_EQ(tagAgain, tag) << PrintToString(text);
            EXPECT_EQ(valuesAgain, values) << PrintToString(text);
        }
    });
}

TEST(ConstructMocLevelObj, MayWriteIntoItsOwnTag) {
    std::string text = "PP";
    ResIDUtil::ConstructMocLevelObj(text, {"16", ""}, text);
    EXPECT_EQ(text, "PP=16|");
}

TEST(GetValueByMocLvlName, FindsNothingAtANegativeIndex) {
    const MocLvlValueMap map{{"NE", {"1"}}};
    std::string text = "old";
    int number = 9;
    EXPECT_FALSE(ResIDUtil::GetValueByMocLvlName("NE", map, text, -1));
    EXPECT_FALSE(ResIDUtil::GetValueByMocLvlName("NE", map, number, INT_MIN));
    EXPECT_EQ(text, "old");
    EXPECT_EQ(number, 9);
}

TEST(ResolveFDNByMoc, ReadsWhatALiteralReadingReads) {
    ForEachIdentifier([](const std::string& text) {
        for (const char* tag : {"PP=", "S=", "NE=", "AP=", "SUBIF=", ",", ""}) {
            for (const int minCount : {-1, 0, 1, 4}) {
                std::vector<std::string> values{"old"};
                std::vector<std::string> expected{"old"};

                const bool answer = ResIDUtil::ResolveFDNByMoc(ExactText(text), tag, minCount, values);

                EXPECT_EQ(answer, LiteralResIDUtil::ResolveFDNByMoc(text, tag, minCount, expected))
                    << tag << " in " << PrintToString(text);
                EXPECT_EQ(values, expected) << tag << " in " << PrintToString(text);
            }
        }
    });
}

TEST(GetMOCFromFDN, NamesWhatALiteralSearchNames) {
    ForEachIdentifier([](const std::string& text) {
        EXPECT_EQ(ResIDUtil::GetMOCFromFDN(ExactText(text)), LiteralResIDUtil::GetMOCFromFDN(text))
            << PrintToString(text);
    });
}

}  // namespace
