#include "frame/inventory.h"

#include <climits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <kx_domain_util/processexception.h>

#include "support/services.h"

namespace {

using NS_TEST::RecordingInventory;
using NS_TEST::Registration;
using NS_UTIL::NS_FRAME::QueryNEType;
using testing::ElementsAre;

using Query = RecordingInventory::Query;

TEST(QueryNEType, TakesTheLowHalfOfTheAnswer) {
    RecordingInventory inventory(RecordingInventory::Types{{5, 0xFFFF0777U}, {-7, 65535}});
    const Registration registration("InventoryBufif", inventory);
    EXPECT_EQ(QueryNEType(5), 0x0777);
    EXPECT_EQ(QueryNEType(-7), 65535);
    EXPECT_EQ(QueryNEType(6), 0) << "unknown";
    EXPECT_EQ(QueryNEType(INT_MIN), 0);
    EXPECT_THAT(inventory.m_queries,
                ElementsAre(Query{5, 0, true}, Query{-7, 0, true}, Query{6, 0, true}, Query{INT_MIN, 0, true}));
}

TEST(QueryNEType, ThrowsWithoutAnInventory) {
    EXPECT_THROW(QueryNEType(5), NS_UTIL::InterfaceNotExistException);
}

}  // namespace
