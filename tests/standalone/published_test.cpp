#include "standalone/src/published.h"

#include <array>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace {

using NS_BUNDLEMGR1::ReadPin;
using NS_STANDALONE::Published;

// Counts the living objects. The two numbers of an object are equal until it is freed.
struct Thing {
    explicit Thing(int number) : first(number), second(number) { ++alive; }
    ~Thing() {
        second = -1;
        --alive;
    }
    Thing(const Thing&) = delete;
    Thing& operator=(const Thing&) = delete;

    int first;
    int second;
    static inline std::atomic<int> alive{0};
};

TEST(Published, ShowsTheLatest) {
    Published<Thing> published(std::make_unique<Thing>(1));
    const auto read = [&] {
        ReadPin pin;
        return published.Read(pin).first;
    };
    EXPECT_EQ(read(), 1);
    published.Replace(std::make_unique<Thing>(2));
    EXPECT_EQ(read(), 2);
    EXPECT_EQ(Thing::alive, 1);
}

TEST(Published, FreesTheLast) {
    { const Published<Thing> published(std::make_unique<Thing>(1)); }
    EXPECT_EQ(Thing::alive, 0);
}

TEST(Published, IsFreedOnlyWhenNobodyReadsIt) {
    Published<Thing> published(std::make_unique<Thing>(1));
    std::atomic<bool> isRead{false};
    std::atomic<bool> goOn{false};
    std::thread reader([&] {
        ReadPin pin;
        const Thing& thing = published.Read(pin);
        isRead = true;
        while (!goOn) {
            std::this_thread::yield();
        }
        EXPECT_EQ(thing.second, 1);
    });
    while (!isRead) {
        std::this_thread::yield();
    }
    std::thread writer([&] { published.Replace(std::make_unique<Thing>(2)); });
    std::this_thread::sleep_for(std::chrono::milliseconds{50});
    EXPECT_EQ(Thing::alive, 2);
    goOn = true;
    reader.join();
    writer.join();
    EXPECT_EQ(Thing::alive, 1);
}

TEST(Published, IsReadWholeWhileItIsReplaced) {
    Published<Thing> published(std::make_unique<Thing>(0));
    std::atomic<bool> stop{false};
    std::array<int, 3> reads{};
    std::vector<std::thread> readers;
    for (int& count : reads) {
        readers.emplace_back([&] {
            int last = 0;
            do {
                ReadPin pin;
                const Thing& thing = published.Read(pin);
                ASSERT_EQ(thing.first, thing.second);
                ASSERT_LE(last, thing.first);
                last = thing.first;
                ++count;
            } while (!stop);
        });
    }
    for (int number = 1; number <= 2000; ++number) {
        published.Replace(std::make_unique<Thing>(number));
    }
    stop = true;
    for (std::thread& reader : readers) {
        reader.join();
    }
    for (const int count : reads) {
        EXPECT_GT(count, 0);
    }
    EXPECT_EQ(Thing::alive, 1);
}

}  // namespace
