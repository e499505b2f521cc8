#include <climits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <kx_domain_util/devicedomainmgr.h>

namespace {

using NS_UTIL::DeviceDomainMgr;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

using Domains = std::map<std::string, std::list<int>>;

// The two caches have the same shape; every test runs on each.
struct Cache {
    const char* name;
    void (DeviceDomainMgr::*add)(const std::string&, const std::list<int>&);
    bool (DeviceDomainMgr::*isIn)(const std::string&, int);
    void (DeviceDomainMgr::*get)(Domains&) const;
    void (DeviceDomainMgr::*getOther)(Domains&) const;
};

class DomainCache : public testing::TestWithParam<Cache> {
protected:
    ~DomainCache() override { DeviceDomainMgr::Destroy(); }

    static DeviceDomainMgr& Manager() { return *DeviceDomainMgr::Instance(); }
    static void Add(const std::string& domain, const std::list<int>& types) {
        (Manager().*GetParam().add)(domain, types);
    }
    static bool IsIn(const std::string& domain, int type) { return (Manager().*GetParam().isIn)(domain, type); }
    static Domains GetAll() {
        Domains domains{{"what stood here before", {1}}};
        (Manager().*GetParam().get)(domains);
        return domains;
    }
    static Domains GetAllOfTheOther() {
        Domains domains;
        (Manager().*GetParam().getOther)(domains);
        return domains;
    }
};

TEST_P(DomainCache, IsEmptyAtFirst) {
    EXPECT_THAT(GetAll(), IsEmpty());
}

TEST_P(DomainCache, KeepsListsInOrderAndNumbersGivenTwice) {
    Add("OTN", {30, 10, 20, 10});
    EXPECT_THAT(GetAll(), ElementsAre(Pair("OTN", ElementsAre(10, 10, 20, 30))));
}

TEST_P(DomainCache, ReplacesAList) {
    Add("OTN", {30, 10, 20, 10});
    Add("OTN", {5});
    EXPECT_THAT(GetAll(), ElementsAre(Pair("OTN", ElementsAre(5))));
    EXPECT_TRUE(IsIn("OTN", 5));
    EXPECT_FALSE(IsIn("OTN", 10));
    Add("OTN", {});
    EXPECT_THAT(GetAll(), ElementsAre(Pair("OTN", IsEmpty())));
}

TEST_P(DomainCache, FindsMembersAlone) {
    Add("access", {6, 8, INT_MAX, INT_MIN, -1});
    for (const int member : {6, 8, INT_MAX, INT_MIN, -1}) {
        EXPECT_TRUE(IsIn("access", member)) << member;
    }
    for (const int other : {5, 7, 9, 0, -2, INT_MAX - 1, INT_MIN + 1}) {
        EXPECT_FALSE(IsIn("access", other)) << other;
    }
    Add("access", {7});
    EXPECT_TRUE(IsIn("access", 7));
}

TEST_P(DomainCache, FindsEveryMemberOfALongList) {
    std::list<int> types;
    for (int type = 2000; type > 0; type -= 2) {
        types.push_back(type);
    }
    Add("OTN", types);
    for (int type = 0; type <= 2002; ++type) {
        EXPECT_EQ(IsIn("OTN", type), type % 2 == 0 && type > 0 && type <= 2000) << type;
    }
}

TEST_P(DomainCache, LeavesAnEmptyListOfAnUnknownDomainThatWasAskedFor) {
    EXPECT_FALSE(IsIn("never stored", 1));
    EXPECT_THAT(GetAll(), ElementsAre(Pair("never stored", IsEmpty())));
}

TEST_P(DomainCache, TellsDomainsApartByBytes) {
    Add("OTN", {1});
    EXPECT_FALSE(IsIn("otn", 1));
    EXPECT_FALSE(IsIn("OTN ", 1));
    EXPECT_FALSE(IsIn("", 1));
    EXPECT_FALSE(IsIn("\xC3\x84", 1));
    EXPECT_THAT(GetAll(), ElementsAre(Pair("", IsEmpty()), Pair("OTN", ElementsAre(1)), Pair("OTN ", IsEmpty()),
                                      Pair("otn", IsEmpty()), Pair("\xC3\x84", IsEmpty())));
}

TEST_P(DomainCache, IsIndependentOfTheOther) {
    Add("OTN", {1});
    EXPECT_FALSE(IsIn("asked for", 1));
    EXPECT_THAT(GetAllOfTheOther(), IsEmpty());
}

TEST_P(DomainCache, HandsOutACopy) {
    Add("OTN", {1});
    Domains copy = GetAll();
    copy["OTN"].push_back(2);
    EXPECT_FALSE(IsIn("OTN", 2));
}

TEST_P(DomainCache, IsEmptyAfterDestroy) {
    Add("OTN", {1});
    DeviceDomainMgr::Destroy();
    EXPECT_THAT(GetAll(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Of, DomainCache,
    testing::Values(Cache{"NETypes", &DeviceDomainMgr::AddDomainDevTypelistCache,
                          &DeviceDomainMgr::isInDomainDevTypelistCache, &DeviceDomainMgr::GetDomainDevTypelistCache,
                          &DeviceDomainMgr::GetDomainEqtCache},
                    Cache{"EquipmentTypes", &DeviceDomainMgr::AddDomainEqtCache, &DeviceDomainMgr::isInDomainEqtCache,
                          &DeviceDomainMgr::GetDomainEqtCache, &DeviceDomainMgr::GetDomainDevTypelistCache}),
    [](const auto& cache) { return std::string(cache.param.name); });

TEST(DeviceDomainMgr, IsOneUntilDestroyed) {
    DeviceDomainMgr* const instance = DeviceDomainMgr::Instance();
    ASSERT_NE(instance, nullptr);
    EXPECT_EQ(DeviceDomainMgr::Instance(), instance);
    DeviceDomainMgr::Destroy();
    DeviceDomainMgr::Destroy();  // nothing is left to delete
    EXPECT_NE(DeviceDomainMgr::Instance(), nullptr);
    DeviceDomainMgr::Destroy();
}

}  // namespace
