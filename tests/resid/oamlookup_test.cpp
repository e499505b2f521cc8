// The look-up of the inventory for each OAM level. It needs no memory, but it needs the lock of the registry.
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <system_error>

#include <gtest/gtest.h>

#include <kx_domain_util/processexception.h>
#include <kx_domain_util/resIDUtil.h>

#include "support/allocations.h"
#include "support/failinglocks.h"
#include "support/services.h"

namespace {

using NS_BUNDLEMGR1::BundleMgr;
using NS_DOMAIN::MAIndex;
using NS_DOMAIN::MDIndex;
using NS_TEST::CountingInventory;
using NS_TEST::FailingAllocations;
using NS_TEST::FailingLocks;
using NS_TEST::Registration;
using NS_UTIL::InterfaceNotExistException;
using NS_UTIL::ResIDUtil;

// An inventory that makes memory or locks fail from its first answer on, and makes the next look-up search the
// registry.
template <class Failing>
class FailingInventory : public CountingInventory {
public:
    FailingInventory() : CountingInventory(0) {}

    bool IsOamNumberOmitted(int neId) override {
        if (!m_failing.has_value()) {
            BundleMgr::Instance()->RegisterService("Another", &m_another);
            m_failing.emplace();
        }
        return CountingInventory::IsOamNumberOmitted(neId);
    }

    std::optional<Failing> m_failing;

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
    // The first call allocates what later calls reuse.
    OamLookup() {
        CountingInventory inventory(0);
        const Registration registration("InventoryBufif", inventory);
        ResIDUtil::MAIndex2ResID(SampleMa(), m_fdn);
        m_fdn.reserve(100);
    }
    ~OamLookup() override { BundleMgr::Instance()->UnregisterService("Another"); }

    std::string m_fdn;
};

TEST_F(OamLookup, NeedsNoMemory) {
    CountingInventory inventory(0);
    const Registration registration("InventoryBufif", inventory);
    m_fdn.clear();
    {
        const FailingAllocations failing;
        ResIDUtil::MAIndex2ResID(SampleMa(), m_fdn);
    }
    EXPECT_EQ(m_fdn, "NE=6,MD=3|md1,MA=4|ma1");
}

TEST_F(OamLookup, NeedsNoMemoryWhenServicesChangedBetweenTwoQuestions) {
    FailingInventory<FailingAllocations> inventory;
    const Registration registration("InventoryBufif", inventory);
    m_fdn.clear();
    ResIDUtil::MAIndex2ResID(SampleMa(), m_fdn);
    const bool isExhausted = inventory.m_failing.has_value();
    inventory.m_failing.reset();
    EXPECT_TRUE(isExhausted);
    EXPECT_EQ(m_fdn, "NE=6,MD=3|md1,MA=4|ma1");
}

TEST_F(OamLookup, NeedsNoMemoryToSayThatThereIsNoInventory) {
    std::uint32_t code = 0;
    m_fdn.clear();
    {
        const FailingAllocations failing;
        try {
            ResIDUtil::MAIndex2ResID(SampleMa(), m_fdn);
        } catch (const InterfaceNotExistException& missing) {
            code = missing.m_code;
        }
    }
    EXPECT_EQ(code, 0x41180004U);
    EXPECT_EQ(m_fdn, "NE=6,MD=");
}

using OamLookupDeathTest = OamLookup;

// The look-up for an MD level may throw only that the inventory is missing; any other exception ends the process.
TEST_F(OamLookupDeathTest, ForAnMdLevelEndsTheProcess) {
    CountingInventory inventory(0);
    const Registration registration("InventoryBufif", inventory);
    const auto convert = [this](auto write) {
        const FailingLocks failing;
        try {
            write(m_fdn);
        } catch (...) {
            std::exit(0);  // the exception left the conversion
        }
    };
    EXPECT_DEATH(convert([](std::string& fdn) { ResIDUtil::MDIndex2ResID(MDIndex{}, fdn); }), "terminate called");
    EXPECT_DEATH(convert([](std::string& fdn) { ResIDUtil::MAIndex2ResID(SampleMa(), fdn); }), "terminate called");
}

// The look-up for an MA level lets every exception pass, whatever the record.
TEST_F(OamLookup, ForAnMaLevelLetsEverythingPass) {
    const auto expectPassing = [this](auto write, const auto& record) {
        FailingInventory<FailingLocks> inventory;
        const Registration registration("InventoryBufif", inventory);
        m_fdn.clear();
        EXPECT_THROW(write(record, m_fdn), std::system_error);
        inventory.m_failing.reset();
        BundleMgr::Instance()->UnregisterService("Another");  // it is a member of the inventory
        EXPECT_EQ(m_fdn, "NE=6,MD=3|md1,MA=");
    };
    NS_DOMAIN::MEPIndex mep;
    mep.neId = 6;
    mep.mdId = 3;
    mep.mdName = "md1";
    expectPassing(&ResIDUtil::MAIndex2ResID, SampleMa());
    expectPassing(&ResIDUtil::MepIndex2ResID, mep);
    expectPassing(&ResIDUtil::RmepIndex2ResID, mep);
}

}  // namespace
