#include "catalogue/levelcheck.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace NS_KX {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> Problems(std::string_view fdn) {
    std::vector<std::string> problems;
    CheckLevels(
        fdn, [&](const Problem& problem) { problems.push_back(std::to_string(problem.column) + ": " + problem.text); });
    return problems;
}

TEST(LevelCheck, FindsNothingInGoodIdentifiers) {
    for (const char* const fdn : {"NE=12,FR=1,S=3,CP=-1,SS=2,SC=-1,PP=16|1025|7|GE 0/7", "NE=1,LP=||4294967295|a=b",
                                  "NE=-2147483648", "NE=1,PP=|1025|7|a\\|b", "NE=1,TUNNEL=1|2|a|b|3|c|4|5|6",
                                  "NE=1,PWE3TRAIL=a|b c", "NE=1,MD=|md1", "NE=1,PP=16||2|,AP=1|2|"}) {
        EXPECT_THAT(Problems(fdn), IsEmpty()) << fdn;
    }
}

TEST(LevelCheck, LevelsMustBeWellFormed) {
    EXPECT_THAT(Problems("NE=1,,S=2"), ElementsAre("6: empty level"));
    EXPECT_THAT(Problems("NE=1,"), ElementsAre("6: empty level"));
    EXPECT_THAT(Problems("=5"), ElementsAre("1: level without a tag"));
    EXPECT_THAT(Problems("NE=1,FR"), ElementsAre("6: no \"=\" after \"FR\""));
}

TEST(LevelCheck, TagsAreCapitalsAndDigits) {
    EXPECT_THAT(Problems("NE=1,Fr=2"), ElementsAre("7: lower-case letter in the tag \"Fr\""));
    EXPECT_THAT(Problems("NE=1, FR=2"), ElementsAre("6: blank in the tag \" FR\""));
    EXPECT_THAT(Problems("N-E=1"), ElementsAre("2: character \"-\" in the tag \"N-E\""));
}

TEST(LevelCheck, CharactersThatAreEasilyOverlookedAreNamed) {
    EXPECT_THAT(Problems("\"NE=1"), ElementsAre("1: quote in the tag \"\"NE\""));
    EXPECT_THAT(Problems("NE=1'"), ElementsAre("4: NE is not a decimal number: \"1'\", which holds a quote"));
    EXPECT_THAT(Problems("NE=1,\xC2\xA0"
                         "FR=1"),
                ElementsAre("6: no-break space in the tag \"\xC2\xA0"
                            "FR\""));
    EXPECT_THAT(Problems("NE=1\xE2\x80\x8B"),
                ElementsAre("4: NE is not a decimal number: \"1\xE2\x80\x8B\", which holds a zero-width space"));
    EXPECT_THAT(Problems("\xEF\xBB\xBFNE=1"), ElementsAre("1: byte-order mark in the tag \"\xEF\xBB\xBFNE\""));
    EXPECT_THAT(Problems("N\xC3\x84=1"), ElementsAre("2: character \"\xC3\x84\" in the tag \"N\xC3\x84\""))
        << "a character is shown whole";
}

TEST(LevelCheck, TagsMustBeKnownAndStandOnce) {
    EXPECT_THAT(Problems("NE=1,XX=2"), ElementsAre("6: unknown tag \"XX\""));
    EXPECT_THAT(Problems("NE=1,S=2,S=2"), ElementsAre("10: level \"S\" occurs before; the first one counts"));
}

TEST(LevelCheck, NumbersMustBeDecimalAndInRange) {
    EXPECT_THAT(Problems("NE=1,FR=2 "), ElementsAre("9: FR is not a decimal number: \"2 \""));
    EXPECT_THAT(Problems("NE=+1"), ElementsAre("4: NE is not a decimal number: \"+1\""));
    EXPECT_THAT(Problems("NE=-"), ElementsAre("4: NE is not a decimal number: \"-\""));
    EXPECT_THAT(Problems("NE=2147483648"), ElementsAre("4: NE is not from -2147483648 to 2147483647: \"2147483648\""));
    EXPECT_THAT(Problems("NE=-2147483649"),
                ElementsAre("4: NE is not from -2147483648 to 2147483647: \"-2147483649\""));
    EXPECT_THAT(Problems("NE=99999999999999999999"),
                ElementsAre("4: NE is not from -2147483648 to 2147483647: \"99999999999999999999\""));
    EXPECT_THAT(Problems("PP=||4294967296|"),
                ElementsAre("6: PP:2 is not from -2147483648 to 4294967295: \"4294967296\""));
    EXPECT_THAT(Problems("PP=||x|"), ElementsAre("6: PP:2 is not a decimal number: \"x\""));
    EXPECT_THAT(Problems("PP=|||"), ElementsAre("6: PP:2 is empty, not a number"));
}

TEST(LevelCheck, ServicesAndMaintenanceLevelsHaveNumbersAndTexts) {
    EXPECT_THAT(Problems("TUNNEL=1|2|a|b|x|c|4"), ElementsAre("16: TUNNEL:4 is not a decimal number: \"x\""));
    EXPECT_THAT(Problems("NE=1,MD=x|md1"), ElementsAre("9: MD:0 is not a decimal number: \"x\""));
    EXPECT_THAT(Problems("NE=1,MD=3"), ElementsAre("10: MD has 1 sub-value, not 2"));
    EXPECT_THAT(Problems("NE=1,RMEP="), ElementsAre("11: RMEP has no value"));
    EXPECT_THAT(Problems("NE=1,VSI=4294967296"),
                ElementsAre("10: VSI is not from -2147483648 to 2147483647: \"4294967296\""));
}

TEST(LevelCheck, SubValuesAreCounted) {
    EXPECT_THAT(Problems("NE="), ElementsAre("4: NE has no value"));
    EXPECT_THAT(Problems("NE=1|2"), ElementsAre("6: NE has more than 1 sub-value"));
    EXPECT_THAT(Problems("PP=16||7"), ElementsAre("9: PP has 3 sub-values, not 4"));
    EXPECT_THAT(Problems("PP=16||7|a|b"), ElementsAre("12: PP has more than 4 sub-values"));
    EXPECT_THAT(Problems("PP=16|1026|7|a\\|b"), ElementsAre("17: PP has more than 4 sub-values"));
    EXPECT_THAT(Problems("PP=16|1025|7|a\\|b|c"), ElementsAre("19: PP has more than 5 sub-values"));
    EXPECT_THAT(Problems("AP=1|1025|9|a\\"), ElementsAre("13: AP has more than 3 sub-values"));
}

TEST(LevelCheck, SeveralProblemsAreAllTold) {
    EXPECT_THAT(Problems("NE=x,fr=2"),
                ElementsAre("4: NE is not a decimal number: \"x\"", "6: lower-case letter in the tag \"fr\""));
}

TEST(LevelCheck, OfVeryManyProblemsTheFirstAreTold) {
    const auto problems = Problems(std::string(100'000, ','));
    ASSERT_EQ(problems.size(), 8U);
    EXPECT_EQ(problems[6], "7: empty level");
    EXPECT_EQ(problems[7], "8: and more");
}

std::string FirstProblem(std::string_view text) {
    const auto problem = FindFirstProblem(text);
    return problem ? std::to_string(problem->column) + ": " + problem->text : "none";
}

TEST(FirstProblem, IsNoneForAGoodIdentifier) {
    EXPECT_EQ(FirstProblem("NE=1,PP=|1025|3|Åre"), "none");
}

TEST(FirstProblem, IsWhyATextCannotBeAnIdentifier) {
    using namespace std::string_view_literals;
    EXPECT_EQ(FirstProblem(""), "1: the line is empty");
    EXPECT_EQ(FirstProblem("NE=\0,XX=1"sv), "4: NUL byte");
    EXPECT_EQ(FirstProblem("NE=1,PP=||3|\xC5"), "13: not UTF-8");
}

TEST(FirstProblem, IsTheFirstOfSeveralInTheLevels) {
    EXPECT_EQ(FirstProblem("NE=x,fr=2"), "4: NE is not a decimal number: \"x\"");
    EXPECT_EQ(FirstProblem("NE=1,CP=-1,AS=3"), "12: unknown tag \"AS\"");
}

}  // namespace
}  // namespace NS_KX
