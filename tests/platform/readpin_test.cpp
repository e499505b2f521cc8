#include <gtest/gtest.h>

#include <kx_platform/readpin.h>

namespace {

using NS_BUNDLEMGR1::ReadPin;

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

TEST(ReadPin, IsIndependentOfOtherPinsOfItsThread) {
    int thing = 7;
    ReadPin outer;
    outer.Pin(&thing);
    {
        ReadPin inner;
        inner.Pin(&thing);
    }
    EXPECT_TRUE(ReadPin::IsPinned(&thing)) << "the outer one is still there";
}

}  // namespace
