#include "frame/serviceaccess.h"

#include <system_error>

#include <gtest/gtest.h>

#include "support/failinglocks.h"
#include "support/services.h"

namespace {

using NS_BUNDLEMGR1::NULLServiceInterface;
using NS_SERVICE::DAWSvcInterface;
using NS_SERVICE::InventoryBufif;
using NS_TEST::FailingLocks;
using NS_TEST::RecordingDataAccess;
using NS_TEST::RecordingInventory;
using NS_TEST::Registration;
using NS_UTIL::InterfaceNotExistException;
using NS_UTIL::NS_FRAME::GetDefaultService;
using NS_UTIL::NS_FRAME::ServiceAccess;

InventoryBufif* Look() {
    return ServiceAccess<InventoryBufif>().TryGet();
}

TEST(ServiceAccess, FindsAServiceByItsType) {
    RecordingDataAccess dataAccess;
    RecordingInventory inventory;
    const Registration first("any name", dataAccess);
    const Registration second("any other name", inventory);
    EXPECT_EQ(Look(), &inventory);
    EXPECT_EQ(ServiceAccess<DAWSvcInterface>().TryGet(), &dataAccess);
}

TEST(ServiceAccess, FindsNoServiceOfAnotherTypeUnderItsName) {
    RecordingDataAccess dataAccess;
    const Registration registration("InventoryBufif", dataAccess);
    EXPECT_EQ(Look(), nullptr);
}

TEST(ServiceAccess, FindsTheFirstOfSeveral) {
    RecordingInventory first;
    RecordingInventory second;
    const Registration a("z", first);
    {
        const Registration b("a", second);
        EXPECT_EQ(Look(), &first);
        EXPECT_EQ(Look(), &first) << "from the buffer";
    }
    NS_BUNDLEMGR1::BundleMgr::Instance()->RegisterService("z", &second);
    EXPECT_EQ(Look(), &second);
}

TEST(ServiceAccess, LooksAnewEachTime) {
    EXPECT_EQ(Look(), nullptr);
    RecordingInventory first;
    {
        const Registration registration("InventoryBufif", first);
        EXPECT_EQ(Look(), &first);
    }
    EXPECT_EQ(Look(), nullptr);
    RecordingInventory second;
    const Registration registration("InventoryBufif", second);
    EXPECT_EQ(Look(), &second);
}

TEST(ServiceAccess, FindsBothInterfacesOfOneService) {
    struct Both : RecordingInventory, RecordingDataAccess {
    } both;
    const Registration registration("both", static_cast<RecordingDataAccess&>(both));
    EXPECT_EQ(Look(), static_cast<InventoryBufif*>(&both));
    EXPECT_EQ(ServiceAccess<DAWSvcInterface>().TryGet(), static_cast<DAWSvcInterface*>(&both));
}

TEST(ServiceAccess, TellsTheObjectOfTheService) {
    RecordingInventory inventory;
    ServiceAccess<InventoryBufif> missing;
    EXPECT_EQ(missing.TryGet(), nullptr);
    EXPECT_EQ(missing.GetServiceObject(), nullptr);
    const Registration registration("name", inventory);
    for (int look = 0; look < 2; ++look) {
        ServiceAccess<InventoryBufif> access;
        access.Get();
        ASSERT_NE(access.GetServiceObject(), nullptr);
        EXPECT_EQ(access.GetServiceObject()->GetObjectName(), "name");
        EXPECT_TRUE(NS_BUNDLEMGR1::ReadPin::IsPinned(access.GetServiceObject()));
    }
}

TEST(ServiceAccess, ForgetsTheObjectOfAServiceThatWentAway) {
    RecordingInventory inventory;
    ServiceAccess<InventoryBufif> access;
    {
        const Registration registration("name", inventory);
        EXPECT_EQ(access.TryGet(), &inventory);
    }
    EXPECT_EQ(access.TryGet(), nullptr);
    EXPECT_EQ(access.GetServiceObject(), nullptr);
}

TEST(ServiceAccess, ThrowsForAMissingService) {
    ServiceAccess<InventoryBufif> access;
    for (const auto get : {&ServiceAccess<InventoryBufif>::Get, &ServiceAccess<InventoryBufif>::GetLettingAllPass}) {
        try {
            (access.*get)();
            ADD_FAILURE() << "there is no inventory";
        } catch (const InterfaceNotExistException& missing) {
            EXPECT_EQ(missing.m_code, 0x41180004U);
            EXPECT_EQ(missing.m_text1.str(), "");
            EXPECT_EQ(missing.m_text4.str(), "");
        }
    }
}

TEST(ServiceAccess, HoldsNoLockWhileTheServiceIsUsed) {
    RecordingInventory inventory;
    const Registration registration("InventoryBufif", inventory);
    for (int look = 0; look < 2; ++look) {
        ServiceAccess<InventoryBufif> access;
        access.Get();
        ASSERT_TRUE(NS_BUNDLEMGR1::_g_actualmutex.try_lock());
        NS_BUNDLEMGR1::_g_actualmutex.unlock();
    }
}

TEST(DefaultService, IsOneForEachType) {
    auto* const service = GetDefaultService<InventoryBufif>();
    EXPECT_NE(dynamic_cast<NULLServiceInterface*>(service), nullptr);
    EXPECT_STREQ(service->GetName(), "NULLServiceInterface!");
    EXPECT_EQ(GetDefaultService<InventoryBufif>(), service);
    EXPECT_NE(GetDefaultService<DAWSvcInterface>(), service);
    ServiceAccess<InventoryBufif> access;
    EXPECT_EQ(access.TryGet(), nullptr) << "the service is no inventory";
}

// A search whose lock fails. Apart from a missing service, nothing else can go wrong in a search.
class FailingSearch : public testing::Test {
protected:
    RecordingInventory m_inventory;
    Registration m_registration{"InventoryBufif", m_inventory};
    ServiceAccess<InventoryBufif> m_access;
};
using FailingSearchDeathTest = FailingSearch;

TEST_F(FailingSearchDeathTest, EndsTheProcessOfGet) {
    EXPECT_DEATH(
        {
            const FailingLocks failing;
            m_access.Get();
        },
        "terminate called");
}

TEST_F(FailingSearchDeathTest, EndsTheProcessOfTryGet) {
    EXPECT_DEATH(
        {
            const FailingLocks failing;
            m_access.TryGet();
        },
        "terminate called");
}

TEST_F(FailingSearch, PassesGetLettingAllPass) {
    {
        const FailingLocks failing;
        EXPECT_THROW(m_access.GetLettingAllPass(), std::system_error);
    }
    EXPECT_EQ(&m_access.GetLettingAllPass(), &m_inventory) << "the next search finds it";
}

}  // namespace
