// What every operation does when memory runs out: each of its allocations fails in turn, alone or with all later ones.
#include <array>
#include <cstdio>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <new>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <kx_domain_util/processexception.h>

#include "support/allocations.h"
#include "support/childprocess.h"
#include "support/operations.h"
#include "support/services.h"

namespace {

using NS_TEST::AllOperations;
using NS_TEST::Answer;
using NS_TEST::Configuration;
using NS_TEST::CountingInventory;
using NS_TEST::FailingAllocations;
using NS_TEST::InChildProcess;
using NS_TEST::LiveAllocations;
using NS_TEST::LONG_TEXT;
using NS_TEST::Operation;
using NS_TEST::Registration;
using NS_TEST::Shortage;
using NS_TEST::SHORTAGES;
using NS_UTIL::InterfaceNotExistException;
using testing::HasSubstr;
using testing::Optional;

// ---- The surroundings -----------------------------------------------------------------------------------------------

// Services that allocate nothing, so that only allocations of the library fail.
class QuietDataAccess : public NS_SERVICE::DAWSvcInterface, private NS_SERVICE::ConfigObject {
public:
    NS_SERVICE::ConfigObject* GetConfiguration(const std::string&, const std::string&) override { return this; }

private:
    bool GetIntItemInfo(const std::string&, int&) override { return true; }
};

class QuietLog : public NS_SERVICE::LogSvcInterface, private NS_SERVICE::ModuleLogger {
public:
    NS_SERVICE::ModuleLogger* GetModuleLogger(const std::string&, const std::string&, const std::string&) override {
        return this;
    }

private:
    void WriteLog(const std::string&, const std::string&, int, int, const char*, ...) override {}
};

struct Services {
    Configuration configuration{
        {"Telvandaire", "1"},     {"NETypeListForSubSlot", "7,8,1911,and more than fits inside"},
        {"PfmFrameRdSize", "99"}, {"EventSwitch", "2"},
        {"Blacklist", "5,6,7,8"}, {NS_TEST::LONG_KEY, LONG_TEXT}};
    CountingInventory inventory{1911};
    QuietDataAccess dataAccess;
    QuietLog log;
    Registration first{"InventoryBufif", inventory};
    Registration second{"DAWSvcInterface", dataAccess};
    Registration third{"LogSvcInterface", log};
};

// ---- One operation --------------------------------------------------------------------------------------------------

enum class Outcome { ANSWERED, SERVICE_MISSING, OUT_OF_MEMORY };

Outcome Ask(Answer& answer) {
    try {
        answer.Ask();
        return Outcome::ANSWERED;
    } catch (const InterfaceNotExistException&) {
        return Outcome::SERVICE_MISSING;
    } catch (const std::bad_alloc&) {
        return Outcome::OUT_OF_MEMORY;
    }
}

struct Attempt {
    Outcome outcome = Outcome::ANSWERED;
    bool hasMemoryFailed = true;  // there may be an answer nevertheless, if only a log record was lost
};

Attempt AskSparing(std::size_t spared, Shortage shortage, Answer& answer) {
    const FailingAllocations failing(spared, shortage);
    const Outcome outcome = Ask(answer);
    return {outcome, failing.HasOneFailed()};
}

// Runs an operation again and again in a process that has not used the library before. Returns what is wrong, or an
// empty text.
class Trial {
public:
    Trial(const Operation& operation, Shortage shortage)
        : m_operation(operation), m_shortage(shortage), m_right(operation.makeAnswer()) {}

    std::string Complaint() {
        const std::string complaint = FirstCalls();
        return complaint.empty() ? LaterCalls() : complaint;
    }

private:
    struct FirstAnswer {
        std::size_t spared;
        Outcome outcome;
        std::unique_ptr<Answer> answer;
    };

    /// First calls make what stays for the life of the process, and some of them fail. A call that answers
    /// nevertheless, for example because it lost only a log record, must answer right.
    std::string FirstCalls() {
        std::vector<FirstAnswer> answers;  // compared as soon as the right answer is known
        Attempt attempt;
        for (std::size_t spared = 0; attempt.hasMemoryFailed; ++spared) {
            auto answer = m_operation.makeAnswer();
            attempt = AskSparing(spared, m_shortage, *answer);
            if (attempt.outcome != Outcome::OUT_OF_MEMORY) {
                answers.push_back({spared, attempt.outcome, std::move(answer)});
            }
        }
        m_outcome = Ask(*m_right);
        for (const FirstAnswer& first : answers) {
            if (first.outcome != m_outcome || !IsRight(*first.answer)) {
                return "a first call answers wrong" + After(first.spared);
            }
        }
        return "";
    }

    /// Later calls: each either fails and leaves nothing, or answers.
    std::string LaterCalls() {
        AskInOtherThread(*m_operation.makeAnswer());  // makes what stays after a second thread
        Attempt attempt;
        for (std::size_t spared = 0; attempt.hasMemoryFailed; ++spared) {
            const std::ptrdiff_t live = LiveAllocations();
            {
                const auto answer = m_operation.makeAnswer();
                const auto next = m_operation.makeAnswer();
                attempt = AskSparing(spared, m_shortage, *answer);
                if (attempt.outcome != Outcome::OUT_OF_MEMORY && (attempt.outcome != m_outcome || !IsRight(*answer))) {
                    return "it answers wrong" + After(spared);
                }
                if (AskInOtherThread(*next) != m_outcome || !next->Equals(*m_right)) {
                    return "the next call of another thread goes wrong" + After(spared);
                }
                // Some operations add to the record that they answered into: only one that failed is asked again.
                if (attempt.outcome == Outcome::OUT_OF_MEMORY && (Ask(*answer) != m_outcome || !IsRight(*answer))) {
                    return "the next call into the same record goes wrong" + After(spared);
                }
            }
            if (const std::ptrdiff_t left = LiveAllocations() - live; left != 0) {
                return std::to_string(left) + " allocations are left" + After(spared);
            }
        }
        return "";
    }

    static std::string After(std::size_t spared) { return " after " + std::to_string(spared) + " allocations"; }

    // If a service is missing, the answer is whatever was written before, which differs after a failure.
    bool IsRight(const Answer& answer) const {
        return m_outcome == Outcome::SERVICE_MISSING || answer.Equals(*m_right);
    }

    // If a lock was left held, waits until the process is ended.
    static Outcome AskInOtherThread(Answer& answer) {
        Outcome outcome = Outcome::OUT_OF_MEMORY;
        std::thread([&] { outcome = Ask(answer); }).join();
        return outcome;
    }

    const Operation& m_operation;
    Shortage m_shortage;
    Outcome m_outcome = Outcome::ANSWERED;
    std::unique_ptr<Answer> m_right;
};

// What stays after a first call: one plain call, or several calls that all fail except the last.
std::ptrdiff_t AllocationsThatStay(const Operation& operation, std::optional<Shortage> shortage) {
    const std::ptrdiff_t live = LiveAllocations();
    {
        const auto answer = operation.makeAnswer();
        if (!shortage) {
            Ask(*answer);
        }
        for (std::size_t spared = 0; shortage && AskSparing(spared, *shortage, *answer).hasMemoryFailed; ++spared) {}
    }
    return LiveAllocations() - live;
}

// Operations in a process that has all services, and in one that has none.
class FailingMemory : public testing::TestWithParam<std::tuple<bool, Shortage>> {
protected:
    static Shortage GetShortage() { return std::get<Shortage>(GetParam()); }

    static std::string InFreshProcess(const std::function<std::string()>& say) {
        return InChildProcess([&say] {
                   std::optional<Services> services;
                   if (std::get<bool>(GetParam())) {
                       services.emplace();
                   }
                   return say();
               })
            .value_or("it ends the process");
    }
};

TEST_P(FailingMemory, HarmsNoOperation) {
    for (const Operation& operation : AllOperations()) {
        EXPECT_EQ(InFreshProcess([&] { return Trial(operation, GetShortage()).Complaint(); }), "") << operation.name;
    }
}

// Fewer allocations may stay if a failed first call only drops a log record.
TEST_P(FailingMemory, LetsFirstCallsLeaveNoMore) {
    for (const Operation& operation : AllOperations()) {
        const auto staying = [&operation](std::optional<Shortage> shortage) {
            return std::stol(InFreshProcess([&] { return std::to_string(AllocationsThatStay(operation, shortage)); }));
        };
        EXPECT_LE(staying(GetShortage()), staying(std::nullopt)) << operation.name;
    }
}

std::string SurroundingsName(const testing::TestParamInfo<std::tuple<bool, Shortage>>& surroundings) {
    const auto [hasServices, shortage] = surroundings.param;
    return std::string(hasServices ? "AHost" : "AnEmptyProcess") + (shortage == Shortage::STAYS ? "ForGood" : "Once");
}

INSTANTIATE_TEST_SUITE_P(Of, FailingMemory, testing::Combine(testing::Bool(), testing::ValuesIn(SHORTAGES)),
                         SurroundingsName);

// Proves that the checks can fail.
class BadAnswer : public Answer {
public:
    explicit BadAnswer(void (*ask)(std::vector<std::string>&)) : m_ask(ask) {}
    void Ask() override { m_ask(m_texts); }
    bool Equals(const Answer& other) const override { return m_texts == static_cast<const BadAnswer&>(other).m_texts; }

private:
    void (*m_ask)(std::vector<std::string>&);
    std::vector<std::string> m_texts;
};

std::optional<std::string> ComplaintAbout(void (*ask)(std::vector<std::string>&), Shortage shortage) {
    const Operation operation{"", [ask] { return std::make_unique<BadAnswer>(ask); }};
    return InChildProcess([&] { return Trial(operation, shortage).Complaint(); });
}

TEST(HarmOfFailingMemory, IsSeen) {
    for (const Shortage shortage : SHORTAGES) {
        EXPECT_EQ(ComplaintAbout(
                      [](std::vector<std::string>& texts) {
                          static std::list<int> kept;
                          kept.push_back(1);
                          texts = {LONG_TEXT};
                          kept.pop_back();
                      },
                      shortage),
                  "1 allocations are left after 1 allocations");
        EXPECT_THAT(ComplaintAbout(
                        [](std::vector<std::string>& texts) {
                            texts.emplace_back("short");
                            texts.emplace_back(LONG_TEXT);
                        },
                        shortage),
                    Optional(HasSubstr("the next call into the same record goes wrong")));
        EXPECT_EQ(ComplaintAbout(
                      [](std::vector<std::string>& texts) {
                          static bool hasFailed = false;
                          try {
                              texts = {LONG_TEXT};
                          } catch (const std::bad_alloc&) {
                              if (std::exchange(hasFailed, true)) {
                                  throw;
                              }
                          }
                      },
                      shortage),
                  "a first call answers wrong after 0 allocations");
        EXPECT_EQ(ComplaintAbout([](std::vector<std::string>& texts) noexcept { texts = {LONG_TEXT}; }, shortage),
                  std::nullopt);
    }
}

TEST(HarmOfFailingMemory, IsSeenWhenAnAnswerIsMadeInSpiteOfIt) {
    EXPECT_EQ(ComplaintAbout(
                  [](std::vector<std::string>& texts) {
                      static int failures = 0;
                      texts.clear();
                      try {
                          texts.push_back(LONG_TEXT);
                      } catch (const std::bad_alloc&) {
                          if (failures++ < 2) {  // first calls: one for each of the allocations
                              throw;
                          }
                          texts.emplace_back("half");
                      }
                  },
                  Shortage::PASSES),
              "it answers wrong after 0 allocations");
    EXPECT_EQ(ComplaintAbout(
                  [](std::vector<std::string>& texts) {
                      static std::thread::id failed;
                      try {
                          texts.assign(1, LONG_TEXT);
                      } catch (const std::bad_alloc&) {
                          failed = std::this_thread::get_id();
                          texts.assign(1, LONG_TEXT);
                      }
                      if (failed != std::thread::id() && failed != std::this_thread::get_id()) {
                          texts.clear();
                      }
                  },
                  Shortage::PASSES),
              "the next call of another thread goes wrong after 0 allocations");
}

// ---- All operations -------------------------------------------------------------------------------------------------

// The functions that the libraries export, by name, each with the signatures of its overloads.
std::map<std::string, std::set<std::string>> ExportedFunctions() {
    std::map<std::string, std::set<std::string>> functions;
    const std::string command = std::string("nm -DC --defined-only ") + KX_LIBRARY_FILES;
    FILE* const listing = popen(command.c_str(), "r");
    std::array<char, 4096> piece{};
    std::string text;
    for (std::size_t size = 1; listing != nullptr && size > 0;) {
        size = std::fread(piece.data(), 1, piece.size(), listing);
        text.append(piece.data(), size);
    }
    EXPECT_TRUE(listing != nullptr && pclose(listing) == 0) << command;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        // "ADDRESS T SIGNATURE"; what is inline in a header has another letter.
        const auto begin = line.find(" T NS_");
        if (begin == std::string::npos) {
            continue;
        }
        const std::string signature = line.substr(begin + 3);
        std::string name = signature.substr(0, signature.find('('));
        name = name.substr(0, name.find("[abi:"));
        functions[name].insert(signature);
    }
    return functions;
}

// Private members, exported with their class. The rows of public functions reach them.
const std::set<std::string> REACHED_BY_OTHERS{"NS_UTIL::UtilCommon::UtilCommon",
                                              "NS_UTIL::NtfFilter::NtfFilter",
                                              "NS_UTIL::NtfFilter::Load",
                                              "NS_BUNDLEMGR1::BundleMgr::Find",
                                              "NS_BUNDLEMGR1::BundleMgr::ForgetBuffers",
                                              "NS_BUNDLEMGR1::BundleMgr::Retire",
                                              "NS_BUNDLEMGR1::CorbaConfigItems::Assign",
                                              "NS_BUNDLEMGR1::CorbaConfigItems::Find",
                                              "NS_BUNDLEMGR1::CorbaConfigItems::FindOrMake"};

TEST(Operations, AreAllThatTheLibrariesExport) {
    std::map<std::string, std::size_t> rows;
    for (const Operation& operation : AllOperations()) {
        ++rows[operation.name];
    }
    const auto exported = ExportedFunctions();
    EXPECT_GT(exported.size(), 150U);
    std::vector<std::string> missing;
    for (const auto& [name, signatures] : exported) {
        const bool isDestructor = name.find('~') != std::string::npos;  // runs in the rows of its class
        if (!isDestructor && !REACHED_BY_OTHERS.contains(name) && rows[name] < signatures.size()) {
            missing.push_back(name);
        }
    }
    EXPECT_THAT(missing, testing::IsEmpty()) << "add a row for each overload to support/operations.cpp";
}

TEST(Operations, AreThoseThatTheLibrariesExport) {
    const auto exported = ExportedFunctions();
    for (const Operation& operation : AllOperations()) {
        EXPECT_TRUE(exported.contains(operation.name)) << operation.name << " is not exported";
    }
    for (const std::string& name : REACHED_BY_OTHERS) {
        EXPECT_TRUE(exported.contains(name)) << name;
    }
}

}  // namespace
