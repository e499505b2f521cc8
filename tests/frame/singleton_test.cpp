#include "frame/singleton.h"

#include <stdexcept>

#include <gtest/gtest.h>

namespace {

using NS_UTIL::NS_FRAME::DestroyInstance;
using NS_UTIL::NS_FRAME::GetInstance;
using NS_UTIL::NS_FRAME::StaticObjectLock;

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
    EXPECT_NE(Instance(), nullptr) << "the lock was given back";
    Destroy();
}

TEST_F(Singleton, IsMadeAndDisposedOfUnderTheLock) {
    bool isHeld = false;
    GetInstance(m_instance, [&isHeld] {
        isHeld = StaticObjectLock().IsHeld();  // a recursive lock: its owner may take it again
        return new int(1);
    });
    EXPECT_TRUE(isHeld);
    Destroy();
}

}  // namespace
