#include <set>

#include <gtest/gtest.h>

#include <kx_domain_util/portrules.h>

namespace {

using NS_UTIL::PORT_RULES;
using NS_UTIL::PortRules;
using NS_UTIL::PortRulesOf;

// The FB types for which `rule` holds.
std::set<int> TypesWith(bool PortRules::*rule) {
    std::set<int> types;
    for (const PortRules& rules : PORT_RULES) {
        if (PortRulesOf(rules.fbType).*rule) {
            types.insert(rules.fbType);
        }
    }
    return types;
}

TEST(PortRules, HoldForTheirFbTypes) {
    EXPECT_EQ(TypesWith(&PortRules::keepsShelf), (std::set{65543, 65547, 65549, 65562, 65571, 65635}));
    EXPECT_EQ(TypesWith(&PortRules::hasSlotZero), (std::set{0, 65547}));
    EXPECT_EQ(TypesWith(&PortRules::hasNoNamedSlot), (std::set{65547, 65549}));
    EXPECT_EQ(TypesWith(&PortRules::hasEscapedName), (std::set{1025}));
}

TEST(PortRules, AreNoneForOtherFbTypes) {
    for (const int fbType : {-1, 1, 1024, 1026, 65542, 65544, 65636}) {
        const PortRules rules = PortRulesOf(fbType);
        EXPECT_EQ(rules.fbType, fbType);
        EXPECT_FALSE(rules.keepsShelf || rules.hasSlotZero || rules.hasNoNamedSlot || rules.hasEscapedName) << fbType;
    }
}

}  // namespace
