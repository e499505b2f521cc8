#include "cli/missingnes.h"

#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace NS_KX::NS_KXDU {
namespace {

TEST(MissingNes, SayNothingWhenNoneIsMissing) {
    EXPECT_EQ(MissingNes().Text(), "");
}

TEST(MissingNes, NameASingleNe) {
    MissingNes missing;
    missing.Note(7);
    missing.Note(7);
    EXPECT_EQ(missing.Text(), "kxdu: NE 7 is not in the inventory: treated as NE type 0\n");
}

TEST(MissingNes, CountEachOnceAndNameTheLowest) {
    MissingNes missing;
    for (const int neId : {9, 7, 9, 8, 7}) {
        missing.Note(neId);
    }
    EXPECT_EQ(missing.Text(), "kxdu: 3 NEs, such as NE 7, are not in the inventory: treated as NE type 0\n");
}

TEST(MissingNes, NameTheConsequence) {
    MissingNes missing("left out");
    missing.Note(7);
    EXPECT_EQ(missing.Text(), "kxdu: NE 7 is not in the inventory: left out\n");
}

TEST(MissingNes, AreRememberedUpToALimit) {
    MissingNes missing;
    for (int neId = 0; neId < 100'000; ++neId) {
        missing.Note(neId);
    }
    EXPECT_EQ(missing.Text(),
              "kxdu: more than 10000 NEs, such as NE 0, are not in the inventory: treated as NE type 0\n");
}

TEST(MissingNes, AreCountedFromManyThreads) {
    MissingNes missing;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&missing] {
            for (int neId = 1; neId <= 1000; ++neId) {
                missing.Note(neId);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(missing.Text(), "kxdu: 1000 NEs, such as NE 1, are not in the inventory: treated as NE type 0\n");
}

}  // namespace
}  // namespace NS_KX::NS_KXDU
