#include <array>
#include <atomic>
#include <chrono>
#include <latch>
#include <optional>
#include <thread>

#include <gtest/gtest.h>

#include <kx_platform/readpin.h>

#include "support/allocations.h"

namespace {

using NS_BUNDLEMGR1::ReadPin;
using NS_TEST::LiveAllocations;

TEST(ReadPin, PinsFromProtectToItsEnd) {
    int thing = 7;
    const std::atomic<int*> source{&thing};
    {
        ReadPin pin;
        EXPECT_FALSE(ReadPin::IsPinned(&thing));
        EXPECT_EQ(pin.Protect(source), &thing);
        EXPECT_TRUE(ReadPin::IsPinned(&thing));
    }
    EXPECT_FALSE(ReadPin::IsPinned(&thing));
}

TEST(ReadPin, PinsNothingOfNull) {
    const std::atomic<int*> source{nullptr};
    ReadPin pin;
    EXPECT_EQ(pin.Protect(source), nullptr);
}

TEST(ReadPin, MovesFromOneThingToTheNext) {
    int first = 1;
    int second = 2;
    ReadPin pin;
    pin.Pin(&first);
    pin.Pin(&second);
    EXPECT_FALSE(ReadPin::IsPinned(&first));
    EXPECT_TRUE(ReadPin::IsPinned(&second));
}

TEST(ReadPin, DoesNotKeepItsOwnThreadWaiting) {
    int thing = 7;
    ReadPin pin;
    pin.Pin(&thing);
    ReadPin::WaitUntilReleased(&thing);
    EXPECT_TRUE(ReadPin::IsPinned(&thing));
}

TEST(ReadPin, DoesNotKeepItsOwnThreadWaitingAtAnyDepth) {
    int thing = 7;
    const std::array<ReadPin, 20> outer;
    ReadPin pin;
    pin.Pin(&thing);
    ReadPin::WaitUntilReleased(&thing);
    EXPECT_TRUE(ReadPin::IsPinned(&thing));
}

TEST(ReadPin, IsIndependentOfOtherPinsOfItsThread) {
    int thing = 7;
    ReadPin outer;
    outer.Pin(&thing);
    {
        ReadPin inner;
        inner.Pin(&thing);
    }
    EXPECT_TRUE(ReadPin::IsPinned(&thing)) << "the outer pin is still there";
}

// A thing that one thread has pinned and another waits for.
class Waiting : public testing::Test {
protected:
    void Hold() {
        m_pin.emplace().Pin(&m_thing);
        GoOnHolding();
    }

    void GoOnHolding() {
        m_pinned.count_down();
        std::this_thread::sleep_for(std::chrono::milliseconds{50});
        m_isReleased.store(true);
        m_pin.reset();
    }

    void Wait() {
        m_pinned.wait();
        ReadPin::WaitUntilReleased(&m_thing);
        EXPECT_TRUE(m_isReleased.load());
    }

    int m_thing = 7;
    int m_service = 8;
    int m_taken = 9;
    std::optional<ReadPin> m_pin;
    std::latch m_pinned{1};
    std::atomic<bool> m_isReleased{false};
};

// One of two threads gets its words before the other does. Each thread must see the pins of the other in either case.
TEST_F(Waiting, OfAnotherThreadIsForThisOne) {
    std::thread other([this] {
        { const ReadPin words; }
        Wait();
    });
    Hold();
    other.join();
}

TEST_F(Waiting, OfThisThreadIsForAnotherOne) {
    { const ReadPin words; }
    std::thread other([this] { Hold(); });
    Wait();
    other.join();
}

TEST_F(Waiting, InsideAServiceIsForAThreadThatHasWaitedInsideOne) {
    std::thread other([this] {
        m_pin.emplace().Pin(&m_thing);
        ReadPin::WaitUntilReleased(&m_taken);
        GoOnHolding();
    });
    ReadPin pin;
    pin.Pin(&m_service);
    Wait();
    other.join();
}

TEST(ReadPin, LeavesItsWordsToTheNextThread) {
    struct PinsAtThreadEnd {
        bool isTouched = false;
        ~PinsAtThreadEnd() { const ReadPin pin; }
    };
    const auto runThread = [] {
        std::thread([] {
            // Its destructor runs after the thread gave its words back, and takes words again.
            thread_local PinsAtThreadEnd last;
            last.isTouched = true;
            const ReadPin pin;
        }).join();
    };
    runThread();
    const std::ptrdiff_t before = LiveAllocations();
    for (int round = 0; round < 20; ++round) {
        runThread();
    }
    EXPECT_EQ(LiveAllocations(), before);
}

}  // namespace
