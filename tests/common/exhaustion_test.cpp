// Singletons and tables when memory runs out while they are made: each allocation fails in turn.
#include <chrono>
#include <cstdlib>
#include <functional>
#include <future>
#include <iostream>
#include <list>
#include <map>
#include <new>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include <kx_domain_util/devicedomainmgr.h>
#include <kx_domain_util/fbtype.h>
#include <kx_domain_util/ntffilter.h>
#include <kx_domain_util/utilcommon.h>

#include "support/allocations.h"
#include "support/services.h"

namespace {

using NS_TEST::Configuration;
using NS_TEST::FailingAllocations;
using NS_TEST::LiveAllocations;
using NS_UTIL::NtfFilter;
using NS_UTIL::UtilCommon;

// Returns the answer of ask in a new thread. Aborts the process if a lock was left held.
bool InOtherThread(const std::function<bool()>& ask) {
    std::promise<bool> answer;
    std::future<bool> future = answer.get_future();
    std::thread thread([&] { answer.set_value(ask()); });
    if (future.wait_for(std::chrono::seconds(60)) != std::future_status::ready) {
        std::cerr << "a lock was left held" << std::endl;
        std::abort();
    }
    thread.join();
    return future.get();
}

// Whether memory runs out in make if all allocations after the first `spared` ones fail.
bool RunsOut(std::size_t spared, const std::function<void()>& make) {
    const FailingAllocations failing(spared);
    try {
        make();
        return false;
    } catch (const std::bad_alloc&) {
        return true;
    }
}

bool IsUtilCommonComplete() {
    const UtilCommon& utilCommon = *UtilCommon::Instance();
    int level = 0;
    utilCommon.FBType2InterfaceLevel(level, 897);
    int fbType = 0;
    utilCommon.InterfaceLevel2FBType(fbType, 12306);
    std::string name;
    utilCommon.InterfaceCTPId2TMFName(65524, name);
    unsigned long ctpId = 0;
    utilCommon.InterfaceTMFCTPName2ID("E11", ctpId);
    return level == 12324 && fbType == 1231 && name == "E11" && ctpId == 65524 &&
           utilCommon.IsTiRoadmOpticalBoard(2970);
}

TEST(Exhaustion, LeavesNoUtilCommon) {
    UtilCommon::Instance();
    UtilCommon::Destroy();
    const std::ptrdiff_t live = LiveAllocations();
    std::size_t spared = 0;
    for (; RunsOut(spared, [] { UtilCommon::Instance(); }); ++spared) {
        ASSERT_EQ(LiveAllocations(), live) << "something is left after " << spared << " allocations";
        ASSERT_TRUE(InOtherThread(&IsUtilCommonComplete)) << spared;
        UtilCommon::Destroy();
        ASSERT_EQ(LiveAllocations(), live) << spared;
    }
    EXPECT_GE(spared, 120U + 22U + 1U + 12U + 12U) << "some table was never interrupted";
    EXPECT_TRUE(IsUtilCommonComplete());
    UtilCommon::Destroy();
}

TEST(Exhaustion, LeavesNoUtilCommonToTheSameThread) {
    UtilCommon::Destroy();
    std::size_t failures = 0;
    while (RunsOut(failures, [] { UtilCommon::Instance(); })) {
        ++failures;
    }
    EXPECT_GE(failures, 120U + 22U + 1U + 12U + 12U);
    EXPECT_TRUE(IsUtilCommonComplete());
    UtilCommon::Destroy();
}

TEST(Exhaustion, LeavesNoFilter) {
    NtfFilter::Instance();
    NtfFilter::Destroy();
    const std::ptrdiff_t live = LiveAllocations();
    std::size_t spared = 0;
    for (; RunsOut(spared, [] { NtfFilter::Instance(); }); ++spared) {
        ASSERT_EQ(LiveAllocations(), live) << spared;
        ASSERT_TRUE(InOtherThread([] { return NtfFilter::Instance() != nullptr; })) << spared;
        NtfFilter::Destroy();
        ASSERT_EQ(LiveAllocations(), live) << spared;
    }
    EXPECT_GE(spared, 1U);
    NtfFilter::Destroy();
}

TEST(Exhaustion, LeavesADomainItsList) {
    using NS_UTIL::DeviceDomainMgr;
    using Lists = std::map<std::string, std::list<int>>;
    const std::string domain(100, 'x');
    DeviceDomainMgr& domains = *DeviceDomainMgr::Instance();
    domains.AddDomainEqtCache(domain, {1, 2});
    const std::list<int> next{9, 8, 7, 6};
    std::size_t spared = 0;
    for (; RunsOut(spared, [&] { domains.AddDomainEqtCache(domain, next); }); ++spared) {
        Lists lists;
        domains.GetDomainEqtCache(lists);
        ASSERT_EQ(lists, (Lists{{domain, {1, 2}}})) << spared;
    }
    EXPECT_EQ(spared, next.size());
    EXPECT_TRUE(domains.isInDomainEqtCache(domain, 6));
    DeviceDomainMgr::Destroy();
}

class ExhaustedFilter : public testing::TestWithParam<const char*> {
protected:
    ~ExhaustedFilter() override { Forget(); }

    static void Forget() {
        NtfFilter::Destroy();
        UtilCommon::Destroy();
    }
    static void Ask() { NtfFilter::Instance()->IsFilteNtf(5); }
    // Whether the filter answers as the lists below say.
    static bool AnswersRight() {
        NtfFilter& filter = *NtfFilter::Instance();
        const bool isWhite = std::string(GetParam()) == "1";
        bool isRight = filter.IsFilteNtf(2101250) == !isWhite && filter.IsFilteNtf(9) == isWhite;
        for (const int listed : {5, 6, 7, 8}) {
            isRight = isRight && filter.IsFilteNtf(listed) != isWhite;
        }
        return isRight;
    }

    static void SetLists(const std::string& list) {
        Configuration::Set("Whitelist", list);
        Configuration::Set("Blacklist", list);
    }

    // Lists that do not fit into the string object itself.
    Configuration m_configuration{{"EventSwitch", GetParam()},
                                  {"Whitelist", "5,6,7,8,not a number at all, nor this"},
                                  {"Blacklist", "5,6,7,8,2101250,not a number at all"}};
};

TEST_P(ExhaustedFilter, IsLoadedByTheNextQuestion) {
    Ask();
    InOtherThread(&AnswersRight);  // makes what stays after the first additional thread
    Forget();
    const std::ptrdiff_t live = LiveAllocations();
    std::size_t spared = 0;
    while (true) {
        NtfFilter::Instance();
        if (!RunsOut(spared, &Ask)) {
            break;
        }
        ASSERT_TRUE(InOtherThread(&AnswersRight)) << spared;
        Forget();
        ASSERT_EQ(LiveAllocations(), live) << spared;
        ++spared;
    }
    EXPECT_GE(spared, 168U + 4U) << "tables or list were never interrupted";
}

TEST_P(ExhaustedFilter, KeepsNothingOfTheLoadThatFailed) {
    UtilCommon::Instance();
    std::size_t spared = 0;
    while (true) {
        NtfFilter::Destroy();
        NtfFilter& filter = *NtfFilter::Instance();
        Configuration::Set("EventSwitch", GetParam());
        if (!RunsOut(spared, &Ask)) {
            break;
        }
        Configuration::Remove("EventSwitch");
        ASSERT_FALSE(filter.IsFilteNtf(9)) << "9 is judged by the white list of a load that failed at " << spared;
        ASSERT_FALSE(filter.IsFilteNtf(5)) << "5 is judged by the black list of a load that failed at " << spared;
        ++spared;
    }
    EXPECT_GE(spared, 4U);
}

TEST_P(ExhaustedFilter, HasOnlyTheListsOfTheLoadThatWentWell) {
    UtilCommon::Instance();
    const bool isWhite = std::string(GetParam()) == "1";
    std::size_t spared = 0;
    while (true) {
        NtfFilter::Destroy();
        NtfFilter& filter = *NtfFilter::Instance();
        SetLists("5,6,7,8,not a number at all");
        if (!RunsOut(spared, &Ask)) {
            break;
        }
        SetLists("77");
        ASSERT_EQ(filter.IsFilteNtf(5), isWhite) << "judged by the lists of a load that failed at " << spared;
        ASSERT_EQ(filter.IsFilteNtf(77), !isWhite) << spared;
        ++spared;
    }
    EXPECT_GE(spared, 4U);
}

INSTANTIATE_TEST_SUITE_P(Of, ExhaustedFilter, testing::Values("1", "2"),
                         [](const auto& mode) { return *mode.param == '1' ? "WhiteList" : "BlackList"; });

}  // namespace
