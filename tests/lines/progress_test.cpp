#include "lines/progress.h"

#include <gtest/gtest.h>

namespace NS_KX {
namespace {

using std::chrono::duration;

constexpr std::size_t WIDE = 200;

TEST(ProgressText, GroupsNumbersAndTellsTheTimeLeft) {
    EXPECT_EQ(ProgressText({.bytes = 50, .totalBytes = 200, .lines = 1'234'567, .elapsed = duration<double>(2)}, WIDE),
              "[#######.......................] 25 %  1,234,567 lines, 617,283 lines/s, 6 s left");
}

TEST(ProgressText, CountsTimesInTheUnitsOfPeople) {
    const auto left = [](double seconds) {
        const std::string text =
            ProgressText({.bytes = 50, .totalBytes = 100, .elapsed = duration<double>(seconds)}, WIDE);
        return text.substr(text.rfind(", ") + 2);
    };
    EXPECT_EQ(left(59), "59 s left");
    EXPECT_EQ(left(60), "1 min left");
    EXPECT_EQ(left(125), "2 min 5 s left");
    EXPECT_EQ(left(3600), "1 h left");
    EXPECT_EQ(left(7384), "2 h 3 min left");
}

TEST(ProgressText, DoesNotGuessTheTimeLeft) {
    const auto text = [](std::uint64_t bytes, double seconds) {
        return ProgressText({.bytes = bytes, .totalBytes = 1000, .lines = 1, .elapsed = duration<double>(seconds)},
                            WIDE);
    };
    EXPECT_EQ(text(1, 10).find("left"), std::string::npos) << "too little is read";
    EXPECT_EQ(text(500, 0.1).find("left"), std::string::npos) << "too early";
    EXPECT_NE(text(500, 10).find("left"), std::string::npos);
}

TEST(ProgressText, OfAnInputOfUnknownSizeIsOnlyWhatIsDone) {
    EXPECT_EQ(ProgressText({.bytes = 50, .lines = 3000, .elapsed = duration<double>(2)}, WIDE),
              "3,000 lines, 1,500 lines/s");
    EXPECT_EQ(ProgressText({}, WIDE), "0 lines, 0 lines/s");
}

TEST(ProgressText, OfAnInputThatGrowsStaysAtItsEnd) {
    EXPECT_EQ(ProgressText({.bytes = 300, .totalBytes = 200, .lines = 1, .elapsed = duration<double>(2)}, WIDE),
              "[##############################] 100 %  1 lines, 0 lines/s, 0 s left");
}

TEST(ProgressText, FitsTheTerminal) {
    const ProgressState state{.bytes = 50, .totalBytes = 200, .lines = 1'234'567, .elapsed = duration<double>(2)};
    EXPECT_EQ(ProgressText(state, 60), "25 %  1,234,567 lines, 617,283 lines/s, 6 s left")
        << "there is no room for a bar";
    EXPECT_EQ(ProgressText(state, 10), "25 %  1,23");
}

}  // namespace
}  // namespace NS_KX
