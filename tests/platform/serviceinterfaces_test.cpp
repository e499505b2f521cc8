#include <memory>

#include <gtest/gtest.h>

#include <kx_platform/dawsvcinterface.h>
#include <kx_platform/inventorybufif.h>
#include <kx_platform/logsvcinterface.h>

#include "support/services.h"

namespace {

using NS_BUNDLEMGR1::ServiceInterface;

// The platform holds services by their base class, and casts them to find their type. It deletes nothing that it does
// not own.
TEST(ServiceInterfaces, AreToldApartByTheirType) {
    const std::unique_ptr<ServiceInterface> inventory = std::make_unique<NS_TEST::RecordingInventory>();
    const std::unique_ptr<ServiceInterface> dataAccess = std::make_unique<NS_TEST::RecordingDataAccess>();
    const std::unique_ptr<ServiceInterface> log = std::make_unique<NS_TEST::RecordingLog>();
    EXPECT_NE(dynamic_cast<NS_SERVICE::InventoryBufif*>(inventory.get()), nullptr);
    EXPECT_EQ(dynamic_cast<NS_SERVICE::DAWSvcInterface*>(inventory.get()), nullptr);
    EXPECT_NE(dynamic_cast<NS_SERVICE::DAWSvcInterface*>(dataAccess.get()), nullptr);
    EXPECT_EQ(dynamic_cast<NS_SERVICE::LogSvcInterface*>(dataAccess.get()), nullptr);
    EXPECT_NE(dynamic_cast<NS_SERVICE::LogSvcInterface*>(log.get()), nullptr);
    EXPECT_EQ(dynamic_cast<NS_SERVICE::InventoryBufif*>(log.get()), nullptr);
}

TEST(ServiceInterfaces, HaveTheDefaultsOfTheirBase) {
    NS_TEST::RecordingInventory inventory;
    EXPECT_EQ(inventory.GetSelf(), &inventory);
    EXPECT_STREQ(inventory.GetName(), "");
    EXPECT_EQ(inventory.GetState(), 0);
    inventory.Release();  // does not delete the test's object
    EXPECT_EQ(inventory.GetSelf(), &inventory);
}

}  // namespace
