#include "sample/samplenetwork.h"

#include <algorithm>
#include <set>

#include <gtest/gtest.h>

#include <kx_domain_util/netype.h>

using namespace NS_KX;

namespace {

bool IsSortedById(const NS_STANDALONE::Inventory& inventory) {
    return std::is_sorted(inventory.nes.begin(), inventory.nes.end(),
                          [](const auto& left, const auto& right) { return left.neId < right.neId; });
}

}  // namespace

TEST(SampleNetwork, HasNesOfEveryType) {
    const SampleNetwork network(1);
    std::set<std::uint16_t> drawn;
    for (std::int32_t neId = 1; neId <= 2000; ++neId) {
        drawn.insert(network.NeType(neId).neType);
    }
    EXPECT_EQ(drawn.size(), SampleNeTypes().size());
}

TEST(SampleNetwork, HasTypesThatTheLibraryTellsApart) {
    const auto has = [](auto predicate) {
        const auto types = SampleNeTypes();
        return std::any_of(types.begin(), types.end(), [&](const auto& type) { return predicate(type.neType); });
    };
    EXPECT_TRUE(has(NS_UTIL::IsPTN41));
    EXPECT_TRUE(has(NS_UTIL::IsPTN31));
    EXPECT_TRUE(has(NS_UTIL::IsPTN470));
    EXPECT_TRUE(has(NS_UTIL::IsKLVByNEType));
}

TEST(SampleNetwork, ALargerInventoryBeginsWithTheSmallerOne) {
    const SampleNetwork network(7);
    const auto small = network.MakeInventory(50);
    const auto large = network.MakeInventory(100);
    ASSERT_EQ(small.nes.size(), 50U);
    ASSERT_EQ(large.nes.size(), 100U);
    EXPECT_TRUE(std::equal(small.nes.begin(), small.nes.end(), large.nes.begin()));
    EXPECT_EQ(small.neTypes, large.neTypes);
    EXPECT_TRUE(IsSortedById(large));
}

TEST(SampleNetwork, SeedsGiveDifferentNetworks) {
    EXPECT_NE(SampleNetwork(1).MakeInventory(50).nes, SampleNetwork(2).MakeInventory(50).nes);
}

TEST(SampleNetwork, DrawingAnNeDoesNotDependOnWhatWasDrawnBefore) {
    const SampleNetwork network(3);
    SampleNe fresh;
    network.DrawNe(17, fresh);
    SampleNe used;
    network.DrawNe(16, used);
    network.DrawNe(17, used);
    EXPECT_EQ(fresh.type, used.type);
    EXPECT_EQ(fresh.cards, used.cards);
    EXPECT_EQ(fresh.subSlots, used.subSlots);
    ASSERT_EQ(fresh.ports.size(), used.ports.size());
    for (std::size_t place = 0; place < fresh.ports.size(); ++place) {
        EXPECT_EQ(fresh.ports[place].index, used.ports[place].index);
    }
}

TEST(SampleNetwork, TypesInDomainListsAreNeTypes) {
    const auto inventory = SampleNetwork(1).MakeInventory(1);
    std::set<std::uint16_t> types;
    for (const auto& type : inventory.neTypes) {
        EXPECT_TRUE(types.insert(type.neType).second) << type.neType;
    }
    for (const auto& member : inventory.domainMembers) {
        EXPECT_TRUE(types.contains(member.neType)) << member.neType;
    }
}
