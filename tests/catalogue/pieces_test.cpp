#include "catalogue/pieces.h"

#include <array>

#include <gtest/gtest.h>

namespace NS_KX {
namespace {

PieceName Name(std::string_view text) {
    return PieceName::Parse(text).value();
}

// "none" for a missing piece.
std::string Piece(std::string_view fdn, std::string_view name) {
    const std::string_view piece = FindPiece(fdn, Name(name));
    return piece.data() == nullptr ? "none" : std::string(piece);
}

std::optional<std::int32_t> Number(std::string_view fdn, std::string_view name) {
    return NumberOf(FindPiece(fdn, Name(name)));
}

bool Same(std::string_view one, std::string_view other) {
    AnyRecord first;
    AnyRecord second;
    return AreSame(one, other, NS_UTIL::Surroundings(), first, second);
}

TEST(Pieces, ANameIsATagAndMayHaveAnIndex) {
    EXPECT_EQ(Name("NE").index, std::nullopt);
    EXPECT_EQ(Name("PP:2").tag, "PP");
    EXPECT_EQ(Name("PP:2").index, 2U);
    for (const char* const text : {"", ":1", "pp", "PP:", "PP:x", "PP:-1", "PP:1:2", "P P", "PP:99999999999"}) {
        EXPECT_FALSE(PieceName::Parse(text)) << text;
    }
}

TEST(Pieces, AKnownPieceIsOneThatItsLevelMayHave) {
    for (const char* const text : {"NE", "NE:0", "PP:0", "PP:4", "TUNNEL:9", "PW:3"}) {
        EXPECT_TRUE(PieceName::ParseKnown(text)) << text;
    }
    for (const char* const text : {"XY", "NE:1", "PP:5", "MD:2"}) {
        EXPECT_FALSE(PieceName::ParseKnown(text)) << text;
    }
}

TEST(Pieces, APieceIsALevelOrASubValue) {
    EXPECT_EQ(Piece("NE=5,PP=16||2|a", "PP"), "16||2|a");
    EXPECT_EQ(Piece("NE=5,PP=16||2|a", "PP:1"), "");
    EXPECT_EQ(Piece("NE=5,PP=16||2|a", "PP:4"), "none");
    EXPECT_EQ(Piece("NE=5,PP=16||2|a", "LP"), "none");
    EXPECT_EQ(Piece("NE=5,S,S=3", "S"), "") << "the first of two levels with the same tag counts";
    EXPECT_EQ(Piece("", "NE"), "none");
}

TEST(Pieces, SeveralAreFoundAtOnce) {
    const PieceFinder finder({Name("PP:2"), Name("NE"), Name("NE"), Name("FR")});
    std::array<std::string_view, 4> found;
    finder.Find("NE=5,PP=16||2|a", found);
    EXPECT_EQ(found[0], "2");
    EXPECT_EQ(found[1], "5");
    EXPECT_EQ(found[2], "5");
    EXPECT_EQ(found[3].data(), nullptr);
}

TEST(Pieces, AreFoundWhateverTheOrderOfTheTags) {
    const PieceFinder finder({Name("NE"), Name("PP:2")});
    const auto find = [&](std::string_view fdn) {
        static TagOrder order;
        std::array<std::string_view, 2> found;
        const bool isKept = finder.Find(fdn, found, order);
        EXPECT_EQ(isKept, TagOrder().IsKeptBy(fdn)) << fdn;
        return std::string(found[0]) + (isKept ? " kept " : " odd ") + std::string(found[1]);
    };
    EXPECT_EQ(find("NE=5,PP=16||2|a"), "5 kept 2");
    EXPECT_EQ(find("PP=16||2|a,NE=5"), "5 odd 2");
    EXPECT_EQ(find("NE=5,XY=1,PP=16||2|a"), "5 odd 2");
    EXPECT_EQ(find("NE=5,PP=16||2|a,NE=6"), "5 odd 2") << "the rest is looked at too";
    EXPECT_EQ(find(""), " kept ");
}

TEST(Pieces, ANumberIsReadAsTheLibraryReadsIt) {
    EXPECT_EQ(Number("NE=5x", "NE"), 5);
    EXPECT_EQ(Number("NE=x", "NE"), 0);
    EXPECT_EQ(Number("NE=4294967297", "NE"), 1);
    EXPECT_EQ(Number("NE=-1", "NE"), std::nullopt);
    EXPECT_EQ(Number("PP=||4294967295|", "PP:2"), std::nullopt);
    EXPECT_EQ(Number("NE=", "NE"), std::nullopt);
    EXPECT_EQ(Number("FR=1", "NE"), std::nullopt);
}

TEST(Pieces, NoneIsAMissingPieceOrTheNumberMinusOne) {
    EXPECT_TRUE(SaysNone({}, true));
    EXPECT_TRUE(SaysNone({}, false));
    EXPECT_TRUE(SaysNone("-1", true));
    EXPECT_TRUE(SaysNone("4294967295", true));
    EXPECT_FALSE(SaysNone("-1", false)) << "a name";
    EXPECT_FALSE(SaysNone("", true)) << "there, and empty";
    EXPECT_FALSE(SaysNone("0", true));
}

TEST(Pieces, OnePieceIsReplaced) {
    EXPECT_EQ(ReplacePiece("NE=5,FR=1,S=3", Name("FR"), "12"), "NE=5,FR=12,S=3");
    EXPECT_EQ(ReplacePiece("NE=5,PP=16||2|a", Name("PP:1"), "1025"), "NE=5,PP=16|1025|2|a");
    EXPECT_EQ(ReplacePiece("NE=5", Name("FR"), "12"), "NE=5");
    EXPECT_EQ(ReplacePiece("NE=5,FR", Name("FR"), "12"), "NE=5,FR=12");
    EXPECT_EQ(ReplacePiece("NE=5,FR=", Name("FR"), "12"), "NE=5,FR=12");
}

TEST(Pieces, AnIdentifierLiesInItsContainersLevelByLevel) {
    EXPECT_TRUE(LiesIn("NE=5,FR=1,S=3,CP=-1,PP=16||2|", "NE=5,FR=1"));
    EXPECT_TRUE(LiesIn("NE=5,FR=1,S=3", "NE=5,S=3"));
    EXPECT_TRUE(LiesIn("NE=05,FR=1", "NE=5"));
    EXPECT_TRUE(LiesIn("NE=5", "NE=5"));
    EXPECT_FALSE(LiesIn("NE=5,FR=10", "NE=5,FR=1"));
    EXPECT_FALSE(LiesIn("NE=5,FR=1", "NE=5,FR=1,S=3"));
    EXPECT_FALSE(LiesIn("NE=5,MD=3|a", "NE=5,MD=3|b"));
    EXPECT_FALSE(LiesIn("NE=5,PP=16||2|", "NE=5,PP=16|0|2|")) << "an empty sub-value is not 0";
}

TEST(Pieces, ContainersOfVeryManyLevelsCountLikeOthers) {
    std::string fdn = "NE=5";
    std::string container;
    constexpr int COUNT = 200'000;
    for (int place = 0; place < COUNT; ++place) {
        fdn.append(",X").append(std::to_string(COUNT - place)).append("=1");
        container.append("X").append(std::to_string(place + 1)).append("=1,");
    }
    container += "NE=05";
    EXPECT_TRUE(LiesIn(fdn, container));
    EXPECT_FALSE(LiesIn("X200000=2," + fdn, container)) << "the first of two counts";
    EXPECT_FALSE(LiesIn(fdn, container + ",Y=1"));
}

TEST(Pieces, TwoTextsAreTheSameIfTheirRecordsAre) {
    EXPECT_TRUE(Same("NE=5,FR=1,S=3,CP=-1,PP=16||2|", "NE=5,S=3,FR=1,PP=16||2|"));
    EXPECT_TRUE(Same("NE=05", "NE=5"));
    EXPECT_FALSE(Same("NE=5,FR=1", "NE=5"));
    EXPECT_FALSE(Same("NE=5,MD=3|a,MA=4|b,MEP=7", "NE=5,MD=3|a,MA=4|b,RMEP=7"));
    EXPECT_FALSE(Same("XY=1", "XY=1")) << "the identifiers are of no kind";
}

}  // namespace
}  // namespace NS_KX
