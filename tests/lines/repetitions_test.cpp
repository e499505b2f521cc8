#include "lines/repetitions.h"

#include <gtest/gtest.h>

namespace NS_KX {
namespace {

TEST(Repetitions, AreCountedAfterTheFirstFewOfEachKind) {
    Repetitions repetitions;
    for (std::uint64_t count = 0; count < Repetitions::MOST_SHOWN; ++count) {
        EXPECT_TRUE(repetitions.IsShown("unknown tag \"X" + std::to_string(count) + "\""));
    }
    EXPECT_EQ(repetitions.Hidden(), 0U);
    EXPECT_FALSE(repetitions.IsShown("unknown tag \"Y\""));
    EXPECT_TRUE(repetitions.IsShown("the line is empty"));
    EXPECT_FALSE(repetitions.IsShown("unknown tag \"Z\""));
    EXPECT_EQ(repetitions.Hidden(), 2U);
}

}  // namespace
}  // namespace NS_KX
