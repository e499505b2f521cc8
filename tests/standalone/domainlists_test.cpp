#include <list>
#include <map>

#include <gmock/gmock.h>

#include <kx_domain_util/devicedomainmgr.h>
#include <kx_domain_util/netype.h>

#include "support.h"
#include "support/predicates.h"

namespace {

using namespace NS_STANDALONE;
using namespace NS_TEST;
using NS_UTIL::DeviceDomainMgr;
using Lists = std::map<std::string, std::list<int>>;

struct AllLists {
    AllLists() {
        DeviceDomainMgr::Instance()->GetDomainDevTypelistCache(neTypeLists);
        DeviceDomainMgr::Instance()->GetDomainEqtCache(equipmentTypes);
    }
    bool operator==(const AllLists&) const = default;

    Lists neTypeLists;
    Lists equipmentTypes;
};

class DomainLists : public testing::Test {
protected:
    ~DomainLists() override { DeviceDomainMgr::Destroy(); }

    TemporaryFolder m_folder;
    std::filesystem::path m_file =
        MakeInventory(m_folder / "a.db", {.neTypes = {},
                                          .nes = {},
                                          .domainMembers = {{DomainCache::NE_TYPE_LIST, "transmission", 9},
                                                            {DomainCache::NE_TYPE_LIST, "transmission", 3},
                                                            {DomainCache::EQUIPMENT_TYPE, "OTN", 65535},
                                                            {DomainCache::EQUIPMENT_TYPE, "own domain", 4}}});
};

TEST_F(DomainLists, AreLoaded) {
    const Host host(WithInventory(m_file));
    AllLists lists;
    EXPECT_EQ(lists.neTypeLists["transmission"], (std::list<int>{3, 9}));
    EXPECT_EQ(lists.equipmentTypes["OTN"], (std::list<int>{65535}));
    EXPECT_EQ(lists.equipmentTypes["own domain"], (std::list<int>{4}));
    EXPECT_TRUE(NS_UTIL::IsTransNE(3));
    EXPECT_FALSE(NS_UTIL::IsTransNE(4));
    EXPECT_TRUE(NS_UTIL::IsOTNNE(65535));
}

TEST_F(DomainLists, AreTakenBack) {
    { const Host host(WithInventory(m_file)); }
    EXPECT_EQ(AllLists().neTypeLists, Lists{});
    EXPECT_EQ(AllLists().equipmentTypes, Lists{});
}

TEST_F(DomainLists, AreLoadedAnew) {
    Host host(WithInventory(m_file));
    ReplaceInventory(m_file, {.neTypes = {},
                              .nes = {},
                              .domainMembers = {{DomainCache::NE_TYPE_LIST, "transmission", 5},
                                                {DomainCache::EQUIPMENT_TYPE, "WDM", 6}}});
    host.ReloadInventory();
    AllLists lists;
    EXPECT_EQ(lists.neTypeLists["transmission"], (std::list<int>{5}));
    EXPECT_EQ(lists.equipmentTypes["WDM"], (std::list<int>{6}));
    EXPECT_EQ(lists.equipmentTypes["OTN"], std::list<int>{});
    ASSERT_TRUE(lists.equipmentTypes.contains("own domain"));
    EXPECT_EQ(lists.equipmentTypes["own domain"], std::list<int>{});

    ReplaceInventory(m_file, {});
    host.ReloadInventory();
    EXPECT_EQ(AllLists().neTypeLists["transmission"], std::list<int>{});
    EXPECT_EQ(AllLists().equipmentTypes["own domain"], std::list<int>{});
}

TEST_F(DomainLists, StayWhenTheReloadFails) {
    Host host(WithInventory(m_file));
    const AllLists before;
    WriteFile(m_file, std::string(5000, 'x'));
    ErrorOf([&] { host.ReloadInventory(); });
    EXPECT_EQ(AllLists(), before);
}

TEST_F(DomainLists, AreLeftAloneByAHostWithoutInventory) {
    DeviceDomainMgr::Instance()->AddDomainEqtCache("OTN", {1});
    const AllLists before;
    {
        Host host(HostOptions{});
        host.ReloadInventory();
        EXPECT_EQ(AllLists(), before);
    }
    EXPECT_EQ(AllLists(), before);
}

// If predicates changed the lists, threads could not call them at the same time.
TEST_F(DomainLists, AreNotChangedByPredicates) {
    const Host host(WithInventory(m_file));
    const AllLists before;
    constexpr unsigned short UNKNOWN = 12345;
    for (const Predicate predicate : NE_TYPE_PREDICATES) {
        EXPECT_FALSE(predicate(UNKNOWN));
    }
    EXPECT_EQ(AllLists(), before);
}

}  // namespace
