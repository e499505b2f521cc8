#include "frame/configuration.h"

#include <gtest/gtest.h>

#include "support/services.h"

namespace {

using NS_TEST::Configuration;
using NS_UTIL::NS_FRAME::ReadCarrierProfile;
using NS_UTIL::NS_FRAME::SubSlotNETypes;

TEST(CarrierProfile, IsZeroWhenItCannotBeRead) {
    const Configuration configuration;
    EXPECT_EQ(ReadCarrierProfile(), 0);
    Configuration::Set("Telvandaire", "on");
    EXPECT_EQ(ReadCarrierProfile(), 0);
    Configuration::Set("Telvandaire", "-3");
    EXPECT_EQ(ReadCarrierProfile(), -3);
    Configuration::Remove("Telvandaire");
    EXPECT_EQ(ReadCarrierProfile(), 0);
}

TEST(SubSlotNETypes, ContainNothingWithoutTheItem) {
    const Configuration configuration;
    EXPECT_FALSE(SubSlotNETypes().Contains(0));
    Configuration::Set("NETypeListForSubSlot", "");
    EXPECT_FALSE(SubSlotNETypes().Contains(0));
    Configuration::Set("NETypeListForSubSlot", ",,");
    EXPECT_FALSE(SubSlotNETypes().Contains(0));
}

TEST(SubSlotNETypes, ContainTheNumbersOfTheList) {
    const Configuration configuration{{"NETypeListForSubSlot", ",1911,, 7x,65537,-1,"}};
    const SubSlotNETypes types;
    EXPECT_TRUE(types.Contains(1911));
    EXPECT_TRUE(types.Contains(7));
    EXPECT_FALSE(types.Contains(1)) << "65537 is no NE type";
    EXPECT_FALSE(types.Contains(65535)) << "-1 is no NE type";
    EXPECT_FALSE(types.Contains(191));
    EXPECT_FALSE(types.Contains(0)) << "empty pieces do not count";
}

TEST(SubSlotNETypes, StandAsTheyWereWhenTheyWereMade) {
    const Configuration configuration{{"NETypeListForSubSlot", "1911"}};
    const SubSlotNETypes before;
    Configuration::Set("NETypeListForSubSlot", "1912");
    const SubSlotNETypes after;
    EXPECT_TRUE(before.Contains(1911));
    EXPECT_FALSE(before.Contains(1912));
    EXPECT_TRUE(after.Contains(1912));
}

}  // namespace
