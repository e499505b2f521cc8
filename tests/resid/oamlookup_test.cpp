// What becomes of an exception that escapes while the inventory is looked up for an OAM identifier: here, memory that
// runs out while the registry is searched.
#include <new>
#include <optional>

#include <gtest/gtest.h>

#include <kx_domain_util/resIDUtil.h>

#include "support/allocations.h"
#include "support/services.h"

namespace {

using NS_BUNDLEMGR1::BundleMgr;
using NS_DOMAIN::MAIndex;
using NS_DOMAIN::MDIndex;
using NS_TEST::CountingInventory;
using NS_TEST::FailingAllocations;
using NS_TEST::Registration;
using NS_UTIL::ResIDUtil;

// Memory fails from its first answer on. It also makes the next look-up search the registry, which takes memory.
class ExhaustingInventory : public CountingInventory {
public:
    using CountingInventory::CountingInventory;

    bool IsOamNumberOmitted(int neId) override {
        BundleMgr::Instance()->RegisterService("Another", &m_another);
        m_failing.emplace();
        return CountingInventory::IsOamNumberOmitted(neId);
    }

    std::optional<FailingAllocations> m_failing;

private:
    CountingInventory m_another{0};
};

MAIndex SampleMa() {
    MAIndex ma;
    ma.neId = 6;
    ma.mdId = 3;
    ma.mdName = "md1";
    ma.maId = 4;
    ma.maName = "ma1";
    return ma;
}

class OamLookup : public testing::Test {
protected:
    // Makes what stays of a first call.
    OamLookup() {
        CountingInventory inventory(0);
        const Registration registration("InventoryBufif", inventory);
        ResIDUtil::MAIndex2ResID(SampleMa(), m_fdn);
        m_fdn.reserve(100);
    }
    ~OamLookup() override { BundleMgr::Instance()->UnregisterService("Another"); }

    std::string m_fdn;
};

TEST_F(OamLookup, NeedsNoMemoryOnceTheInventoryIsFound) {
    CountingInventory inventory(0);
    const Registration registration("InventoryBufif", inventory);
    ResIDUtil::MAIndex2ResID(SampleMa(), m_fdn);
    m_fdn.clear();
    {
        const FailingAllocations failing;
        ResIDUtil::MAIndex2ResID(SampleMa(), m_fdn);
    }
    EXPECT_EQ(m_fdn, "NE=6,MD=3|md1,MA=4|ma1");
}

using OamLookupDeathTest = OamLookup;

// The look-up for an MD level may only say that there is no inventory; anything else ends the process.
TEST_F(OamLookupDeathTest, ForAnMdLevelEndsTheProcess) {
    CountingInventory inventory(0);
    const Registration registration("InventoryBufif", inventory);
    MDIndex md;
    md.neId = 6;
    EXPECT_DEATH(
        {
            const FailingAllocations failing;
            try {
                ResIDUtil::MDIndex2ResID(md, m_fdn);
            } catch (...) {
                // Not reached: the exception does not come this far.
            }
        },
        "terminate");
    EXPECT_DEATH(
        {
            const FailingAllocations failing;
            try {
                ResIDUtil::MAIndex2ResID(SampleMa(), m_fdn);
            } catch (...) {
                // Not reached: the MD level comes first.
            }
        },
        "terminate");
}

// The look-up for an MA level lets everything pass.
TEST_F(OamLookup, ForAnMaLevelLetsExceptionsPass) {
    ExhaustingInventory inventory(0);
    const Registration registration("InventoryBufif", inventory);
    bool isPassed = false;
    try {
        ResIDUtil::MAIndex2ResID(SampleMa(), m_fdn);
    } catch (const std::bad_alloc&) {
        isPassed = true;
    }
    inventory.m_failing.reset();
    EXPECT_TRUE(isPassed);
    EXPECT_EQ(m_fdn, "NE=6,MD=3|md1,MA=");
}

}  // namespace
