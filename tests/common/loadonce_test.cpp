// Things that are loaded once: under a lock, and without it if the lock fails.
#include "common/loadonce.h"

#include <array>
#include <cerrno>
#include <functional>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <kx_domain_util/ntffilter.h>
#include <kx_domain_util/utilcommon.h>

#include "support/allocations.h"
#include "support/childprocess.h"
#include "support/failinglocks.h"
#include "support/lazytables.h"
#include "support/services.h"

namespace {

using NS_TEST::AllocationCount;
using NS_TEST::BidirectionalTypesAreRight;
using NS_TEST::Configuration;
using NS_TEST::FailingLocks;
using NS_TEST::FailingReleases;
using NS_TEST::InChildProcess;
using NS_UTIL::LoadOnce;
using NS_UTIL::NtfFilter;
using NS_UTIL::UtilCommon;
using testing::Optional;

// ---- The pattern ----------------------------------------------------------------------------------------------------

class LoadsOnce : public testing::Test {
protected:
    struct Lock {
        LoadsOnce& test;

        bool Take() const {
            ++test.m_tried;
            test.m_loaded = test.m_isLoadedMeanwhile || test.m_loaded;
            test.m_isHeld = !test.m_lockFails;
            return test.m_isHeld;
        }
        void Release() const {
            ++test.m_released;
            test.m_isHeld = false;
        }
    };

    void Load() {
        LoadOnce(m_loaded, Lock{*this}, [this] {
            m_wasHeldByLoad = m_isHeld;
            ++m_loads;
            if (m_loadFails) {
                throw std::runtime_error("no");
            }
        });
    }

    std::atomic<bool> m_loaded{false};
    bool m_lockFails = false;
    bool m_loadFails = false;
    bool m_isLoadedMeanwhile = false;
    bool m_isHeld = false;
    bool m_wasHeldByLoad = false;
    int m_tried = 0;
    int m_released = 0;
    int m_loads = 0;
};

TEST_F(LoadsOnce, UnderTheLock) {
    Load();
    Load();
    EXPECT_EQ(m_loads, 1);
    EXPECT_TRUE(m_wasHeldByLoad);
    EXPECT_EQ(m_tried, 1) << "the second call takes no lock";
    EXPECT_EQ(m_released, 1);
}

TEST_F(LoadsOnce, WithoutALockThatFails) {
    m_lockFails = true;
    Load();
    Load();
    EXPECT_EQ(m_loads, 1);
    EXPECT_EQ(m_tried, 1);
    EXPECT_EQ(m_released, 0) << "the lock was not taken";
}

TEST_F(LoadsOnce, NotWhenItWasLoadedMeanwhile) {
    m_isLoadedMeanwhile = true;
    Load();
    EXPECT_EQ(m_loads, 0);
    EXPECT_EQ(m_released, 1);
}

TEST_F(LoadsOnce, NotWhenItWasLoadedBeforeTheLockFailed) {
    m_isLoadedMeanwhile = true;
    m_lockFails = true;
    Load();
    EXPECT_EQ(m_loads, 0);
    EXPECT_EQ(m_released, 0);
}

TEST_F(LoadsOnce, AfterAFailure) {
    for (const bool lockFails : {false, true}) {
        m_loaded = false;
        m_loads = 0;
        m_released = 0;
        m_lockFails = lockFails;
        m_loadFails = true;
        EXPECT_THROW(Load(), std::runtime_error);
        EXPECT_FALSE(m_loaded);
        EXPECT_EQ(m_released, lockFails ? 0 : 1);
        m_loadFails = false;
        Load();
        EXPECT_TRUE(m_loaded);
        EXPECT_EQ(m_loads, 2);
    }
}

// ---- What the library loads once ------------------------------------------------------------------------------------

struct Loaded {
    const char* name;
    bool (*answersRight)();
};

void PrintTo(const Loaded& loaded, std::ostream* out) {
    *out << loaded.name;
}

// Each test starts in a process in which nothing is loaded.
class FailingLock : public testing::TestWithParam<Loaded> {
protected:
    static std::optional<std::string> InFreshProcess(const std::function<std::string()>& say) {
        return InChildProcess([&say] {
            const Configuration configuration{{"EventSwitch", "2"}, {"Blacklist", "5,6,7,8"}};
            NtfFilter::Instance();
            UtilCommon::Instance()->GetPFMPacketSize();  // the library now knows that there is no log service
            return say();
        });
    }
    static std::string Right(bool isRight) { return isRight ? "right" : "wrong"; }
};

TEST_P(FailingLock, IsDoneWithout) {
    const auto said = InFreshProcess([] {
        std::array<std::string, 2> answers;
        for (std::string& answer : answers) {
            const FailingLocks failing;
            const bool isRight = GetParam().answersRight();
            answer = Right(isRight) + ", " + std::to_string(failing.GetFailed()) + " failed, " +
                     std::to_string(failing.GetReleased()) + " released";
        }
        return answers[0] + "; " + answers[1];
    });
    EXPECT_THAT(said, Optional(std::string("right, 1 failed, 0 released; right, 0 failed, 0 released")));
}

TEST_P(FailingLock, LoadsNothingThatWasLoadedMeanwhile) {
    const auto loadedOnce = InFreshProcess([] {
        const AllocationCount count;
        const bool isRight = GetParam().answersRight();
        return Right(isRight) + " " + std::to_string(count.Get());
    });
    const auto loadedMeanwhile = InFreshProcess([] {
        bool isRightMeanwhile = false;
        const FailingLocks failing([&isRightMeanwhile] { isRightMeanwhile = GetParam().answersRight(); });
        const AllocationCount count;
        const bool isRight = GetParam().answersRight() && isRightMeanwhile && failing.GetReleased() == 0;
        return Right(isRight) + " " + std::to_string(count.Get());
    });
    EXPECT_THAT(loadedOnce, Optional(testing::StartsWith("right ")));
    EXPECT_EQ(loadedMeanwhile, loadedOnce);
}

bool FilterIsRight() {
    NtfFilter& filter = *NtfFilter::Instance();
    return filter.IsFilteNtf(5) && filter.IsFilteNtf(8) && !filter.IsFilteNtf(9);
}

INSTANTIATE_TEST_SUITE_P(Of, FailingLock,
                         testing::Values(Loaded{"FbTypeNames", &NS_TEST::NamesAreRight},
                                         Loaded{"PtnAidFbTypes", &NS_TEST::PtnAidsAreRight},
                                         Loaded{"PortObjectFbTypes", &NS_TEST::PortObjectsAreRight},
                                         Loaded{"BidirFbTypes", &BidirectionalTypesAreRight},
                                         Loaded{"Filter", &FilterIsRight}),
                         [](const auto& loaded) { return std::string(loaded.param.name); });

using BidirFbTypes = FailingLock;

TEST_F(BidirFbTypes, LeaveTheErrorOfTheirLock) {
    const auto said = InFreshProcess([] {
        const FailingLocks failing;
        errno = 0;
        const bool isRight = BidirectionalTypesAreRight();
        return Right(isRight) + " " + std::to_string(errno);
    });
    EXPECT_THAT(said, Optional("right " + std::to_string(FailingLocks::ERROR)));
}

TEST_F(BidirFbTypes, LeaveTheErrorOfTheirLockAlsoWhenTheyWereLoadedMeanwhile) {
    const auto said = InFreshProcess([] {
        bool isRightMeanwhile = false;
        const FailingLocks failing([&isRightMeanwhile] { isRightMeanwhile = BidirectionalTypesAreRight(); });
        errno = 0;
        const bool isRight = BidirectionalTypesAreRight();
        const int error = errno;
        return Right(isRight && isRightMeanwhile) + " " + std::to_string(error);
    });
    EXPECT_THAT(said, Optional("right " + std::to_string(FailingLocks::ERROR)));
}

TEST_F(BidirFbTypes, LeaveTheErrorOfTheRelease) {
    const auto said = InFreshProcess([] {
        const FailingReleases failing;
        errno = 0;
        const bool isRight = BidirectionalTypesAreRight();
        return Right(isRight) + " " + std::to_string(errno);
    });
    EXPECT_THAT(said, Optional("right " + std::to_string(FailingReleases::ERROR)));
}

}  // namespace
