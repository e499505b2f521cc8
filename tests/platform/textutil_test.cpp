#include <climits>
#include <cstdlib>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <kx_platform/textutil.h>

#include "support/chance.h"
#include "support/exacttext.h"
#include "support/scale.h"

namespace {

using NS_TEST::Chance;
using NS_TEST::ExactText;
using NS_TEST::ExactView;
using NS_TEST::Scaled;
using NS_UTIL::Int2Str;
using NS_UTIL::KEEP_EMPTY_TOKENS;
using NS_UTIL::Parser;
using NS_UTIL::SplitStringByTag;
using NS_UTIL::Str2Int;
using testing::ElementsAre;

using Texts = std::vector<std::string>;

Texts Split(const std::string& text, const std::string& separator) {
    Texts pieces;
    Parser::SplitStrByTag(ExactText(text), separator, pieces);
    return pieces;
}

TEST(SplitStrByTag, KeepsEmptyPiecesInTheirPlaces) {
    EXPECT_THAT(Split("16||0|", "|"), ElementsAre("16", "", "0", ""));
    EXPECT_THAT(Split("|16", "|"), ElementsAre("", "16"));
    EXPECT_THAT(Split("|", "|"), ElementsAre("", ""));
    EXPECT_THAT(Split("16", "|"), ElementsAre("16"));
}

TEST(SplitStrByTag, AppendsNothingOfAnEmptyText) {
    EXPECT_THAT(Split("", "|"), ElementsAre());
}

TEST(SplitStrByTag, AppendsToWhatIsThere) {
    Texts pieces{"old"};
    Parser::SplitStrByTag("a,b", ",", pieces);
    EXPECT_THAT(pieces, ElementsAre("old", "a", "b"));
}

TEST(SplitStrByTag, TakesSeparatorsOfSeveralCharacters) {
    EXPECT_THAT(Split("a::b:c:::d", "::"), ElementsAre("a", "b:c", ":d"));
    EXPECT_THAT(Split("::::", "::"), ElementsAre("", "", ""));
}

TEST(SplitStrByTag, SplitsNothingAtAnEmptySeparator) {
    EXPECT_THAT(Split("a,b", ""), ElementsAre("a,b"));
}

TEST(SplitStrByTag, KeepsBlanksAndNulCharacters) {
    EXPECT_THAT(Split(std::string(" a ,\0b", 6), ","), ElementsAre(" a ", std::string("\0b", 2)));
}

struct NameAndValue {
    bool answer;
    std::string name = "old";
    std::string value = "old";
};

NameAndValue Parse(const std::string& item, const std::string& separator) {
    NameAndValue parsed;
    parsed.answer = Parser::ParseItemNVByTag(ExactText(item), parsed.name, parsed.value, separator);
    return parsed;
}

TEST(ParseItemNVByTag, CutsAtTheFirstSeparator) {
    const NameAndValue parsed = Parse("PP=a=b", "=");
    EXPECT_TRUE(parsed.answer);
    EXPECT_EQ(parsed.name, "PP");
    EXPECT_EQ(parsed.value, "a=b");
}

TEST(ParseItemNVByTag, TakesAnItemWithoutSeparatorAsTheName) {
    const NameAndValue parsed = Parse("PP", "=");
    EXPECT_FALSE(parsed.answer);
    EXPECT_EQ(parsed.name, "PP");
    EXPECT_EQ(parsed.value, "");
}

TEST(ParseItemNVByTag, MayFindNameOrValueEmpty) {
    EXPECT_TRUE(Parse("=", "=").answer);
    EXPECT_EQ(Parse("=7", "=").name, "");
    EXPECT_EQ(Parse("=7", "=").value, "7");
    EXPECT_EQ(Parse("NE=", "=").value, "");
    EXPECT_FALSE(Parse("", "=").answer);
    EXPECT_EQ(Parse("", "=").name, "");
}

TEST(ParseItemNVByTag, TakesSeparatorsOfSeveralCharacters) {
    EXPECT_EQ(Parse("a=:=b", ":=").name, "a=");
    EXPECT_EQ(Parse("a=:=b", ":=").value, "b");
}

TEST(ParseItemNVByTag, CutsNothingAtAnEmptySeparator) {
    const NameAndValue parsed = Parse("NE=7", "");
    EXPECT_FALSE(parsed.answer);
    EXPECT_EQ(parsed.name, "NE=7");
    EXPECT_EQ(parsed.value, "");
}

TEST(SplitStringByTag, DropsEmptyTokens) {
    Texts tokens{"old"};
    EXPECT_TRUE(SplitStringByTag(ExactText(",1911,,1912,"), tokens, ',', {}));
    EXPECT_THAT(tokens, ElementsAre("old", "1911", "1912"));
}

TEST(SplitStringByTag, KeepsEmptyTokensWhenAskedTo) {
    std::bitset<8> options;
    options.set(KEEP_EMPTY_TOKENS);
    Texts tokens;
    EXPECT_TRUE(SplitStringByTag(ExactText(",1911,"), tokens, ',', options));
    EXPECT_THAT(tokens, ElementsAre("", "1911", ""));
}

TEST(SplitStringByTag, AnswersFalseWithoutATokenOfItsOwn) {
    Texts tokens{"old"};
    EXPECT_FALSE(SplitStringByTag("", tokens, ',', {}));
    EXPECT_FALSE(SplitStringByTag(",,", tokens, ',', {}));
    EXPECT_FALSE(SplitStringByTag("", tokens, ',', std::bitset<8>(1U << KEEP_EMPTY_TOKENS)));
    EXPECT_THAT(tokens, ElementsAre("old"));
}

TEST(SplitStringByTag, KeepsBlanks) {
    Texts tokens;
    EXPECT_TRUE(SplitStringByTag("1 , 2", tokens, ',', {}));
    EXPECT_THAT(tokens, ElementsAre("1 ", " 2"));
}

int ReadNumber(const std::string& text) {
    const int number = Str2Int(ExactView(text));
    int out = 77;
    Str2Int(ExactView(text), out);
    EXPECT_EQ(out, number) << "both overloads read the same number";
    return number;
}

TEST(Str2Int, ReadsNumbers) {
    EXPECT_EQ(ReadNumber("0"), 0);
    EXPECT_EQ(ReadNumber("12"), 12);
    EXPECT_EQ(ReadNumber("-1"), -1);
    EXPECT_EQ(ReadNumber("+5"), 5);
    EXPECT_EQ(ReadNumber("007"), 7);
    EXPECT_EQ(ReadNumber("2147483647"), INT_MAX);
    EXPECT_EQ(ReadNumber("-2147483648"), INT_MIN);
}

TEST(Str2Int, AcceptsLeadingBlanks) {
    EXPECT_EQ(ReadNumber(" \t\n\v\f\r-12"), -12);
    EXPECT_EQ(ReadNumber("\x01"
                         "12"),
              0);
}

TEST(Str2Int, StopsAtTheFirstCharacterThatIsNoDigit) {
    EXPECT_EQ(ReadNumber("12ab"), 12);
    EXPECT_EQ(ReadNumber("3.5"), 3);
    EXPECT_EQ(ReadNumber("0x10"), 0);
    EXPECT_EQ(ReadNumber("1 2"), 1);
    EXPECT_EQ(ReadNumber(std::string("1\0"
                                     "2",
                                     3)),
              1);
}

TEST(Str2Int, GivesZeroWithoutDigits) {
    EXPECT_EQ(ReadNumber(""), 0);
    EXPECT_EQ(ReadNumber("abc"), 0);
    EXPECT_EQ(ReadNumber("-"), 0);
    EXPECT_EQ(ReadNumber("- 1"), 0);
    EXPECT_EQ(ReadNumber("+-1"), 0);
    EXPECT_EQ(ReadNumber("--1"), 0);
    EXPECT_EQ(ReadNumber("   "), 0);
}

TEST(Str2Int, KeepsTheLowHalfOfLargeNumbers) {
    EXPECT_EQ(ReadNumber("4294967295"), -1);
    EXPECT_EQ(ReadNumber("4294967296"), 0);
    EXPECT_EQ(ReadNumber("2147483648"), INT_MIN);
    EXPECT_EQ(ReadNumber("-4294967297"), -1);
    EXPECT_EQ(ReadNumber("9223372036854775807"), -1);
    EXPECT_EQ(ReadNumber("9223372036854775808"), -1) << "the low 32 bits of the nearest 64-bit number";
    EXPECT_EQ(ReadNumber("-9223372036854775808"), 0);
    EXPECT_EQ(ReadNumber("-9223372036854775809"), 0);
    EXPECT_EQ(ReadNumber("99999999999999999999999999"), -1);
}

TEST(Str2Int, ReadsWhatStrtolReads) {
    static constexpr std::array<char, 16> LETTERS{'0', '1', '2', '4', '7',  '8', '9', '9',
                                                  '9', '-', '+', ' ', '\t', 'x', '.', '/'};
    Chance chance(51);
    for (std::size_t round = 0; round < Scaled(200000); ++round) {
        std::string text;
        for (std::size_t left = chance.Below(24); left > 0; --left) {
            text += chance.From(LETTERS);
        }
        const auto expected = static_cast<int>(static_cast<unsigned>(std::strtol(text.c_str(), nullptr, 10)));
        ASSERT_EQ(ReadNumber(text), expected) << testing::PrintToString(text);
    }
}

TEST(Str2Int, CanBeAskedAtCompileTime) {
    static_assert(Str2Int("1911,1912") == 1911);
    static_assert(Str2Int("-1") == -1);
}

TEST(Int2Str, WritesDecimals) {
    EXPECT_EQ(Int2Str(0), "0");
    EXPECT_EQ(Int2Str(-1), "-1");
    EXPECT_EQ(Int2Str(1234567), "1234567");
    EXPECT_EQ(Int2Str(INT_MAX), "2147483647");
    EXPECT_EQ(Int2Str(INT_MIN), "-2147483648");
}

TEST(Int2Str, IsUndoneByStr2Int) {
    Chance chance(52);
    for (std::size_t round = 0; round < Scaled(100000); ++round) {
        const auto number = static_cast<std::int32_t>(chance.Next());
        ASSERT_EQ(Str2Int(Int2Str(number)), number);
    }
}

}  // namespace
