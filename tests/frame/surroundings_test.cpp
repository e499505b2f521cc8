#include <climits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <kx_domain_util/processexception.h>
#include <kx_domain_util/surroundings.h>

#include "support/services.h"

namespace {

using NS_TEST::Configuration;
using NS_TEST::RecordingDataAccess;
using NS_TEST::RecordingInventory;
using NS_TEST::Registration;
using NS_UTIL::InterfaceNotExistException;
using NS_UTIL::KnownNEType;
using NS_UTIL::Surroundings;
using testing::ElementsAre;
using testing::IsEmpty;

using Query = RecordingInventory::Query;

TEST(SystemSurroundings, TakeTheLowHalfOfAnNEType) {
    RecordingInventory inventory(RecordingInventory::Types{{5, 0xFFFF0777U}, {-7, 65535}});
    const Registration registration("InventoryBufif", inventory);
    const Surroundings& system = Surroundings::OfSystem();
    EXPECT_EQ(system.NEType(5), 0x0777);
    EXPECT_EQ(system.NEType(-7), 65535);
    EXPECT_EQ(system.NEType(6), 0) << "unknown";
    EXPECT_EQ(system.NEType(INT_MIN), 0);
    EXPECT_THAT(inventory.m_queries,
                ElementsAre(Query{5, 0, true}, Query{-7, 0, true}, Query{6, 0, true}, Query{INT_MIN, 0, true}));
}

TEST(SystemSurroundings, ThrowWhereAServiceIsMissing) {
    const Surroundings& system = Surroundings::OfSystem();
    EXPECT_THROW(static_cast<void>(system.NEType(5)), InterfaceNotExistException);
    EXPECT_THROW(static_cast<void>(system.SpellsOutSubSlot(5)), InterfaceNotExistException);
    EXPECT_THROW(static_cast<void>(system.IsMdNumberOmitted(5)), InterfaceNotExistException);
    EXPECT_THROW(static_cast<void>(system.IsMaNumberOmitted(5)), InterfaceNotExistException);
    EXPECT_THROW(system.AgentCarrierProfile(), InterfaceNotExistException);
}

TEST(SystemSurroundings, ReadTheConfigurationAtEachQuestion) {
    const Configuration configuration;
    RecordingInventory inventory(RecordingInventory::Types{{5, 1911}});
    const Registration registration("InventoryBufif", inventory);
    const Surroundings& system = Surroundings::OfSystem();
    EXPECT_EQ(system.CarrierProfile(), 0);
    EXPECT_FALSE(system.SpellsOutSubSlot(5));
    Configuration::Set("Telvandaire", "3");
    Configuration::Set("NETypeListForSubSlot", "7,1911");
    EXPECT_EQ(system.CarrierProfile(), 3);
    EXPECT_TRUE(system.SpellsOutSubSlot(5));
    EXPECT_THAT(inventory.m_queries, ElementsAre(Query{5, 0, true}, Query{5, 0, true})) << "asks even without a list";
}

TEST(Surroundings, KnowNothingByDefault) {
    const Surroundings surroundings;
    EXPECT_EQ(surroundings.CarrierProfile(), 0);
    EXPECT_EQ(surroundings.AgentCarrierProfile(), 0);
    EXPECT_THROW(static_cast<void>(surroundings.NEType(5)), InterfaceNotExistException);
    EXPECT_THROW(static_cast<void>(surroundings.SpellsOutSubSlot(5)), InterfaceNotExistException);
    EXPECT_THROW(static_cast<void>(surroundings.IsMdNumberOmitted(5)), InterfaceNotExistException);
    EXPECT_THROW(static_cast<void>(surroundings.IsMaNumberOmitted(5)), InterfaceNotExistException);
}

TEST(KnownNEType, IsTheTypeOfEveryNE) {
    EXPECT_EQ(KnownNEType(1911).NEType(5), 1911);
    EXPECT_EQ(KnownNEType(65535).NEType(-1), 65535);
    EXPECT_EQ(KnownNEType(65536 + 1911).NEType(5), 0) << "no NE type";
    EXPECT_EQ(KnownNEType(1911).CarrierProfile(), 0);
    EXPECT_THROW(static_cast<void>(KnownNEType(1911).SpellsOutSubSlot(5)), InterfaceNotExistException);
}

}  // namespace
