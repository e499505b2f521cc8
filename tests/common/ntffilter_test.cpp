#include <array>
#include <atomic>
#include <barrier>
#include <cstddef>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <kx_domain_util/ntffilter.h>
#include <kx_domain_util/utilcommon.h>

#include "support/scale.h"
#include "support/services.h"

namespace {

using NS_TEST::Configuration;
using NS_TEST::RecordingLog;
using NS_TEST::Registration;
using NS_TEST::Scaled;
using NS_UTIL::NtfFilter;
using NS_UTIL::UtilCommon;
using testing::ElementsAre;
using testing::IsEmpty;

using Items = std::map<std::string, std::string>;
using Record = RecordingLog::Record;

Record Loaded(const std::string& mode) {
    return {"utilcommon", "unknown", 1042, 1, "[NtfFilter::IsFilteNtf]: EventSwitch=" + mode};
}
Record Rejected(const std::string& text) {
    return {"utilcommon", "unknown", 1008, 0, "[GetEventFilterList]: " + text + " is empty or wrong"};
}
Record HeldByWhiteList(const std::string& id) {
    return {"utilcommon", "unknown", 1069, 3,
            "[UtilCommon::IsFilteNtf]: the Notify(ID = " + id + ") is filtered by WhiteList"};
}
Record HeldByBlackList(const std::string& id) {
    return {"utilcommon", "unknown", 1075, 3,
            "[UtilCommon::IsFilteNtf]: the Notify(ID = " + id + ") is filtered by BlackList"};
}

class Filter : public testing::Test {
protected:
    Filter() { NtfFilter::Destroy(); }
    ~Filter() override {
        NtfFilter::Destroy();
        UtilCommon::Destroy();
    }

    static bool IsHeldBack(int id) { return NtfFilter::Instance()->IsFilteNtf(id); }

    // The answers of a filter that is loaded from these items.
    static std::vector<bool> Answers(const Items& items, const std::vector<int>& ids) {
        NtfFilter::Destroy();
        const Configuration configuration(items);
        std::vector<bool> answers;
        for (const int id : ids) {
            answers.push_back(IsHeldBack(id));
        }
        return answers;
    }
};

constexpr int ALWAYS_PASSES = 2101250;

TEST_F(Filter, LetsAllPassWithoutASwitch) {
    EXPECT_THAT(Answers({{"Whitelist", "5"}, {"Blacklist", "6"}}, {5, 6, 7, 0, -1, ALWAYS_PASSES}),
                testing::Each(false));
}

TEST_F(Filter, LetsAllPassWithAnyOtherSwitch) {
    for (const char* mode : {"0", "3", "-1", "", "x", "11", "21", "one", " 3"}) {
        EXPECT_THAT(Answers({{"EventSwitch", mode}, {"Whitelist", "5"}, {"Blacklist", "6"}}, {5, 6, 7}),
                    testing::Each(false))
            << mode;
    }
}

TEST_F(Filter, ReadsTheSwitchAsANumber) {
    for (const char* mode : {"1", " 1", "+1", "01", "1x", "1.9"}) {
        EXPECT_EQ(Answers({{"EventSwitch", mode}, {"Whitelist", "5"}, {"Blacklist", "5"}}, {5, 6}),
                  (std::vector<bool>{false, true}))
            << mode;
    }
    EXPECT_EQ(Answers({{"EventSwitch", "4294967298"}, {"Blacklist", "5"}}, {5}), (std::vector<bool>{true}))
        << "2 in 32 bits";
}

TEST_F(Filter, LetsTheWhiteListPass) {
    EXPECT_EQ(Answers({{"EventSwitch", "1"}, {"Whitelist", "5,7"}, {"Blacklist", "5"}},
                      {5, 7, ALWAYS_PASSES, 6, 0, -5, ALWAYS_PASSES + 1}),
              (std::vector<bool>{false, false, false, true, true, true, true}));
}

TEST_F(Filter, LetsOneIdentifierPassAnEmptyWhiteList) {
    for (const Items& items : {Items{{"EventSwitch", "1"}}, Items{{"EventSwitch", "1"}, {"Whitelist", ""}},
                               Items{{"EventSwitch", "1"}, {"Whitelist", "x,0,-2101250"}}}) {
        EXPECT_EQ(Answers(items, {ALWAYS_PASSES, 5, 0}), (std::vector<bool>{false, true, true}));
    }
}

TEST_F(Filter, HoldsTheBlackListBack) {
    EXPECT_EQ(Answers({{"EventSwitch", "2"}, {"Blacklist", "5,-3,0,x"}, {"Whitelist", "5"}}, {5, -3, 0, 6, 1}),
              (std::vector<bool>{true, false, false, false, false}));
    EXPECT_EQ(Answers({{"EventSwitch", "2"}, {"Blacklist", "2101250"}}, {ALWAYS_PASSES}), (std::vector<bool>{true}))
        << "only the white list has the exemption";
    EXPECT_EQ(Answers({{"EventSwitch", "2"}}, {5, 0}), (std::vector<bool>{false, false}));
}

TEST_F(Filter, ReadsListsAsNumbersBetweenCommas) {
    EXPECT_EQ(Answers({{"EventSwitch", "2"}, {"Blacklist", ",, 8,+9,10x,5-7,11;12,5,5,2147483647,4294967301,"}},
                      {8, 9, 10, 5, 6, 7, 11, 12, 2147483647, 0, -1}),
              (std::vector<bool>{true, true, true, true, false, false, true, false, true, false, false}));
}

TEST_F(Filter, ReadsTheItemsOnce) {
    const Configuration configuration({{"EventSwitch", "2"}, {"Blacklist", "5"}});
    NtfFilter* const filter = NtfFilter::Instance();
    Configuration::Set("Blacklist", "6");  // counts: it comes before the first question
    EXPECT_TRUE(filter->IsFilteNtf(6));
    Configuration::Set("Blacklist", "5");
    Configuration::Set("EventSwitch", "1");
    EXPECT_TRUE(filter->IsFilteNtf(6));
    EXPECT_FALSE(filter->IsFilteNtf(5));
    Configuration::Remove("EventSwitch");
    EXPECT_TRUE(filter->IsFilteNtf(6));
}

TEST_F(Filter, ReadsTheItemsAnewAfterDestroy) {
    const Configuration configuration({{"EventSwitch", "2"}, {"Blacklist", "5"}});
    EXPECT_TRUE(IsHeldBack(5));
    Configuration::Set("EventSwitch", "1");
    Configuration::Set("Whitelist", "5");
    NtfFilter::Destroy();
    EXPECT_FALSE(IsHeldBack(5));
    EXPECT_TRUE(IsHeldBack(6));
    Configuration::Remove("EventSwitch");
    NtfFilter::Destroy();
    NtfFilter::Destroy();
    EXPECT_FALSE(IsHeldBack(6));
}

// ---- Records --------------------------------------------------------------------------------------------------------

class FilterRecords : public Filter {
protected:
    RecordingLog m_log;
    Registration m_registration{"LogSvcInterface", m_log};
};

TEST_F(FilterRecords, TellTheSwitchOnce) {
    const Configuration configuration;
    EXPECT_THAT(m_log.m_records, IsEmpty());
    NtfFilter::Instance();
    EXPECT_THAT(m_log.m_records, IsEmpty()) << "making the instance loads nothing; the first question does";
    IsHeldBack(5);
    IsHeldBack(6);
    EXPECT_THAT(m_log.m_records, ElementsAre(Loaded("0")));
    EXPECT_THAT(m_log.m_asked, ElementsAre(RecordingLog::LoggerName{"vemo", "vemo", "debug"}));
}

TEST_F(FilterRecords, TellTheSwitchAsItWasConfigured) {
    for (const auto& [item, number] : Items{{"3", "3"}, {"-7", "-7"}, {"x", "0"}, {"1", "1"}, {"2", "2"}}) {
        m_log.m_records.clear();
        Answers({{"EventSwitch", item}, {"Whitelist", "5"}, {"Blacklist", "6"}}, {5});
        EXPECT_THAT(m_log.m_records, ElementsAre(Loaded(number)));
    }
}

TEST_F(FilterRecords, OfAWhiteList) {
    Answers({{"EventSwitch", "1"}, {"Whitelist", "5,7"}}, {5, 6, ALWAYS_PASSES, -6, 6});
    EXPECT_THAT(m_log.m_records,
                ElementsAre(Loaded("1"), HeldByWhiteList("6"), HeldByWhiteList("-6"), HeldByWhiteList("6")));
}

TEST_F(FilterRecords, OfABlackList) {
    Answers({{"EventSwitch", "2"}, {"Blacklist", "5,-3,0,x"}}, {5, -3, 0, 5});
    EXPECT_THAT(m_log.m_records, ElementsAre(Loaded("2"), HeldByBlackList("5"), HeldByBlackList("5")));
}

TEST_F(FilterRecords, OfAListWithoutTokens) {
    Answers({{"EventSwitch", "1"}, {"Whitelist", ""}}, {5});
    EXPECT_THAT(m_log.m_records, ElementsAre(Loaded("1"), Rejected("Whitelist="), HeldByWhiteList("5")));
    m_log.m_records.clear();
    Answers({{"EventSwitch", "2"}, {"Blacklist", ",,"}}, {5});
    EXPECT_THAT(m_log.m_records, ElementsAre(Loaded("2"), Rejected("Blacklist=,,")));
}

TEST_F(FilterRecords, OfAMissingListDoNotExist) {
    Answers({{"EventSwitch", "2"}, {"Whitelist", ""}}, {5});
    EXPECT_THAT(m_log.m_records, ElementsAre(Loaded("2")));
}

TEST_F(FilterRecords, OfListsThatTheSwitchDoesNotChooseDoNotExist) {
    Answers({{"Whitelist", ""}, {"Blacklist", ""}}, {5});
    EXPECT_THAT(m_log.m_records, ElementsAre(Loaded("0")));
    m_log.m_records.clear();
    Answers({{"EventSwitch", "3"}, {"Whitelist", ""}, {"Blacklist", ""}}, {5});
    EXPECT_THAT(m_log.m_records, ElementsAre(Loaded("3")));
}

TEST_F(FilterRecords, KeepSignsOfFormats) {
    Answers({{"EventSwitch", "2"}, {"Blacklist", ","}}, {5});
    EXPECT_THAT(m_log.m_records, ElementsAre(Loaded("2"), Rejected("Blacklist=,")));
    m_log.m_records.clear();
    Answers({{"EventSwitch", "2"}, {"Blacklist", "%s%n"}}, {5});
    EXPECT_THAT(m_log.m_records, ElementsAre(Loaded("2"))) << "a token that is no number is skipped silently";
}

TEST_F(Filter, AnswersTheSameWhenTheLogServiceFails) {
    RecordingLog log;
    const Registration registration("LogSvcInterface", log);
    log.m_throws = true;
    EXPECT_EQ(Answers({{"EventSwitch", "2"}, {"Blacklist", "5"}}, {5, 6}), (std::vector<bool>{true, false}));
    EXPECT_THAT(log.m_records, IsEmpty());
}

// ---- Threads --------------------------------------------------------------------------------------------------------

// A log service that counts records by line, from any thread.
class CountingLog : public NS_SERVICE::LogSvcInterface, private NS_SERVICE::ModuleLogger {
public:
    NS_SERVICE::ModuleLogger* GetModuleLogger(const std::string& /*module*/, const std::string& /*subModule*/,
                                              const std::string& /*level*/) override {
        return this;
    }
    std::atomic<int> m_loads{0};
    std::atomic<int> m_heldBack{0};

private:
    void WriteLog(const std::string& /*file*/, const std::string& /*function*/, int line, int /*level*/,
                  const char* /*format*/, ...) override {
        (line == 1042 ? m_loads : m_heldBack).fetch_add(1);
    }
};

TEST_F(Filter, IsLoadedOnceByThreadsThatAskAtOnce) {
    const Configuration configuration({{"EventSwitch", "1"}, {"Whitelist", "1,2,3,5,8,13,21,34,55,89"}});
    constexpr std::size_t THREADS = 4;
    for (std::size_t round = 0; round < Scaled(600); ++round) {
        NtfFilter::Destroy();
        CountingLog log;
        const Registration registration("LogSvcInterface", log);
        std::array<std::vector<bool>, THREADS> answers;
        std::barrier start(static_cast<std::ptrdiff_t>(THREADS));
        std::vector<std::thread> threads;
        for (std::vector<bool>& mine : answers) {
            threads.emplace_back([&mine, &start] {
                start.arrive_and_wait();
                for (const int id : {89, 90, ALWAYS_PASSES}) {
                    mine.push_back(IsHeldBack(id));
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        EXPECT_THAT(answers, testing::Each(std::vector<bool>{false, true, false}));
        EXPECT_EQ(log.m_loads, 1);
        EXPECT_EQ(log.m_heldBack, static_cast<int>(THREADS));
    }
}

}  // namespace
