// The cost of a call without log records: no allocation, no lock, no exception, and no write to what threads share, so
// that no thread waits for another one's cache lines.
#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include <kx_domain_util/devicedomainmgr.h>
#include <kx_domain_util/fbtype.h>
#include <kx_domain_util/netype.h>
#include <kx_domain_util/ntffilter.h>
#include <kx_domain_util/processexception.h>
#include <kx_domain_util/resIDUtil.h>
#include <kx_domain_util/utilcommon.h>

#include "support/allocations.h"
#include "support/calls.h"
#include "support/conversions.h"
#include "support/conversionsurroundings.h"
#include "support/generated.h"
#include "support/predicates.h"
#include "support/protectedvariables.h"
#include "support/room.h"
#include "support/scale.h"
#include "support/services.h"

namespace {

using NS_TEST::AllocationCount;
using NS_TEST::CallCount;
using NS_TEST::Configuration;
using NS_TEST::ConversionProfile;
using NS_TEST::CountingInventory;
using NS_TEST::ProtectedVariables;
using NS_TEST::RecordingLog;
using NS_TEST::Registration;
using NS_TEST::Scaled;
using NS_UTIL::DeviceDomainMgr;
using NS_UTIL::NtfFilter;
using NS_UTIL::ResIDUtil;
using NS_UTIL::UtilCommon;

// Expects that operation costs nothing after a first call, which makes what later calls reuse.
template <class Operation>
void ExpectFree(Operation operation) {
    operation();
    const ProtectedVariables variables;
    const AllocationCount allocations;
    const CallCount calls;
    for (int times = 0; times < 100; ++times) {
        operation();
    }
    EXPECT_EQ(allocations.Get(), 0U);
    EXPECT_EQ(calls.GetLocks(), 0U);
    EXPECT_EQ(calls.GetThrows(), 0U);
}

// Like ExpectFree, but allows the one allocation of an answer that does not fit into its string object.
template <class Operation>
void ExpectFreeButForItsAnswer(Operation operation) {
    operation();
    const ProtectedVariables variables;
    const AllocationCount allocations;
    const CallCount calls;
    const std::string answer = operation();
    EXPECT_EQ(allocations.Get(), NS_TEST::NeedsRoom(answer) ? 1U : 0U) << answer;
    EXPECT_EQ(calls.GetLocks(), 0U) << answer;
    EXPECT_EQ(calls.GetThrows(), 0U) << answer;
}

class Cost : public testing::Test {
protected:
    ~Cost() override {
        NtfFilter::Destroy();
        UtilCommon::Destroy();
    }

    static void ExpectFreeQuestions(const std::map<std::string, std::string>& items, int heldBack, int passing) {
        NtfFilter::Destroy();
        const Configuration configuration(items);
        ASSERT_TRUE(NtfFilter::Instance()->IsFilteNtf(heldBack));
        ASSERT_FALSE(NtfFilter::Instance()->IsFilteNtf(passing));
        ExpectFree([=] {
            NtfFilter::Instance()->IsFilteNtf(heldBack);
            NtfFilter::Instance()->IsFilteNtf(passing);
        });
    }
};

TEST_F(Cost, IsCounted) {
    if (!CallCount::IsPossible()) {
        GTEST_SKIP() << "a sanitizer already replaces the counted functions";
    }
    UtilCommon::Destroy();
    NS_DOMAIN::MDIndex md;
    std::string fdn;
    const CallCount calls;
    std::mutex mutex;
    { const std::lock_guard lock(mutex); }
    EXPECT_EQ(calls.GetLocks(), 1U);
    UtilCommon::Instance();
    EXPECT_GE(calls.GetLocks(), 2U) << "a lock within the library";
    EXPECT_THROW(ResIDUtil::MDIndex2ResID(md, fdn), NS_UTIL::InterfaceNotExistException);
    EXPECT_GE(calls.GetThrows(), 1U) << "an exception within the library";
}

TEST_F(Cost, OfAWriteToWhatThreadsShareIsNoticed) {
    UtilCommon::Instance();
    const auto destroy = [] {
        const ProtectedVariables variables;
        UtilCommon::Destroy();
    };
    EXPECT_EXIT(destroy(), testing::ExitedWithCode(1), "writes to a variable that all threads share");
}

TEST_F(Cost, OfQuestionsToAWhiteList) {
    ExpectFreeQuestions({{"EventSwitch", "1"}, {"Whitelist", "5,7"}}, 6, 5);
}

TEST_F(Cost, OfQuestionsToABlackList) {
    ExpectFreeQuestions({{"EventSwitch", "2"}, {"Blacklist", "5,7"}}, 5, 6);
}

TEST_F(Cost, OfQuestionsAfterALogServiceWent) {
    const Configuration configuration({{"EventSwitch", "2"}, {"Blacklist", "5,7"}});
    {
        RecordingLog log;
        const Registration registration("LogSvcInterface", log);
        EXPECT_TRUE(NtfFilter::Instance()->IsFilteNtf(5));
        EXPECT_EQ(log.m_records.size(), 2U);
    }
    ExpectFree([] { NtfFilter::Instance()->IsFilteNtf(5); });
}

TEST_F(Cost, OfTheFrameSize) {
    const Configuration configuration({{"PfmFrameRdSize", "1500"}});
    ExpectFree([] { UtilCommon::Instance()->GetPFMPacketSize(); });
}

TEST_F(Cost, OfConfigurationItems) {
    const std::string value(100, 'v');
    const Configuration configuration({{"Some", value}});
    ExpectFree([item = std::string("Some"), text = value]() mutable {
        UtilCommon::Instance()->IsSupportCfgItem(item);
        UtilCommon::Instance()->GetSupportCfgItem(item, text);
    });
}

TEST_F(Cost, OfOamIdentifiersThatCannotBeRead) {
    const std::string noNames = "NE=5,MD=3,MA=4,MIP=6";
    const std::string noEquals = "NE=5,MD,MA=4,MEP=6";
    const std::string tooLong = "NE=5,MD=3,MA=4,MEP=6,MEP=7";
    ExpectFree([&] {
        NS_DOMAIN::MDIndex md;
        ResIDUtil::ResID2MDIndex(noNames, md);
        NS_DOMAIN::MAIndex ma;
        ResIDUtil::ResID2MAIndex(noNames, ma);
        NS_DOMAIN::MIPIndex mip;
        ResIDUtil::ResID2MIPIndex(noNames, mip);
        NS_DOMAIN::MEPIndex mep;
        ResIDUtil::ResID2MepIndex(noEquals, mep);
        ResIDUtil::ResID2MepIndex(tooLong, mep);
    });
}

TEST_F(Cost, OfLookUps) {
    std::string name;
    const std::string ctp = "E11";
    for (const int level : {0, 202, 897, 1025, 12306, 65547, -1}) {
        ExpectFree([&] {
            const UtilCommon& utilCommon = *UtilCommon::Instance();
            int other = 0;
            utilCommon.FBType2InterfaceLevel(other, level);
            utilCommon.InterfaceLevel2FBType(other, level);
            utilCommon.GetBidirFBType(static_cast<unsigned short>(level));
            utilCommon.IsTiRoadmOpticalBoard(static_cast<unsigned long>(level));
            utilCommon.InterfaceCTPId2TMFName(65535, name);
            utilCommon.InterfaceCTPId2TMFName(static_cast<unsigned long>(level), name);
            unsigned long ctpId = 0;
            utilCommon.InterfaceTMFCTPName2ID(ctp, ctpId);
            utilCommon.InterfaceTMFCTPName2ID(name, ctpId);
        });
    }
}

TEST_F(Cost, OfFbTypes) {
    for (const int fbType : {2, 3, 34, 897, 1025, 65547, 123456789, -2147483647}) {
        ExpectFree([&] {
            NS_UTIL::IsPTNAIDFBType(fbType);
            NS_UTIL::IsPortObjByFbType(fbType, 3);
            NS_UTIL::IsPortObjByFbType(fbType, 0);
            NS_UTIL::IsLogicalPortByType(fbType);
        });
    }
    for (int fbType = 0; fbType < 70000; ++fbType) {
        ExpectFreeButForItsAnswer([fbType] { return NS_UTIL::GetFBTypeName(fbType); });
    }
    for (unsigned int domainId = 0; domainId < 300; ++domainId) {
        ExpectFreeButForItsAnswer([domainId] { return NS_UTIL::GetDomainStrByID(domainId); });
    }
}

TEST_F(Cost, OfLocationWords) {
    for (const int level : {12313, 12306, 0, -1}) {
        ExpectFree([&] {
            const UtilCommon& utilCommon = *UtilCommon::Instance();
            int location = 0;
            int tpNo = 5;
            utilCommon.SetTpNoToLocation(location, level, tpNo);
            utilCommon.SetTpNoToLocation(location, level, tpNo);
            utilCommon.GetTpNoFromLocation(location, level, tpNo);
            utilCommon.GetTpNoFromLocation(location, level + 1, tpNo);
            NS_DOMAIN::TPIndex tp;
            tp.vc4Id = 0;
            utilCommon.SetTpNo(tp, level, 5);
            utilCommon.SetTpNo(tp, level, 0);
            utilCommon.GetTpNo(tp, level);
            utilCommon.GetTpNo(tp, level + 1);
        });
    }
}

TEST_F(Cost, OfLookUpsOfTexts) {
    const std::string name(100, 'n');
    for (const std::string& fdn :
         {std::string(), std::string("OS"), std::string("NE=5,FR=1,S=2,CP=-1,PP=16|1025|7|") + name,
          std::string("NE=5,TUNNELTRAIL=6"), std::string("NE=5,PP=16|1|7|a,CLI_NAME=b"), "NE=5," + name + "=6", name}) {
        ExpectFreeButForItsAnswer([&fdn] { return ResIDUtil::GetMOCFromFDN(fdn); });
        ExpectFreeButForItsAnswer([&fdn] { return UtilCommon::Instance()->GetMoc(fdn); });
        const std::string moc = ResIDUtil::GetMOCFromFDN(fdn);
        ExpectFree([&moc] { ResIDUtil::IsServiceFDN(moc); });

        NS_UTIL::MocLvlValueMap map;
        ResIDUtil::Fdn2MocLvlValueMap(fdn, map);
        for (const std::string& tag : {std::string("PP"), std::string("FR"), name}) {
            ExpectFree([&, text = std::string()]() mutable {
                int value = 0;
                ResIDUtil::GetValueByMocLvlName(tag, map, value);
                for (const int index : {0, 2, 3, 4, -1}) {
                    ResIDUtil::GetValueByMocLvlName(tag, map, value, index);
                    ResIDUtil::GetValueByMocLvlName(tag, map, text, index);
                }
            });
        }
    }
}

// Splits into maps that already hold the keys, and whose texts have room.
TEST_F(Cost, OfSplitTexts) {
    const std::string name(100, 'n');
    for (const std::string& line : {std::string(), "16|1025|7|" + name, std::string("|||"), name}) {
        ExpectFree([&line, values = std::map<int, std::string>()]() mutable {
            UtilCommon::Instance()->GetSplitePPDataByLine(values, line);
        });
    }
    for (const std::string& path :
         {std::string(), std::string("OCH:1-E1:2"), std::string("stm1:7-VC4:12-"), name + ":1-" + name}) {
        ExpectFree([&path, levels = std::map<int, int>()]() mutable {
            UtilCommon::Instance()->GetSplitePATHDataByLine(levels, path);
        });
    }
}

// With loaded lists and without, and with an inventory for the questions that lists leave open.
TEST_F(Cost, OfNeTypes) {
    const auto expectFreePredicates = [] {
        for (const unsigned short neType : std::array<unsigned short, 5>{0, 7, 1335, 1911, 65535}) {
            ExpectFree([neType] {
                for (const NS_TEST::Predicate predicate : NS_TEST::NE_TYPE_PREDICATES) {
                    predicate(neType);
                }
                NS_UTIL::IsTransMultiSubShelfNE(12, neType);
            });
        }
    };
    CountingInventory inventory(1911);
    const Registration registration("InventoryBufif", inventory);
    DeviceDomainMgr::Destroy();
    expectFreePredicates();
    for (const std::string_view domain : NS_UTIL::NE_TYPE_LISTS) {
        DeviceDomainMgr::Instance()->AddDomainDevTypelistCache(std::string(domain), {7, 1335});
    }
    for (const std::string_view domain : NS_UTIL::EQUIPMENT_TYPE_LISTS) {
        DeviceDomainMgr::Instance()->AddDomainEqtCache(std::string(domain), {7, 1335});
    }
    expectFreePredicates();
    DeviceDomainMgr::Destroy();
}

// ---- Conversions, in all surroundings that make a difference --------------------------------------------------------

class CostOfConversions : public testing::TestWithParam<ConversionProfile> {
protected:
    // Converts once to make what later calls reuse, then expects that the same conversion costs nothing.
    template <class Convert>
    static void ExpectFreeConversion(std::string_view name, Convert convert) {
        convert();
        const AllocationCount allocations;
        const CallCount calls;
        convert();
        EXPECT_EQ(allocations.Get(), 0U) << name;
        EXPECT_EQ(calls.GetLocks(), 0U) << name;
        EXPECT_EQ(calls.GetThrows(), 0U) << name;
    }

private:
    NS_TEST::ConversionSurroundings m_surroundings{GetParam()};
};

TEST_P(CostOfConversions, OfReaders) {
    NS_TEST::IdentifierGenerator identifiers(71);
    for (std::size_t round = 0; round < Scaled(3000) && !HasFailure(); ++round) {
        const std::string fdn = identifiers.Next();
        NS_UTIL::MocLvlValueMap map;
        ResIDUtil::Fdn2MocLvlValueMap(fdn, map);
        const auto expectFree = [](const auto& reader, const auto& given) {
            typename std::decay_t<decltype(reader)>::Record record;
            NS_TEST::MakeRoom(record);
            ExpectFreeConversion(reader.name, [&] { reader.library(given, record); });
        };
        NS_TEST::ForEachReaderOfText([&](const auto& reader) { expectFree(reader, fdn); });
        NS_TEST::ForEachReaderOfMap([&](const auto& reader) { expectFree(reader, map); });
    }
}

TEST_P(CostOfConversions, OfWriters) {
    NS_TEST::RecordGenerator records(72);
    std::string fdn;
    fdn.reserve(4096);
    for (std::size_t round = 0; round < Scaled(3000) && !HasFailure(); ++round) {
        NS_TEST::ForEachWriter([&]<class Record>(const NS_TEST::Writer<Record>& writer) {
            const auto record = records.Next<Record>();
            const NS_TEST::WriterArguments arguments{records.Flag(), static_cast<unsigned long>(records.Number())};
            ExpectFreeConversion(writer.name, [&] { writer.library(record, fdn, arguments); });
        });
    }
}

// Leaves out the profile without services: conversions that need one throw there.
std::vector<ConversionProfile> ProfilesWithServices() {
    std::vector<ConversionProfile> profiles;
    std::ranges::copy_if(NS_TEST::CONVERSION_PROFILES, std::back_inserter(profiles), &ConversionProfile::hasServices);
    return profiles;
}

INSTANTIATE_TEST_SUITE_P(With, CostOfConversions, testing::ValuesIn(ProfilesWithServices()),
                         [](const auto& profile) { return profile.param.name; });

}  // namespace
