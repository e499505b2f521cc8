#include <algorithm>
#include <atomic>
#include <climits>
#include <ctime>
#include <memory>
#include <thread>

#include <gtest/gtest.h>

#include <kx_platform/configitems.h>

#include "support/services.h"

namespace {

using NS_BUNDLEMGR1::ConfigItem;
using NS_BUNDLEMGR1::CorbaConfigItems;
using NS_BUNDLEMGR1::ReadPin;
using NS_TEST::Configuration;

CorbaConfigItems& Items() {
    return *CorbaConfigItems::Instance();
}

TEST(CorbaConfigItems, AreOneSet) {
    ASSERT_NE(CorbaConfigItems::Instance(), nullptr);
    EXPECT_EQ(CorbaConfigItems::Instance(), CorbaConfigItems::Instance());
}

TEST(CorbaConfigItems, LeaveTheValueOfAMissingItemUntouched) {
    const Configuration configuration;
    int number = 9;
    std::string text = "old";
    EXPECT_FALSE(Items().GetIntItemInfo("Telvandaire", number));
    EXPECT_FALSE(Items().GetStrItemInfo("Telvandaire", text));
    EXPECT_FALSE(Items().HasItem("Telvandaire"));
    EXPECT_EQ(number, 9);
    EXPECT_EQ(text, "old");
}

struct Text {
    const char* text;
    bool isInteger;
    int number;
};

class IntegerItems : public testing::TestWithParam<Text> {};

TEST_P(IntegerItems, AreReadWholeOrNotAtAll) {
    const Configuration configuration{{"item", GetParam().text}};
    int number = 9;
    EXPECT_EQ(Items().GetIntItemInfo("item", number), GetParam().isInteger);
    EXPECT_EQ(number, GetParam().isInteger ? GetParam().number : 9);
    std::string text;
    EXPECT_TRUE(Items().GetStrItemInfo("item", text)) << "every item is found as a text";
    EXPECT_TRUE(Items().HasItem("item"));
    EXPECT_EQ(text, GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Written, IntegerItems,
                         testing::Values(Text{"0", true, 0}, Text{"6000", true, 6000}, Text{"-1", true, -1},
                                         Text{"+5", true, 5}, Text{"007", true, 7}, Text{"2147483647", true, INT_MAX},
                                         Text{"-2147483648", true, INT_MIN}, Text{"2147483648", false, 0},
                                         Text{"-2147483649", false, 0}, Text{"4294967295", false, 0},
                                         Text{"99999999999999999999", false, 0}, Text{"", false, 0},
                                         Text{"+", false, 0}, Text{"-", false, 0}, Text{"+-5", false, 0},
                                         Text{"-+5", false, 0}, Text{"++5", false, 0}, Text{" 5", false, 0},
                                         Text{"5 ", false, 0}, Text{"5x", false, 0}, Text{"0x10", false, 0},
                                         Text{"1.0", false, 0}, Text{"yes", false, 0}));

TEST(CorbaConfigItems, TakeTheLastValue) {
    const Configuration configuration{{"item", "1"}};
    int number = 9;
    Items().SetItem("item", "2");
    EXPECT_TRUE(Items().GetIntItemInfo("item", number));
    EXPECT_EQ(number, 2);
    Items().SetItem("item", "no number");
    EXPECT_FALSE(Items().GetIntItemInfo("item", number));
    EXPECT_EQ(number, 2);
}

TEST(CorbaConfigItems, CanBeTakenAway) {
    const Configuration configuration{{"a", "1"}, {"b", "2"}};
    std::string text = "old";
    Items().RemoveItem("a");
    Items().RemoveItem("was never there");
    EXPECT_FALSE(Items().GetStrItemInfo("a", text));
    EXPECT_TRUE(Items().GetStrItemInfo("b", text));
    Items().Clear();
    EXPECT_FALSE(Items().GetStrItemInfo("b", text));
    Items().SetItem("a", "3");
    EXPECT_TRUE(Items().GetStrItemInfo("a", text));
    EXPECT_EQ(text, "3");
}

TEST(CorbaConfigItems, TellKeysApart) {
    const Configuration configuration;
    for (int number = 0; number < 500; ++number) {
        Items().SetItem("key" + std::to_string(number), std::to_string(number));
    }
    for (int number = 0; number < 500; ++number) {
        int value = -1;
        EXPECT_TRUE(Items().GetIntItemInfo("key" + std::to_string(number), value));
        EXPECT_EQ(value, number);
    }
    int value = 9;
    EXPECT_FALSE(Items().GetIntItemInfo("KEY1", value)) << "names are case-sensitive";
    EXPECT_FALSE(Items().GetIntItemInfo("", value));
}

// Returns the processor time of this thread, which other programs hardly change.
double ProcessorSeconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

// Setting, reading and removing ten times as many items takes about ten times as long, not a hundred times.
TEST(CorbaConfigItems, TakeTimeInProportionToTheirNumber) {
    const Configuration configuration;
    const auto seconds = [](const std::string& prefix, int count) {
        const double begin = ProcessorSeconds();
        for (int number = 0; number < count; ++number) {
            Items().SetItem(prefix + std::to_string(number), "1");
        }
        int found = 0;
        for (int number = 0; number < count; ++number) {
            int value = 0;
            found += Items().GetIntItemInfo(prefix + std::to_string(number), value) ? value : 0;
        }
        EXPECT_EQ(found, count);
        for (int number = 0; number < count; ++number) {
            Items().RemoveItem(prefix + std::to_string(number));
        }
        return ProcessorSeconds() - begin;
    };
    double few = seconds("one of few ", 16000);
    few = std::min(few, seconds("one of a few more ", 16000));
    EXPECT_LT(seconds("one of many ", 160000), 40 * few);
}

// A reader in another thread, while the table of items grows.
TEST(CorbaConfigItems, AreFoundWhileOthersAreAdded) {
    const Configuration configuration{{"there all the time", "7"}};
    std::atomic<bool> stop{false};
    std::thread reader([&stop] {
        while (!stop.load()) {
            int value = 0;
            ASSERT_TRUE(Items().GetIntItemInfo("there all the time", value));
            ASSERT_EQ(value, 7);
        }
    });
    for (int number = 0; number < 20000; ++number) {
        const std::string key = "added " + std::to_string(number);
        ASSERT_EQ(Items().GetItem(key).GetKey(), key);
    }
    stop.store(true);
    reader.join();
}

TEST(ConfigItem, StaysTheSameWhileItsValueComesAndGoes) {
    const Configuration configuration;
    const ConfigItem& item = Items().GetItem("item looked up early");
    int number = 9;
    EXPECT_EQ(item.GetKey(), "item looked up early");
    EXPECT_FALSE(item.GetInt(number));
    Items().SetItem("item looked up early", "-7");
    EXPECT_TRUE(item.GetInt(number));
    EXPECT_EQ(number, -7);
    EXPECT_EQ(&Items().GetItem("item looked up early"), &item);
    Items().Clear();
    EXPECT_FALSE(item.GetInt(number));
}

TEST(ConfigItem, KeepsATextForWhoReadsIt) {
    const Configuration configuration{{"item", "a text that is too long to be kept inside of its object"}};
    const ConfigItem& item = Items().GetItem("item");
    ReadPin pin;
    const std::string* const text = item.GetText(pin);
    ASSERT_NE(text, nullptr);
    Items().SetItem("item", "another");
    Items().Clear();
    EXPECT_EQ(*text, "a text that is too long to be kept inside of its object");
    ReadPin second;
    EXPECT_EQ(item.GetText(second), nullptr);
}

TEST(ConfigItem, IsReadAsAListOfNumbers) {
    const Configuration configuration{{"item", ",1911,, 7x,65537,-1,x,"}};
    const ConfigItem& item = Items().GetItem("item");
    ReadPin pin;
    const std::vector<int>* const numbers = item.GetNumbers(pin);
    ASSERT_NE(numbers, nullptr);
    Items().SetItem("item", "");
    EXPECT_EQ(*numbers, (std::vector<int>{1911, 7, 65537, -1, 0})) << "the list as it was when the test asked for it";
    EXPECT_EQ(*item.GetNumbers(pin), std::vector<int>());
    Items().RemoveItem("item");
    EXPECT_EQ(item.GetNumbers(pin), nullptr);
}

}  // namespace
