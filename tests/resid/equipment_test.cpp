#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <kx_domain_util/resIDUtil.h>

#include "support/exacttext.h"
#include "support/generated.h"
#include "support/recordfields.h"
#include "support/scale.h"
#include "support/services.h"

namespace {

using NS_TEST::Chance;
using NS_TEST::ExactText;
using NS_TEST::RecordingInventory;
using NS_TEST::Registration;
using NS_TEST::Scaled;
using NS_UTIL::ResIDUtil;
using testing::ElementsAre;

using Query = RecordingInventory::Query;

TEST(CardWriter, AsksTheInventoryAtEveryCall) {
    RecordingInventory inventory(RecordingInventory::Types{{12, 1911}});
    const Registration registration("InventoryBufif", inventory);
    const NS_DOMAIN::CardIndex card{0, 12, 1, 3};
    std::string fdn;

    ResIDUtil::CardIndex2ResID(card, fdn);
    EXPECT_EQ(fdn, "NE=12,FR=1,S=3,CP=-1,SS=-1,SC=-1");
    inventory.m_types[12] = 1914;
    ResIDUtil::CardIndex2ResID(card, fdn);
    EXPECT_EQ(fdn, "NE=12,FR=1,S=3,CP=-1");

    EXPECT_THAT(inventory.m_queries, ElementsAre(Query{12, 0, true}, Query{12, 0, true}));
    EXPECT_TRUE(inventory.m_questions.empty()) << "the NE type decides alone";
}

// The library does not catch what an inventory throws.
TEST(CardWriter, LetsTheInventorysExceptionPass) {
    struct Failing : RecordingInventory {
        bool QueryNEType(std::int64_t /*neId*/, std::uint32_t& /*neType*/, bool /*flag*/) override { throw 7; }
    } inventory;
    const Registration registration("InventoryBufif", inventory);
    std::string fdn = "old";

    EXPECT_THROW(ResIDUtil::CardIndex2ResID({0, 12, 1, 3}, fdn), int);
    EXPECT_EQ(fdn, "NE=12,FR=1,S=3,CP=-1");
}

TEST(EquipmentReaders, SetNothingButTheirOwnFields) {
    const ExactText fdn("ONE=1,OS=2,NE=3,FR=4,S=5,CP=6,SS=7,SC=8,PP=9|9|9|9");
    NS_DOMAIN::CardIndex card{100, 101, 102, 103};
    NS_DOMAIN::SlotIndex slot{100, 101, 102, 103, 104};

    ResIDUtil::ResID2CardIndex(fdn, card);
    ResIDUtil::ResID2SlotIndex(fdn, slot);

    EXPECT_EQ(card, (NS_DOMAIN::CardIndex{100, 3, 4, 5}));
    EXPECT_EQ(slot, (NS_DOMAIN::SlotIndex{100, 3, 4, 5, 104}));
}

// Every number except -1 is read back.
TEST(EquipmentConversions, GiveTheRecordBack) {
    RecordingInventory inventory;
    const Registration registration("InventoryBufif", inventory);
    Chance chance(21);
    const auto number = [&chance] { return static_cast<std::int32_t>(chance.Next()); };
    std::string fdn;
    for (std::size_t round = 0; round < Scaled(5000) && !HasFailure(); ++round) {
        inventory.m_queries.clear();
        const NS_DOMAIN::OSIndex os{number()};
        const NS_DOMAIN::ONEIndex one{0, number()};
        const NS_DOMAIN::NEIndex ne{0, number()};
        const NS_DOMAIN::ShelfIndex shelf{0, number(), number()};
        const NS_DOMAIN::SlotIndex subSlot{0, number(), number(), number(), number()};
        const NS_DOMAIN::CardIndex card{0, number(), number(), number()};
        NS_DOMAIN::OSIndex osAgain;
        NS_DOMAIN::ONEIndex oneAgain;
        NS_DOMAIN::NEIndex neAgain;
        NS_DOMAIN::ShelfIndex shelfAgain;
        NS_DOMAIN::SlotIndex subSlotAgain;
        NS_DOMAIN::CardIndex cardAgain;

        ResIDUtil::OSIndex2ResID(os, fdn);
        ResIDUtil::ResID2OSIndex(ExactText(fdn), osAgain);
        EXPECT_EQ(osAgain, os) << fdn;
        ResIDUtil::ONEIndex2ResID(one, fdn);
        ResIDUtil::ResID2ONEIndex(ExactText(fdn), oneAgain);
        EXPECT_EQ(oneAgain, one) << fdn;
        ResIDUtil::NEIndex2ResID(ne, fdn);
        ResIDUtil::ResID2NEIndex(ExactText(fdn), neAgain);
        EXPECT_EQ(neAgain, ne) << fdn;
        ResIDUtil::ShelfIndex2ResID(shelf, fdn);
        ResIDUtil::ResID2ShelfIndex(ExactText(fdn), shelfAgain);
        EXPECT_EQ(shelfAgain, shelf) << fdn;
        ResIDUtil::SubSlotIndex2ResID(subSlot, fdn);
        ResIDUtil::ResID2SubSlotIndex(ExactText(fdn), subSlotAgain);
        EXPECT_EQ(subSlotAgain, subSlot) << fdn;
        ResIDUtil::CardIndex2ResID(card, fdn);
        ResIDUtil::ResID2CardIndex(ExactText(fdn), cardAgain);
        EXPECT_EQ(cardAgain, card) << fdn;
    }
}

}  // namespace
