#include <limits>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <kx_domain_util/devicedomainmgr.h>
#include <kx_domain_util/netype.h>
#include <kx_domain_util/processexception.h>

#include "support/predicates.h"
#include "support/services.h"

namespace {

using NS_TEST::Predicate;
using NS_TEST::RecordingInventory;
using NS_TEST::Registration;
using NS_UTIL::DeviceDomainMgr;
using NS_UTIL::InterfaceNotExistException;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

using NETypes = std::set<unsigned>;
using Domains = std::map<std::string, std::list<int>>;

// All NE types for which predicate holds.
NETypes TypesOf(Predicate predicate) {
    NETypes types;
    for (unsigned type = 0; type <= std::numeric_limits<unsigned short>::max(); ++type) {
        if (predicate(static_cast<unsigned short>(type))) {
            types.insert(type);
        }
    }
    return types;
}

TEST(NETypesFixedInTheLibrary, AreTheseAndNoOthers) {
    EXPECT_EQ(TypesOf(&NS_UTIL::IsPTN41), (NETypes{1911, 1912, 1913}));
    EXPECT_EQ(TypesOf(&NS_UTIL::IsPTN31), NETypes{1335});
    EXPECT_EQ(TypesOf(&NS_UTIL::IsPTN470), NETypes{1888});
    EXPECT_EQ(TypesOf(&NS_UTIL::IsKLVByNEType), (NETypes{1887, 1895, 1908, 1947, 1948, 1971, 1972, 1978, 1982, 1987}));
}

struct Row {
    const char* name;
    Predicate predicate;
    bool isInNETypeList;  // else it is in the equipment-type list
    const char* domain;
};

class DomainPredicate : public testing::TestWithParam<Row> {
protected:
    ~DomainPredicate() override { DeviceDomainMgr::Destroy(); }

    static void Store(bool inNETypeList, const std::string& domain, const std::list<int>& types) {
        auto& manager = *DeviceDomainMgr::Instance();
        inNETypeList ? manager.AddDomainDevTypelistCache(domain, types) : manager.AddDomainEqtCache(domain, types);
    }
};

TEST_P(DomainPredicate, IsFalseBeforeAListIsLoaded) {
    EXPECT_FALSE(GetParam().predicate(5));
}

TEST_P(DomainPredicate, AnswersFromItsOwnList) {
    Store(GetParam().isInNETypeList, GetParam().domain, {5, 65535, -1, 65541});
    EXPECT_EQ(TypesOf(GetParam().predicate), (NETypes{5, 65535})) << "the type is compared as a number from 0 to 65535";
}

TEST_P(DomainPredicate, AnswersFromNoOtherCache) {
    Store(!GetParam().isInNETypeList, GetParam().domain, {5});
    EXPECT_FALSE(GetParam().predicate(5));
}

TEST_P(DomainPredicate, LeavesAnEmptyListUnderItsDomain) {
    EXPECT_FALSE(GetParam().predicate(5));
    Domains neTypes;
    Domains equipmentTypes;
    DeviceDomainMgr::Instance()->GetDomainDevTypelistCache(neTypes);
    DeviceDomainMgr::Instance()->GetDomainEqtCache(equipmentTypes);
    Domains& asked = GetParam().isInNETypeList ? neTypes : equipmentTypes;
    EXPECT_EQ(asked.count(GetParam().domain), 1U);
    EXPECT_THAT(asked[GetParam().domain], IsEmpty());
    EXPECT_THAT(GetParam().isInNETypeList ? equipmentTypes : neTypes, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Of, DomainPredicate,
    testing::Values(
        Row{"IsRouteNE", &NS_UTIL::IsRouteNE, true, "router and metro"},
        Row{"IsTransNE", &NS_UTIL::IsTransNE, true, "transmission"},
        Row{"IsAccessNE", &NS_UTIL::IsAccessNE, true, "access"},
        Row{"IsPTNClasssNE", &NS_UTIL::IsPTNClasssNE, false, "PTN"},
        Row{"IsPTNDMTNE", &NS_UTIL::IsPTNDMTNE, false, "PTNDMT"}, Row{"IsPTNNEOfPTN", &NS_UTIL::IsPTNNE, false, "PTN"},
        Row{"IsPTNNEOfPTNDMT", &NS_UTIL::IsPTNNE, false, "PTNDMT"}, Row{"IsMSTPNE", &NS_UTIL::IsMSTPNE, false, "MSTP"},
        Row{"IsIPMSTPNE", &NS_UTIL::IsIPMSTPNE, false, "MSTP"}, Row{"IsIPKLVNE", &NS_UTIL::IsIPKLVNE, false, "IPKLV"},
        Row{"IsKLV600NE", &NS_UTIL::IsKLV600NE, false, "KLV6XX"}, Row{"IsOTNNE", &NS_UTIL::IsOTNNE, false, "OTN"},
        Row{"IsWDMNE", &NS_UTIL::IsWDMNE, false, "WDM"}, Row{"IsOTN_NA", &NS_UTIL::IsOTN_NA, false, "OTN_NA"},
        Row{"IsWDM_NA", &NS_UTIL::IsWDM_NA, false, "WDM_NA"},
        Row{"IsNAWDMByNETypeOfOTN", &NS_UTIL::IsNAWDMByNEType, false, "OTN_NA"},
        Row{"IsNAWDMByNETypeOfWDM", &NS_UTIL::IsNAWDMByNEType, false, "WDM_NA"},
        Row{"IsOTN4750NE", &NS_UTIL::IsOTN4750NE, false, "OTN4750NE"},
        Row{"IsBIGSLOTNE", &NS_UTIL::IsBIGSLOTNE, false, "BIGSLOTNE"},
        Row{"IsAccBitsNE", &NS_UTIL::IsAccBitsNE, false, "ACCBITSNE"},
        Row{"IsMultiShelfTypeNE", &NS_UTIL::IsMultiShelfTypeNE, false, "MultiShelfTypeNE"}),
    [](const auto& row) { return std::string(row.param.name); });

std::set<std::string> NamesOf(const Domains& domains) {
    std::set<std::string> names;
    for (const auto& [name, neTypes] : domains) {
        names.insert(name);
    }
    return names;
}

// Each question leaves an empty list under the name that it asked for. These are all lists that hosts must load.
TEST(DomainPredicates, AskTheListsThatAreNamedAndNoOthers) {
    DeviceDomainMgr::Destroy();
    RecordingInventory inventory;
    const Registration registration("InventoryBufif", inventory);
    for (const Predicate predicate : NS_TEST::NE_TYPE_PREDICATES) {
        EXPECT_FALSE(predicate(5));
    }
    Domains neTypes;
    Domains equipmentTypes;
    DeviceDomainMgr::Instance()->GetDomainDevTypelistCache(neTypes);
    DeviceDomainMgr::Instance()->GetDomainEqtCache(equipmentTypes);
    EXPECT_EQ(NamesOf(neTypes), std::set<std::string>(NS_UTIL::NE_TYPE_LISTS.begin(), NS_UTIL::NE_TYPE_LISTS.end()));
    EXPECT_EQ(NamesOf(equipmentTypes),
              std::set<std::string>(NS_UTIL::EQUIPMENT_TYPE_LISTS.begin(), NS_UTIL::EQUIPMENT_TYPE_LISTS.end()));
    DeviceDomainMgr::Destroy();
}

// A predicate of two lists asks the second one only if the first does not hold the type.
TEST(DomainPredicates, AskTheirSecondListOnlyWhenNeeded) {
    DeviceDomainMgr::Destroy();
    DeviceDomainMgr::Instance()->AddDomainEqtCache("PTN", {5});
    DeviceDomainMgr::Instance()->AddDomainEqtCache("OTN_NA", {5});
    EXPECT_TRUE(NS_UTIL::IsPTNNE(5));
    EXPECT_TRUE(NS_UTIL::IsNAWDMByNEType(5));
    Domains domains;
    DeviceDomainMgr::Instance()->GetDomainEqtCache(domains);
    EXPECT_THAT(domains, ElementsAre(Pair("OTN_NA", ElementsAre(5)), Pair("PTN", ElementsAre(5))));
    DeviceDomainMgr::Destroy();
}

class InventoryPredicates : public testing::Test {
protected:
    ~InventoryPredicates() override { DeviceDomainMgr::Destroy(); }

    template <class Ask>
    static void ExpectMissing(Ask ask) {
        try {
            ask();
            ADD_FAILURE() << "there is no inventory";
        } catch (const InterfaceNotExistException& missing) {
            EXPECT_EQ(missing.m_code, 0x41180004U);
        }
    }
};

TEST_F(InventoryPredicates, ThrowWithoutAnInventory) {
    ExpectMissing([] { NS_UTIL::IsKLVNE(1887); });
    ExpectMissing([] { NS_UTIL::IsTransMultiSubShelfNE(1, 1); });
    ExpectMissing([] { NS_UTIL::IsIPServiceNE(6); });
}

TEST_F(InventoryPredicates, NeedNoInventoryWhenAListAnswers) {
    DeviceDomainMgr::Instance()->AddDomainEqtCache("OTN", {5});
    DeviceDomainMgr::Instance()->AddDomainEqtCache("PTN31", {1335});
    EXPECT_TRUE(NS_UTIL::IsIPServiceNE(5));
    EXPECT_TRUE(NS_UTIL::IsIPServiceNE(1335));
    ExpectMissing([] { NS_UTIL::IsIPServiceNE(6); });
}

TEST_F(InventoryPredicates, DoNotAskTheInventoryWhenAListAnswers) {
    RecordingInventory inventory;
    const Registration registration("InventoryBufif", inventory);
    DeviceDomainMgr::Instance()->AddDomainEqtCache("PTN31", {5});
    EXPECT_TRUE(NS_UTIL::IsIPServiceNE(5));
    EXPECT_THAT(inventory.m_questions, IsEmpty());
    Domains domains;
    DeviceDomainMgr::Instance()->GetDomainEqtCache(domains);
    EXPECT_EQ(domains.count("OTN"), 0U) << "the first list answers alone";
    EXPECT_FALSE(NS_UTIL::IsIPServiceNE(1335)) << "the fixed number counts for IsPTN31 alone";
    EXPECT_THAT(inventory.m_questions, ElementsAre(Pair("IsIPServiceNEType", 1335)));
}

TEST_F(InventoryPredicates, PassArgumentsAndAnswersOn) {
    RecordingInventory inventory;
    inventory.m_yes = 65535;
    const Registration registration("InventoryBufif", inventory);
    constexpr unsigned long LARGEST = std::numeric_limits<unsigned long>::max();
    EXPECT_TRUE(NS_UTIL::IsIPServiceNE(65535));
    EXPECT_FALSE(NS_UTIL::IsIPServiceNE(0));
    EXPECT_TRUE(NS_UTIL::IsKLVNE(65535));
    EXPECT_FALSE(NS_UTIL::IsKLVNE(1887)) << "no fixed numbers here";
    EXPECT_TRUE(NS_UTIL::IsTransMultiSubShelfNE(LARGEST, 65535));
    EXPECT_FALSE(NS_UTIL::IsTransMultiSubShelfNE(7, 1));
    EXPECT_THAT(
        inventory.m_questions,
        ElementsAre(Pair("IsIPServiceNEType", 65535), Pair("IsIPServiceNEType", 0), Pair("IsKLVNEType", 65535),
                    Pair("IsKLVNEType", 1887), Pair("IsTransMultiSubShelf", 65535), Pair("IsTransMultiSubShelf", 1)));
    EXPECT_THAT(inventory.m_neIds, ElementsAre(LARGEST, 7UL));
    EXPECT_THAT(inventory.m_queries, IsEmpty()) << "no predicate asks for the NE's type";
}

}  // namespace
