// What a call costs when nobody logs: no allocation, no lock, no exception.
#include <mutex>
#include <string>

#include <gtest/gtest.h>

#include <kx_domain_util/ntffilter.h>
#include <kx_domain_util/processexception.h>
#include <kx_domain_util/resIDUtil.h>
#include <kx_domain_util/utilcommon.h>

#include "support/allocations.h"
#include "support/calls.h"
#include "support/services.h"

namespace {

using NS_TEST::AllocationCount;
using NS_TEST::CallCount;
using NS_TEST::Configuration;
using NS_TEST::RecordingLog;
using NS_TEST::Registration;
using NS_UTIL::NtfFilter;
using NS_UTIL::ResIDUtil;
using NS_UTIL::UtilCommon;

// Expects that operation costs nothing, once a first call has made what stays.
template <class Operation>
void ExpectFree(Operation operation) {
    operation();
    const AllocationCount allocations;
    const CallCount calls;
    for (int times = 0; times < 100; ++times) {
        operation();
    }
    EXPECT_EQ(allocations.Get(), 0U);
    EXPECT_EQ(calls.GetLocks(), 0U);
    EXPECT_EQ(calls.GetThrows(), 0U);
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
        GTEST_SKIP() << "a sanitizer has the functions that are counted";
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
    NS_DOMAIN::TPIndex tp;
    const std::string ctp = "E11";
    std::string name;
    ExpectFree([&] {
        const UtilCommon& utilCommon = *UtilCommon::Instance();
        int level = 0;
        utilCommon.FBType2InterfaceLevel(level, 202);
        utilCommon.InterfaceLevel2FBType(level, level);
        utilCommon.GetBidirFBType(34);
        utilCommon.IsTiRoadmOpticalBoard(948);
        utilCommon.InterfaceCTPId2TMFName(65535, name);
        unsigned long ctpId = 0;
        utilCommon.InterfaceTMFCTPName2ID(ctp, ctpId);
        tp.vc4Id = 0;
        utilCommon.SetTpNo(tp, 12313, 5);
        utilCommon.GetTpNo(tp, 12313);
    });
}

}  // namespace
