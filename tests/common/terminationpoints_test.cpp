// TP numbers in location words, compared with 64-bit arithmetic.
#include <array>
#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

#include <kx_domain_util/constanttables.h>
#include <kx_domain_util/utilcommon.h>

#include "support/generated.h"
#include "support/scale.h"

namespace {

using NS_DOMAIN::TPIndex;
using NS_TEST::Chance;
using NS_TEST::Scaled;
using NS_UTIL::UtilCommon;

constexpr std::int64_t TWO_TO_16 = 65536;
constexpr std::int64_t TWO_TO_32 = TWO_TO_16 * TWO_TO_16;

// Returns the low 32 bits of number.
std::int64_t Wrap(std::int64_t number) {
    const std::int64_t rest = number % TWO_TO_32;
    return rest < 0 ? rest + TWO_TO_32 : rest;
}

// Returns the 32 bits of word as a signed number.
std::int64_t AsSigned(std::int64_t word) {
    return word >= TWO_TO_32 / 2 ? word - TWO_TO_32 : word;
}

// A reference implementation of location words: 64-bit arithmetic, and tables searched row by row.
struct Arithmetic {
    static std::int64_t FbTypeOf(std::int64_t level) {
        for (const auto& row : NS_UTIL::GetLevelFbTypeRows()) {
            if (row.level == level) {
                return row.fbType;
            }
        }
        return level;
    }
    static std::int64_t LevelOf(std::int64_t fbType) {
        for (const auto& row : NS_UTIL::GetFbTypeLevelRows()) {
            if (row.fbType == fbType) {
                return row.level;
            }
        }
        return fbType;
    }
    static bool Set(std::int64_t& word, std::int64_t level, std::int64_t tpNo) {
        if (word > 0) {
            return false;
        }
        const std::int64_t typeBits = Wrap(FbTypeOf(level)) % TWO_TO_16 * TWO_TO_16;
        word = AsSigned(Wrap(word) | typeBits | Wrap(tpNo) % TWO_TO_16);
        return true;
    }
    static bool Get(std::int64_t word, std::int64_t level, std::int64_t& tpNo) {
        if (LevelOf(Wrap(word) / TWO_TO_16) != level) {
            return false;
        }
        tpNo = Wrap(word) % TWO_TO_16;
        return true;
    }
};

// Generates levels, location words and TP numbers: values near the limits of 16 and 32 bits, values of the tables, and
// random ones.
class Numbers {
public:
    std::int32_t Next() {
        static constexpr std::array<std::int32_t, 18> EDGES{0,
                                                            1,
                                                            -1,
                                                            5,
                                                            7,
                                                            32767,
                                                            32768,
                                                            65535,
                                                            65536,
                                                            65537,
                                                            -65536,
                                                            -65537,
                                                            12288,
                                                            12291,
                                                            53084165,
                                                            std::numeric_limits<std::int32_t>::max(),
                                                            std::numeric_limits<std::int32_t>::min(),
                                                            std::numeric_limits<std::int32_t>::min() + 1};
        switch (m_chance.Below(4)) {
            case 0:
                return m_chance.From(EDGES);
            case 1:
                return NS_UTIL::GetLevelFbTypeRows()[m_chance.Below(22)].level;
            case 2:  // a word with an FB type of the tables
                return NS_UTIL::GetFbTypeLevelRows()[m_chance.Below(120)].fbType * 65536 +
                       static_cast<std::int32_t>(m_chance.Below(65536));
            default:
                return static_cast<std::int32_t>(m_chance.Next());
        }
    }

private:
    Chance m_chance{11};
};

class LocationWords : public testing::Test {
protected:
    ~LocationWords() override { UtilCommon::Destroy(); }

    UtilCommon& m_utilCommon = *UtilCommon::Instance();
};

TEST_F(LocationWords, HoldTheFbTypeAndTheNumber) {
    int word = 0;
    EXPECT_TRUE(m_utilCommon.SetTpNoToLocation(word, 12313, 5));
    EXPECT_EQ(word, 53084165);
    int tpNo = 0;
    EXPECT_TRUE(m_utilCommon.GetTpNoFromLocation(word, 12313, tpNo));
    EXPECT_EQ(tpNo, 5);
    tpNo = 99;
    EXPECT_FALSE(m_utilCommon.GetTpNoFromLocation(word, 12311, tpNo));
    EXPECT_EQ(tpNo, 99);
}

TEST_F(LocationWords, AreNotOverwritten) {
    int word = 7;
    EXPECT_FALSE(m_utilCommon.SetTpNoToLocation(word, 12313, 5));
    EXPECT_EQ(word, 7);
}

TEST_F(LocationWords, KeepTheLow16BitsOfANumber) {
    int word = 0;
    EXPECT_TRUE(m_utilCommon.SetTpNoToLocation(word, 12313, 65537));
    EXPECT_EQ(word, 810 * 65536 + 1);
}

TEST_F(LocationWords, KeepTheBitsOfANegativeWord) {
    int word = std::numeric_limits<int>::min();
    EXPECT_TRUE(m_utilCommon.SetTpNoToLocation(word, 12313, 5));
    EXPECT_EQ(word, std::numeric_limits<int>::min() + 53084165);
    word = -1;
    EXPECT_TRUE(m_utilCommon.SetTpNoToLocation(word, 12313, 5));
    EXPECT_EQ(word, -1);
}

// A level whose number is also an FB type is stored under that number, but reads back as the level of the FB type.
TEST_F(LocationWords, OfALevelWithoutARow) {
    int word = 0;
    EXPECT_TRUE(m_utilCommon.SetTpNoToLocation(word, 12288, 5));
    EXPECT_EQ(word, 12288 * 65536 + 5);
    int tpNo = 0;
    EXPECT_FALSE(m_utilCommon.GetTpNoFromLocation(word, 12288, tpNo));
    EXPECT_TRUE(m_utilCommon.GetTpNoFromLocation(word, 12342, tpNo));
    EXPECT_EQ(tpNo, 5);

    word = 0;
    EXPECT_TRUE(m_utilCommon.SetTpNoToLocation(word, 999, 6));
    EXPECT_TRUE(m_utilCommon.GetTpNoFromLocation(word, 999, tpNo));
    EXPECT_EQ(tpNo, 6);
}

TEST_F(LocationWords, OfEveryFbTypeAreReadBack) {
    for (std::int64_t fbType = 0; fbType < TWO_TO_16; ++fbType) {
        const auto word = static_cast<int>(AsSigned(fbType * TWO_TO_16 + (fbType * 7 + 3) % TWO_TO_16));
        const auto level = static_cast<int>(Arithmetic::LevelOf(fbType));
        int tpNo = -1;
        ASSERT_TRUE(m_utilCommon.GetTpNoFromLocation(word, level, tpNo)) << fbType;
        ASSERT_EQ(tpNo, (fbType * 7 + 3) % TWO_TO_16);
        ASSERT_FALSE(m_utilCommon.GetTpNoFromLocation(word, level - 65536, tpNo)) << fbType;
    }
}

TEST_F(LocationWords, AreWhatArithmeticSays) {
    Numbers numbers;
    std::size_t stored = 0;
    std::size_t read = 0;
    for (std::size_t round = 0; round < Scaled(400000); ++round) {
        const int before = numbers.Next();
        const int level = numbers.Next();
        const int tpNo = numbers.Next();

        int word = before;
        std::int64_t expectedWord = before;
        const bool isSet = m_utilCommon.SetTpNoToLocation(word, level, tpNo);
        ASSERT_EQ(isSet, Arithmetic::Set(expectedWord, level, tpNo)) << before << ' ' << level << ' ' << tpNo;
        ASSERT_EQ(word, expectedWord) << before << ' ' << level << ' ' << tpNo;
        stored += isSet ? 1 : 0;

        for (const int asked : {level, static_cast<int>(Arithmetic::LevelOf(Wrap(word) / TWO_TO_16))}) {
            int found = -7;
            std::int64_t expected = -7;
            const bool isFound = m_utilCommon.GetTpNoFromLocation(word, asked, found);
            ASSERT_EQ(isFound, Arithmetic::Get(word, asked, expected)) << word << ' ' << asked;
            ASSERT_EQ(found, expected) << word << ' ' << asked;
            read += isFound ? 1 : 0;
        }
    }
    EXPECT_GT(stored, Scaled(400000) / 8) << "too few words were free for this to say anything";
    EXPECT_GT(read, Scaled(400000) / 2);
}

class TpNumbers : public LocationWords {
protected:
    // The TP's location words in the order in which they are tried.
    static std::array<std::int32_t, 4> Words(const TPIndex& tp) { return {tp.vc4Id, tp.vc12Id, tp.vc3Id, tp.vc11Id}; }
    static TPIndex WithWords(std::int32_t first, std::int32_t second, std::int32_t third, std::int32_t fourth) {
        TPIndex tp;
        tp.vc4Id = first;
        tp.vc12Id = second;
        tp.vc3Id = third;
        tp.vc11Id = fourth;
        return tp;
    }
    using Four = std::array<std::int32_t, 4>;
};

TEST_F(TpNumbers, FillTheWordsInOrder) {
    TPIndex tp;
    EXPECT_TRUE(m_utilCommon.SetTpNo(tp, 12313, 1));
    EXPECT_EQ(Words(tp), (Four{810 * 65536 + 1, 0, 0, 0}));
    EXPECT_TRUE(m_utilCommon.SetTpNo(tp, 12311, 2));
    EXPECT_EQ(Words(tp), (Four{810 * 65536 + 1, 804 * 65536 + 2, 0, 0}));
    EXPECT_TRUE(m_utilCommon.SetTpNo(tp, 12313, 3));
    EXPECT_TRUE(m_utilCommon.SetTpNo(tp, 999, 4));
    const Four all{810 * 65536 + 1, 804 * 65536 + 2, 810 * 65536 + 3, 999 * 65536 + 4};
    EXPECT_EQ(Words(tp), all);
    EXPECT_FALSE(m_utilCommon.SetTpNo(tp, 12313, 5)) << "all four words are taken";
    EXPECT_EQ(Words(tp), all);

    EXPECT_EQ(m_utilCommon.GetTpNo(tp, 12313), 1) << "the first matching word counts";
    EXPECT_EQ(m_utilCommon.GetTpNo(tp, 12311), 2);
    EXPECT_EQ(m_utilCommon.GetTpNo(tp, 999), 4);
    EXPECT_EQ(m_utilCommon.GetTpNo(tp, 12342), 0);
}

TEST_F(TpNumbers, TouchNothingElse) {
    TPIndex tp;
    tp.reserved = 1;
    tp.reserved2 = 2;
    tp.neId = 3;
    tp.portLabel = "GE0/1";
    TPIndex expected = tp;
    expected.vc4Id = 810 * 65536 + 9;
    EXPECT_TRUE(m_utilCommon.SetTpNo(tp, 12313, 9));
    EXPECT_TRUE(tp == expected);
}

TEST_F(TpNumbers, SkipTakenWords) {
    TPIndex tp = WithWords(7, 0, 8, -1);
    EXPECT_TRUE(m_utilCommon.SetTpNo(tp, 12313, 5));
    EXPECT_EQ(Words(tp), (Four{7, 53084165, 8, -1}));
    EXPECT_TRUE(m_utilCommon.SetTpNo(tp, 12313, 6)) << "a negative word is free";
    EXPECT_EQ(Words(tp), (Four{7, 53084165, 8, -1}));
}

TEST_F(TpNumbers, BelowOneAreNotSet) {
    for (const int tpNo : {0, -3, std::numeric_limits<int>::min()}) {
        TPIndex tp = WithWords(0, -5, 0, 0);
        EXPECT_FALSE(m_utilCommon.SetTpNo(tp, 12313, tpNo)) << tpNo;
        EXPECT_EQ(Words(tp), (Four{0, -5, 0, 0}));
    }
}

TEST_F(TpNumbers, OfFreeWordsAreZeroForEveryLevel) {
    const TPIndex tp;
    for (int level = -3; level < 13000; ++level) {
        ASSERT_EQ(m_utilCommon.GetTpNo(tp, level), 0) << level;
    }
}

TEST_F(TpNumbers, AreWhatArithmeticSays) {
    Numbers numbers;
    for (std::size_t round = 0; round < Scaled(100000); ++round) {
        TPIndex tp = WithWords(numbers.Next(), numbers.Next(), numbers.Next(), numbers.Next());
        const int level = numbers.Next();
        const int tpNo = numbers.Next();
        Four expectedWords = Words(tp);
        bool expectedAnswer = false;
        for (std::int32_t& word : expectedWords) {
            std::int64_t wide = word;
            if (tpNo >= 1 && Arithmetic::Set(wide, level, tpNo)) {
                word = static_cast<std::int32_t>(wide);
                expectedAnswer = true;
                break;
            }
        }
        ASSERT_EQ(m_utilCommon.SetTpNo(tp, level, tpNo), expectedAnswer);
        ASSERT_EQ(Words(tp), expectedWords);

        std::int64_t expected = 0;
        for (const std::int32_t word : expectedWords) {
            if (Arithmetic::Get(word, level, expected)) {
                break;
            }
        }
        ASSERT_EQ(m_utilCommon.GetTpNo(tp, level), expected);
    }
}

}  // namespace
