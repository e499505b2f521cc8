#include "sample/splitmix64.h"

#include <array>

#include <gtest/gtest.h>

using NS_KX::SplitMix64;

TEST(SplitMix64, GivesTheNumbersOfTheAlgorithm) {
    SplitMix64 random(1234567);
    for (const std::uint64_t expected : {6457827717110365317U, 3203168211198807973U, 9817491932198370423U,
                                         4593380528125082431U, 16408922859458223821U}) {
        EXPECT_EQ(random.Next(), expected);
    }
}

TEST(SplitMix64, ReachesEveryNumberBelowTheBoundAndNoOther) {
    SplitMix64 random(1);
    std::array<int, 5> counts{};
    for (int draw = 0; draw < 5000; ++draw) {
        const std::uint32_t number = random.Below(5);
        ASSERT_LT(number, 5U);
        ++counts.at(number);
    }
    for (const int count : counts) {
        EXPECT_GT(count, 800);
    }
}

TEST(SplitMix64, BetweenIncludesBothEnds) {
    SplitMix64 random(2);
    bool hasLowest = false;
    bool hasHighest = false;
    for (int draw = 0; draw < 1000; ++draw) {
        const std::int32_t number = random.Between(-2, 1);
        ASSERT_GE(number, -2);
        ASSERT_LE(number, 1);
        hasLowest |= number == -2;
        hasHighest |= number == 1;
    }
    EXPECT_TRUE(hasLowest);
    EXPECT_TRUE(hasHighest);
    EXPECT_EQ(random.Between(7, 7), 7);
}
