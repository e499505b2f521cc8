// Tables that are built on first call and stay until the process ends. Each test makes that call in a forked process,
// so that it is the first one whatever ran before. No test may ask for such a table in this process.
#include <atomic>
#include <barrier>
#include <functional>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

#include <kx_domain_util/utilcommon.h>

#include "support/allocations.h"
#include "support/childprocess.h"
#include "support/lazytables.h"
#include "support/scale.h"

namespace {

using NS_TEST::AllocationCount;
using NS_TEST::FailingAllocations;
using NS_TEST::InChildProcess;
using NS_TEST::LiveAllocations;
using NS_TEST::Scaled;
using NS_UTIL::UtilCommon;

constexpr long WRONG_ANSWER = -1;
constexpr long CHILD_FAILED = -2;
constexpr long NOT_FAILED = -3;

// Returns the result of measure in a forked process.
long InChild(const std::function<long()>& measure) {
    const auto said = InChildProcess([&measure] { return std::to_string(measure()); });
    return said.has_value() ? std::stol(*said) : CHILD_FAILED;
}

// A lazily built table, with a check of look-ups in all parts of it, and its least number of allocations.
struct Table {
    const char* name;
    bool (*answersRight)();
    std::size_t allocations;
};

void PrintTo(const Table& table, std::ostream* out) {
    *out << table.name;
}

class FirstCall : public testing::TestWithParam<Table> {
protected:
    FirstCall() { UtilCommon::Instance(); }
    ~FirstCall() override { UtilCommon::Destroy(); }

    // Counts the allocations of one thread in a first call.
    static long CountAllocations() {
        const AllocationCount count;
        const bool isRight = GetParam().answersRight();
        return isRight ? static_cast<long>(count.Get()) : WRONG_ANSWER;
    }

    // Counts the allocations of several threads whose first calls come at once.
    static long CountAllocationsOfThreads() {
        constexpr int THREADS = 6;
        std::barrier start(THREADS);
        std::atomic<long> sum{0};
        std::atomic<bool> isRight{true};
        std::vector<std::thread> threads;
        for (int at = 0; at < THREADS; ++at) {
            threads.emplace_back([&] {
                start.arrive_and_wait();
                const long mine = CountAllocations();
                isRight = isRight && mine != WRONG_ANSWER;
                sum += mine;
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        return isRight ? sum.load() : WRONG_ANSWER;
    }

    static long LiveAfterFirstCall() {
        const std::ptrdiff_t before = LiveAllocations();
        return GetParam().answersRight() ? LiveAllocations() - before : WRONG_ANSWER;
    }

    // Counts what stays after a first call that runs out of memory after `spared` allocations, and a second call in
    // another thread, which would wait for ever if the first one left a lock held.
    static long LiveAfterFailure(std::size_t spared) {
        alarm(60);
        const std::ptrdiff_t before = LiveAllocations();
        bool isFailed = false;
        std::thread([&] {
            try {
                const FailingAllocations failing(spared);
                GetParam().answersRight();
            } catch (const std::bad_alloc&) {
                isFailed = true;
            }
        }).join();
        if (!isFailed) {
            return NOT_FAILED;
        }
        bool isRight = false;
        std::thread([&] { isRight = GetParam().answersRight(); }).join();
        return isRight ? LiveAllocations() - before : WRONG_ANSWER;
    }
};

TEST_P(FirstCall, BuildsTheTable) {
    EXPECT_GE(InChild(&CountAllocations), static_cast<long>(GetParam().allocations));
}

TEST_P(FirstCall, OfThreadsAtOnceBuildsTheTableOnce) {
    const long once = InChild(&CountAllocations);
    ASSERT_GT(once, 0);
    for (std::size_t round = 0; round < Scaled(60); ++round) {
        ASSERT_EQ(InChild(&CountAllocationsOfThreads), once);
    }
}

TEST_P(FirstCall, ThatRanOutOfMemoryLeavesNothing) {
    const long once = InChild(&LiveAfterFirstCall);
    ASSERT_GT(once, 0);
    std::size_t spared = 0;
    for (; true; ++spared) {
        const long live = InChild([spared] { return LiveAfterFailure(spared); });
        if (live == NOT_FAILED) {
            break;
        }
        ASSERT_EQ(live, once) << "after " << spared << " allocations";
    }
    EXPECT_GE(spared, GetParam().allocations);
}

INSTANTIATE_TEST_SUITE_P(Of, FirstCall,
                         testing::Values(Table{"FbTypeNames", &NS_TEST::NamesAreRight, 31},
                                         Table{"PtnAidFbTypes", &NS_TEST::PtnAidsAreRight, 1},
                                         Table{"PortObjectFbTypes", &NS_TEST::PortObjectsAreRight, 1},
                                         Table{"BidirFbTypes", &NS_TEST::BidirectionalTypesAreRight, 149}),
                         [](const auto& table) { return std::string(table.param.name); });

}  // namespace
