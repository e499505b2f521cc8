// Six threads convert, log, filter and look up. Meanwhile services come and go, and are freed as soon as they are
// taken back; configuration items change all the time. Runs for KX_CHURN_SECONDS seconds, or two if that is not set.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <kx_domain_util/devicedomainmgr.h>
#include <kx_domain_util/fbtype.h>
#include <kx_domain_util/netype.h>
#include <kx_domain_util/ntffilter.h>
#include <kx_domain_util/processexception.h>
#include <kx_domain_util/utilcommon.h>

#include "support/conversions.h"
#include "support/generated.h"
#include "support/services.h"

namespace {

using NS_BUNDLEMGR1::BundleMgr;
using NS_TEST::Configuration;
using NS_TEST::CountingInventory;
using NS_TEST::IdentifierGenerator;
using NS_TEST::Reader;
using NS_TEST::RecordGenerator;
using NS_TEST::Registration;
using NS_TEST::Writer;
using NS_TEST::WriterArguments;
using NS_UTIL::DeviceDomainMgr;
using NS_UTIL::InterfaceNotExistException;
using NS_UTIL::NtfFilter;
using NS_UTIL::UtilCommon;

constexpr std::size_t THREADS = 6;
constexpr std::size_t SAMPLES = 40;  // of each conversion
constexpr unsigned short NE_TYPE = 1911;

std::chrono::seconds Duration() {
    const char* const seconds = std::getenv("KX_CHURN_SECONDS");
    return std::chrono::seconds{seconds != nullptr ? std::atoi(seconds) : 2};
}

// Counts for the report at the end.
std::atomic<std::size_t> answers{0};
std::atomic<std::size_t> missed{0};  // the service was not there
std::atomic<std::size_t> records{0};
std::atomic<std::size_t> freed{0};
std::atomic<std::size_t> registeredInside{0};
std::atomic<std::size_t> itemChanges{0};

// ---- What comes and goes --------------------------------------------------------------------------------------------

// Sanitizers find a use after the end; without them, the mark that the destructor leaves shows it.
class Mortal {
public:
    Mortal() = default;
    ~Mortal() { m_isAlive.store(false); }
    Mortal(const Mortal&) = delete;
    Mortal& operator=(const Mortal&) = delete;

    void Touch() const {
        if (!m_isAlive.load()) {
            std::cerr << "a service or its logger is called after the service was taken back" << std::endl;
            std::abort();
        }
    }

private:
    std::atomic<bool> m_isAlive{true};
};

class MortalInventory : public CountingInventory {
public:
    MortalInventory() : CountingInventory(NE_TYPE) {}

    bool QueryNEType(std::int64_t neId, std::uint32_t& neType, bool flag) override {
        m_mortal.Touch();
        if (m_calls.load() % 64 == 0) {
            UseRegistryFromInside();
        }
        return CountingInventory::QueryNEType(neId, neType, flag);
    }
    bool IsOamNumberOmitted(int neId) override {
        m_mortal.Touch();
        return CountingInventory::IsOamNumberOmitted(neId);
    }
    bool IsIPServiceNEType(unsigned short neType) override {
        m_mortal.Touch();
        return CountingInventory::IsIPServiceNEType(neType);
    }
    bool IsKLVNEType(unsigned short neType) override {
        m_mortal.Touch();
        return CountingInventory::IsKLVNEType(neType);
    }
    bool IsTransMultiSubShelf(unsigned long neId, unsigned short neType) override {
        m_mortal.Touch();
        return CountingInventory::IsTransMultiSubShelf(neId, neType);
    }

private:
    // A name of the thread's own, so that no other thread takes the service back.
    static void UseRegistryFromInside() {
        static thread_local const std::string name =
            "inside of thread " + std::to_string(std::hash<std::thread::id>{}(std::this_thread::get_id()));
        NS_BUNDLEMGR1::ServiceInterface other;
        BundleMgr::Instance()->RegisterService(name, &other);
        BundleMgr::Instance()->UnregisterService(name);
        registeredInside.fetch_add(1);
    }

    Mortal m_mortal;
};

class MortalDataAccess : public NS_SERVICE::DAWSvcInterface {
public:
    NS_SERVICE::ConfigObject* GetConfiguration(const std::string&, const std::string&) override {
        m_file.m_mortal.Touch();
        return &m_file;
    }

private:
    struct File : NS_SERVICE::ConfigObject {
        bool GetIntItemInfo(const std::string& /*key*/, int& value) override {
            m_mortal.Touch();
            value = 1;
            return true;
        }
        Mortal m_mortal;
    } m_file;
};

class MortalLog : public NS_SERVICE::LogSvcInterface {
public:
    NS_SERVICE::ModuleLogger* GetModuleLogger(const std::string&, const std::string&, const std::string&) override {
        m_logger->m_mortal.Touch();
        return m_logger.get();
    }

private:
    struct Logger : NS_SERVICE::ModuleLogger {
        void WriteLog(const std::string&, const std::string&, int, int, const char* format, ...) override {
            m_mortal.Touch();
            std::array<char, 200> message{};
            va_list arguments;
            va_start(arguments, format);
            std::vsnprintf(message.data(), message.size(), format, arguments);
            va_end(arguments);
            m_mortal.Touch();
            records.fetch_add(1);
        }
        Mortal m_mortal;
    };
    std::unique_ptr<Logger> m_logger = std::make_unique<Logger>();
};

// Registers one service after the other, and frees each as soon as it is taken back or replaced.
template <class Service>
void Churn(const std::string& name, const std::atomic<bool>& stop) {
    while (!stop.load()) {
        auto service = std::make_unique<Service>();
        BundleMgr::Instance()->RegisterService(name, service.get());
        std::this_thread::sleep_for(std::chrono::microseconds{200});
        auto next = std::make_unique<Service>();
        BundleMgr::Instance()->RegisterService(name, next.get());
        service = std::move(next);
        std::this_thread::yield();
        EXPECT_TRUE(BundleMgr::Instance()->UnregisterService(name));
        service.reset();
        freed.fetch_add(2);
        std::this_thread::yield();
    }
}

// Every item that conversions read takes every value that makes a difference to them.
constexpr std::array CARRIER_PROFILES{"0", "1"};
constexpr std::array SUB_SLOT_LISTS{"", "7,1911"};

void ChangeItems(const std::atomic<bool>& stop) {
    while (!stop.load()) {
        for (std::size_t round = 0; round < 4; ++round) {
            Configuration::Set("Telvandaire", CARRIER_PROFILES[round % 2]);
            Configuration::Set("NETypeListForSubSlot", SUB_SLOT_LISTS[round / 2]);
            std::this_thread::yield();
        }
        Configuration::Set("PfmFrameRdSize", "3000");
        // Without effect: the filter reads these once.
        Configuration::Set("EventSwitch", "1");
        Configuration::Set("Whitelist", "6");
        Configuration::Set("Blacklist", "6");
        Configuration::Remove("NETypeListForSubSlot");
        Configuration::Remove("Telvandaire");
        Configuration::Remove("PfmFrameRdSize");
        itemChanges.fetch_add(15);
    }
}

// ---- What is asked meanwhile ----------------------------------------------------------------------------------------

// Asks one thing. Returns false if no configuration allows the answer. May throw if a service is missing.
struct Question {
    std::string name;
    std::function<bool()> isRight;
};

// Calls collect in each configuration that threads may see.
void InEachConfiguration(const std::function<void()>& collect) {
    for (const char* const profile : CARRIER_PROFILES) {
        for (const char* const list : SUB_SLOT_LISTS) {
            const Configuration configuration{{"Telvandaire", profile}, {"NETypeListForSubSlot", list}};
            collect();
        }
    }
}

template <class Answer, class Ask>
Question MakeQuestion(std::string name, Ask ask) {
    std::vector<Answer> allowed;
    InEachConfiguration([&] { allowed.push_back(ask()); });
    return {std::move(name), [ask, allowed = std::move(allowed)] {
                return std::find(allowed.begin(), allowed.end(), ask()) != allowed.end();
            }};
}

std::vector<Question> Conversions() {
    MortalInventory inventory;
    MortalDataAccess dataAccess;
    const Registration first("InventoryBufif", inventory);
    const Registration second("DAWSvcInterface", dataAccess);
    IdentifierGenerator identifiers(81);
    RecordGenerator generated(82);
    std::vector<Question> questions;
    for (std::size_t sample = 0; sample < SAMPLES; ++sample) {
        const std::string fdn = identifiers.Next();
        NS_TEST::ForEachReader([&]<class Record>(const Reader<Record>& reader) {
            questions.push_back(
                MakeQuestion<Record>(std::string(reader.name) + " of " + fdn, [fdn, convert = reader.library] {
                    Record record;
                    convert(fdn, record);
                    return record;
                }));
        });
        NS_TEST::ForEachWriter([&]<class Record>(const Writer<Record>& writer) {
            const auto record = generated.Next<Record>();
            const WriterArguments arguments{generated.Flag(), static_cast<unsigned long>(generated.Number())};
            questions.push_back(
                MakeQuestion<std::string>(std::string(writer.name), [record, arguments, convert = writer.library] {
                    std::string written;
                    convert(record, written, arguments);
                    return written;
                }));
        });
    }
    return questions;
}

std::vector<Question> LookUps() {
    return {
        {"IsFilteNtf", [] { return NtfFilter::Instance()->IsFilteNtf(5) && !NtfFilter::Instance()->IsFilteNtf(6); }},
        {"GetPFMPacketSize",
         [] {
             const int size = UtilCommon::Instance()->GetPFMPacketSize();
             return size == 2000 || size == 3000;
         }},
        {"GetBidirFBType", [] { return UtilCommon::Instance()->GetBidirFBType(918) == 916; }},
        {"GetFBTypeName", [] { return NS_UTIL::GetFBTypeName(4350) == "POWER"; }},
        {"IsPTNAIDFBType", [] { return NS_UTIL::IsPTNAIDFBType(4258); }},
        {"IsPortObjByFbType", [] { return NS_UTIL::IsPortObjByFbType(934, 3); }},
        {"InterfaceCTPId2TMFName",
         [] {
             std::string name;
             UtilCommon::Instance()->InterfaceCTPId2TMFName(65524, name);
             return name == "E11";
         }},
        {"IsOTNNE", [] { return NS_UTIL::IsOTNNE(77) && !NS_UTIL::IsOTNNE(78); }},
        {"IsKLVNE", [] { return NS_UTIL::IsKLVNE(NE_TYPE); }},
        {"IsIPServiceNE", [] { return NS_UTIL::IsIPServiceNE(NE_TYPE) && !NS_UTIL::IsIPServiceNE(78); }},
        {"IsTransMultiSubShelfNE", [] { return NS_UTIL::IsTransMultiSubShelfNE(12, NE_TYPE); }},
    };
}

// Asks all questions over and over. Each thread begins with another question.
void Ask(const std::vector<Question>& questions, std::size_t at, std::atomic<bool>& stop) {
    while (!stop.load()) {
        const Question& question = questions[at++ % questions.size()];
        try {
            if (!question.isRight()) {
                ADD_FAILURE() << question.name;
                stop.store(true);
            }
            answers.fetch_add(1);
        } catch (const InterfaceNotExistException&) {
            missed.fetch_add(1);
        }
    }
}

TEST(Churn, OfServicesAndItemsHarmsNobody) {
    // All lists that the questions need: a question for a missing list would make it, in several threads at once.
    DeviceDomainMgr::Instance()->AddDomainEqtCache("OTN", {77});
    DeviceDomainMgr::Instance()->AddDomainEqtCache("PTN31", {});
    std::vector<Question> questions = Conversions();
    const std::vector<Question> lookUps = LookUps();
    for (std::size_t conversions = questions.size(); conversions > 0; --conversions) {
        questions.push_back(lookUps[conversions % lookUps.size()]);
    }
    std::shuffle(questions.begin(), questions.end(), std::mt19937{83});
    const Configuration configuration{{"EventSwitch", "2"}, {"Blacklist", "5"}};
    NtfFilter::Instance()->IsFilteNtf(5);

    std::atomic<bool> stop{false};
    std::vector<std::thread> threads;
    for (std::size_t number = 0; number < THREADS; ++number) {
        threads.emplace_back([&, number] { Ask(questions, number * questions.size() / THREADS, stop); });
    }
    threads.emplace_back([&stop] { Churn<MortalInventory>("InventoryBufif", stop); });
    threads.emplace_back([&stop] { Churn<MortalDataAccess>("DAWSvcInterface", stop); });
    threads.emplace_back([&stop] { Churn<MortalLog>("LogSvcInterface", stop); });
    threads.emplace_back([&stop] { ChangeItems(stop); });
    const auto end = std::chrono::steady_clock::now() + Duration();
    while (!stop.load() && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(std::chrono::milliseconds{20});
    }
    stop.store(true);
    for (std::thread& thread : threads) {
        thread.join();
    }

    std::cout << answers << " answers, " << missed << " times no service; " << freed << " services freed, "
              << registeredInside << " registered from inside of another, " << records << " records, " << itemChanges
              << " items changed\n";
    for (const auto* const seen : {&answers, &missed, &freed, &registeredInside, &records, &itemChanges}) {
        EXPECT_GT(seen->load(), 0U);
    }
    NtfFilter::Destroy();
    UtilCommon::Destroy();
    DeviceDomainMgr::Destroy();
}

}  // namespace
