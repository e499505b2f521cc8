#include "frame/singleton.h"

#include <stdexcept>
#include <thread>

#include <ace/OS_NS_Thread.h>
#include <ace/Recursive_Thread_Mutex.h>
#include <ace/Static_Object_Lock.h>
#include <gtest/gtest.h>

#include <kx_domain_util/devicedomainmgr.h>
#include <kx_domain_util/ntffilter.h>
#include <kx_domain_util/utilcommon.h>

#include "support/failinglocks.h"

namespace {

using NS_TEST::FailingLocks;

using NS_UTIL::NS_FRAME::DestroyInstance;
using NS_UTIL::NS_FRAME::GetInstance;

class Singleton : public testing::Test {
protected:
    int* Instance() {
        return GetInstance(m_instance, [this] { return new int(++m_made); });
    }
    void Destroy() {
        DestroyInstance(m_instance, [this](int* old) {
            ++m_disposed;
            delete old;
        });
    }

    std::atomic<int*> m_instance{nullptr};
    int m_made = 0;
    int m_disposed = 0;
};

TEST_F(Singleton, IsMadeByTheFirstCallAlone) {
    int* const first = Instance();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(Instance(), first);
    EXPECT_EQ(m_instance.load(), first);
    EXPECT_EQ(m_made, 1);
    Destroy();
}

TEST_F(Singleton, IsMadeAnewAfterDestroy) {
    Instance();
    Destroy();
    EXPECT_EQ(m_instance.load(), nullptr);
    EXPECT_EQ(*Instance(), 2);
    Destroy();
    EXPECT_EQ(m_disposed, 2);
}

TEST_F(Singleton, IsDestroyedOnceAtMost) {
    Destroy();
    EXPECT_EQ(m_disposed, 0);
    Instance();
    Destroy();
    Destroy();
    EXPECT_EQ(m_disposed, 1);
}

TEST_F(Singleton, LetsTheExceptionOfItsConstructionPass) {
    const auto fail = []() -> int* { throw std::runtime_error("no"); };
    EXPECT_THROW(GetInstance(m_instance, fail), std::runtime_error);
    EXPECT_EQ(m_instance.load(), nullptr);
    EXPECT_NE(Instance(), nullptr) << "the failed call released the lock";
    Destroy();
}

// Whether another thread can take the lock.
bool IsLockFree() {
    bool isFree = false;
    std::thread([&isFree] {
        auto& lock = ACE_Static_Object_Lock::instance()->lock();
        isFree = ACE_OS::mutex_trylock(&lock) == 0;
        if (isFree) {
            ACE_OS::mutex_unlock(&lock);
        }
    }).join();
    return isFree;
}

TEST_F(Singleton, IsMadeAndDisposedOfUnderTheLock) {
    bool isFreeWhileMaking = true;
    GetInstance(m_instance, [&] {
        isFreeWhileMaking = IsLockFree();
        return new int(1);
    });
    EXPECT_FALSE(isFreeWhileMaking);
    EXPECT_TRUE(IsLockFree());
    bool isFreeWhileDisposing = true;
    DestroyInstance(m_instance, [&](int* instance) {
        isFreeWhileDisposing = IsLockFree();
        EXPECT_EQ(m_instance.load(), nullptr) << "no caller gets the object that is being freed";
        delete instance;
    });
    EXPECT_FALSE(isFreeWhileDisposing);
    EXPECT_TRUE(IsLockFree());
}

// ---- The singletons of the library, and a lock that fails -----------------------------------------------------------

template <class Class>
class FailingSingletonLock : public testing::Test {
protected:
    ~FailingSingletonLock() override { Class::Destroy(); }

    static Class* InstanceWhileTheLockFails() {
        Class* instance = nullptr;
        std::size_t released = 1;
        {
            const FailingLocks failing;
            instance = Class::Instance();
            released = failing.GetReleased();
        }
        EXPECT_EQ(released, 0U) << "the lock was not taken";
        return instance;
    }
};

using Singletons = testing::Types<NS_UTIL::DeviceDomainMgr, NS_UTIL::UtilCommon, NS_UTIL::NtfFilter>;
TYPED_TEST_SUITE(FailingSingletonLock, Singletons);

TYPED_TEST(FailingSingletonLock, LeavesNoInstance) {
    EXPECT_EQ(this->InstanceWhileTheLockFails(), nullptr);
    EXPECT_NE(TypeParam::Instance(), nullptr) << "the next call makes it";
}

TYPED_TEST(FailingSingletonLock, DoesNotMatterToAnInstanceThatIsThere) {
    TypeParam* const instance = TypeParam::Instance();
    EXPECT_EQ(this->InstanceWhileTheLockFails(), instance);
}

TYPED_TEST(FailingSingletonLock, GivesNoInstanceThatIsMadeMeanwhile) {
    TypeParam* meanwhile = nullptr;
    TypeParam* instance = nullptr;
    std::size_t released = 1;
    {
        const FailingLocks failing([&meanwhile] { meanwhile = TypeParam::Instance(); });
        instance = TypeParam::Instance();
        released = failing.GetReleased();
    }
    EXPECT_EQ(released, 0U) << "the lock was not taken";
    EXPECT_EQ(instance, nullptr) << "there was no instance when the call began";
    EXPECT_NE(meanwhile, nullptr);
    EXPECT_EQ(TypeParam::Instance(), meanwhile);
}

TYPED_TEST(FailingSingletonLock, KeepsTheInstanceFromBeingDestroyed) {
    TypeParam* const instance = TypeParam::Instance();
    std::size_t released = 1;
    {
        const FailingLocks failing;
        TypeParam::Destroy();
        released = failing.GetReleased();
    }
    EXPECT_EQ(TypeParam::Instance(), instance);
    EXPECT_EQ(released, 0U);
}

TYPED_TEST(FailingSingletonLock, IsNotTriedWhenThereIsNothingToDestroy) {
    const FailingLocks failing;
    TypeParam::Destroy();
    const std::size_t failed = failing.GetFailed();
    EXPECT_EQ(failed, 0U);
}

}  // namespace
