#include "sample/sampleinventoryservice.h"

#include <gtest/gtest.h>

using namespace NS_KX;

TEST(SampleInventoryService, AnswersAsTheInventorySays) {
    const SampleNetwork network(5);
    SampleInventoryService service(network);
    const auto inventory = network.MakeInventory(200);
    int omitted = 0;
    for (const auto& ne : inventory.nes) {
        std::uint32_t neType = 0;
        ASSERT_TRUE(service.QueryNEType(ne.neId, neType, true));
        EXPECT_EQ(neType, ne.neType);
        EXPECT_EQ(service.IsOamNumberOmitted(ne.neId), ne.oamNumberOmitted);
        EXPECT_EQ(service.IsTransMultiSubShelf(static_cast<unsigned long>(ne.neId), ne.neType), ne.multiSubShelf);
        omitted += ne.oamNumberOmitted ? 1 : 0;
    }
    EXPECT_GT(omitted, 0);
    EXPECT_LT(omitted, 200);
    for (const auto& type : inventory.neTypes) {
        EXPECT_EQ(service.IsIPServiceNEType(type.neType), type.ipService);
        EXPECT_EQ(service.IsKLVNEType(type.neType), type.klv);
    }
    EXPECT_FALSE(service.IsIPServiceNEType(1));
    EXPECT_FALSE(service.IsKLVNEType(1));
    EXPECT_FALSE(service.IsTransMultiSubShelf(1, 1));
}
