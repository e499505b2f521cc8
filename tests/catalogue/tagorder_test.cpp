#include "catalogue/tagorder.h"

#include <gtest/gtest.h>

#include "catalogue/kinds.h"
#include "catalogue/levelcheck.h"

namespace NS_KX {
namespace {

// Says what is wrong, and that both answers agree.
std::string TagProblem(std::string_view fdn) {
    const auto problem = FindTagProblem(fdn);
    EXPECT_EQ(TagOrder().IsKeptBy(fdn), !problem) << fdn;
    static TagOrder afterOthers;
    EXPECT_EQ(afterOthers.IsKeptBy(fdn), !problem) << fdn;
    return problem ? std::to_string(problem->column) + ": " + problem->text : "none";
}

TEST(TagOrder, IsThatOfTheExamples) {
    for (const Kind* const kind : AllKinds()) {
        EXPECT_EQ(TagProblem(kind->example), "none");
    }
    EXPECT_EQ(TagProblem("NE=1,FR=1,S=3,CP=-1,SS=2,SC=-1,PP=16||2|,AP=1|2|9"), "none");
    EXPECT_EQ(TagProblem(""), "none");
}

TEST(TagOrder, EachTagIsKnownAndStandsOnce) {
    EXPECT_LE(AllTags().size(), 64U) << "TagOrder has room for as many";
    for (const Tag* const tag : AllTags()) {
        const std::string level = std::string(tag->name) + "=1";
        EXPECT_EQ(TagProblem(level), "none");
        EXPECT_EQ(TagProblem(tag->name), "none") << "values do not matter";
        EXPECT_NE(TagProblem(level + "," + level), "none") << level;
        EXPECT_NE(TagProblem("X" + level), "none") << level;
        EXPECT_NE(TagProblem(std::string(tag->name) + "X=1"), "none") << level;
        EXPECT_NE(TagProblem(std::string(tag->name.substr(1)) + "\xC3=1"), "none") << level;
    }
}

TEST(TagOrder, OddTagsAreNamed) {
    EXPECT_EQ(TagProblem("\"NE=9,FR=1\""), "1: quote in the tag \"\"NE\"");
    EXPECT_EQ(TagProblem(" NE=9"), "1: blank in the tag \" NE\"");
    EXPECT_EQ(TagProblem("xx NE=9,FR=1"), "1: lower-case letter in the tag \"xx NE\"");
    EXPECT_EQ(TagProblem("NE=9,XX=1"), "6: unknown tag \"XX\"");
    EXPECT_EQ(TagProblem("NE=9,"), "6: empty level");
    EXPECT_EQ(TagProblem("NE=9,TUNNELTRAILS=1"), "6: unknown tag \"TUNNELTRAILS\"");
}

TEST(TagOrder, ContainersStandBeforeWhatTheyContain) {
    EXPECT_EQ(TagProblem("FR=1,NE=9"), "6: level \"NE\" stands after \"FR\", but belongs before it");
    EXPECT_EQ(TagProblem("NE=5,MA=4|a,MD=3|b,MEP=7"), "13: level \"MD\" stands after \"MA\", but belongs before it");
    EXPECT_EQ(TagProblem("NE=5,PP=16||2|,S=3"), "16: level \"S\" stands after \"PP\", but belongs before it");
}

// Each text after each: what the second shares with the first must not change the answer.
TEST(TagOrder, DoesNotDependOnTheTextBefore) {
    const std::vector<std::string> texts{"NE=1,FR=1,S=3",
                                         "NE=1,FR=1,S=3,S=4",
                                         "NE=1,FR=1,NE=2",
                                         "NE=1,FR=1,",
                                         "NE=1",
                                         "NE=1,FR",
                                         "NE=1,FR=12,S=3",
                                         "FR=1,S=3,NE=1",
                                         "",
                                         "NE=1,XX=1",
                                         "NE=1,FR=1,S=3,CP=-1,PP=16||2|,AP=1|2|9"};
    for (const std::string& first : texts) {
        for (const std::string& second : texts) {
            TagOrder order;
            order.IsKeptBy(first);
            EXPECT_EQ(order.IsKeptBy(second), !FindTagProblem(second)) << first << " before " << second;
            EXPECT_EQ(order.IsKeptBy(first), !FindTagProblem(first)) << first << " after " << second;
        }
    }
}

TEST(TagOrder, HoldsForTextsOfVeryManyLevels) {
    std::string fdn = "NE=1";
    for (const Tag* const tag : AllTags()) {
        if (tag->depth == Tag::INNERMOST) {
            fdn.append(",").append(tag->name).append("=1");
        }
    }
    TagOrder order;
    EXPECT_TRUE(order.IsKeptBy(fdn));
    EXPECT_TRUE(order.IsKeptBy(fdn));
    EXPECT_FALSE(order.IsKeptBy(fdn + ",VRF=1"));
    EXPECT_FALSE(order.IsKeptBy(fdn + ",S=1"));
}

}  // namespace
}  // namespace NS_KX
