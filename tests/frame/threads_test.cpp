// Services, configuration items and singletons while several threads use them; runs under the thread sanitizer too.
#include <atomic>
#include <barrier>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <kx_domain_util/devicedomainmgr.h>
#include <kx_domain_util/netype.h>
#include <kx_domain_util/processexception.h>
#include <kx_domain_util/resIDUtil.h>
#include <kx_platform/readpin.h>

#include "frame/log.h"
#include "frame/serviceaccess.h"
#include "frame/singleton.h"
#include "support/services.h"

namespace {

using NS_BUNDLEMGR1::BundleMgr;
using NS_BUNDLEMGR1::ReadPin;
using NS_DOMAIN::CardIndex;
using NS_DOMAIN::PortIndex;
using NS_TEST::Configuration;
using NS_TEST::CountingInventory;
using NS_TEST::Registration;
using NS_UTIL::DeviceDomainMgr;
using NS_UTIL::ResIDUtil;
using NS_UTIL::NS_FRAME::ServiceAccess;
using std::chrono::milliseconds;

constexpr std::size_t THREADS = 5;

// How long a test lets its threads run against each other.
constexpr milliseconds UNDER_LOAD{700};

BundleMgr& Registry() {
    return *BundleMgr::Instance();
}

// Aborts the process when a test hangs, so that the log shows which one; the time limit of all tests would hide it.
class Watchdog {
public:
    Watchdog()
        : m_thread([](const std::stop_token& stop) {
              const auto end = std::chrono::steady_clock::now() + std::chrono::seconds{60};
              while (!stop.stop_requested()) {
                  if (std::chrono::steady_clock::now() > end) {
                      std::cerr << "threads wait for each other for ever" << std::endl;
                      std::abort();
                  }
                  std::this_thread::sleep_for(milliseconds{5});
              }
          }) {}

private:
    std::jthread m_thread;
};

// Threads that repeat work until this object is destroyed; work gets the number of its thread.
class Workers {
public:
    explicit Workers(const std::function<void(std::size_t)>& work) {
        for (std::size_t number = 0; number < THREADS; ++number) {
            m_threads.emplace_back([this, work, number] {
                while (!m_stop.load()) {
                    work(number);
                    m_rounds.fetch_add(1);
                }
            });
        }
    }
    ~Workers() { Stop(); }

    void Stop() {
        m_stop.store(true);
        for (std::thread& thread : m_threads) {
            if (thread.joinable()) {
                thread.join();
            }
        }
    }
    std::size_t GetRounds() const { return m_rounds.load(); }

private:
    std::atomic<bool> m_stop{false};
    std::atomic<std::size_t> m_rounds{0};
    std::vector<std::thread> m_threads;
};

template <class Work>
void RepeatFor(milliseconds time, Work work) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (std::chrono::steady_clock::now() < end) {
        work();
    }
}

CardIndex Card() {
    CardIndex card;
    card.neId = 12;
    card.slotId = 3;
    return card;
}

constexpr std::string_view CARD = "NE=12,S=3,CP=-1";
constexpr std::string_view CARD_WITH_SUB_SLOT = "NE=12,S=3,CP=-1,SS=-1,SC=-1";

class Threads : public testing::Test {
private:
    Watchdog m_watchdog;
};

using Singletons = Threads;
using Services = Threads;
using Items = Threads;
using Pins = Threads;
using Loggers = Threads;

// ---- Singletons -----------------------------------------------------------------------------------------------------

TEST_F(Singletons, AreMadeOnceByManyFirstCalls) {
    for (int round = 0; round < 100; ++round) {
        std::atomic<int*> instance{nullptr};
        std::atomic<int> made{0};
        std::barrier start(THREADS);
        std::vector<int*> seen(THREADS);
        std::vector<std::thread> threads;
        for (std::size_t number = 0; number < THREADS; ++number) {
            threads.emplace_back([&, number] {
                start.arrive_and_wait();
                seen[number] = NS_UTIL::NS_FRAME::GetInstance(instance, [&made] {
                    made.fetch_add(1);
                    std::this_thread::yield();
                    return new int(7);
                });
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        EXPECT_EQ(made.load(), 1);
        EXPECT_EQ(std::set<int*>(seen.begin(), seen.end()).size(), 1U);
        EXPECT_EQ(seen.front(), instance.load());
        NS_UTIL::NS_FRAME::DestroyInstance(instance, [](int* old) { delete old; });
    }
}

TEST_F(Singletons, GiveEveryFirstCallerTheSameObject) {
    for (int round = 0; round < 100; ++round) {
        DeviceDomainMgr::Destroy();
        std::barrier start(THREADS);
        std::vector<DeviceDomainMgr*> seen(THREADS);
        std::vector<std::thread> threads;
        for (std::size_t number = 0; number < THREADS; ++number) {
            threads.emplace_back([&, number] {
                start.arrive_and_wait();
                seen[number] = DeviceDomainMgr::Instance();
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        EXPECT_NE(seen.front(), nullptr);
        EXPECT_EQ(std::set<DeviceDomainMgr*>(seen.begin(), seen.end()).size(), 1U);
    }
    DeviceDomainMgr::Destroy();
}

// ---- Services -------------------------------------------------------------------------------------------------------

// An inventory that its owner frees right after unregistering it. Sanitizers catch a call that comes too late; without
// them, the mark that the destructor leaves does.
class MortalInventory : public CountingInventory {
public:
    using CountingInventory::CountingInventory;
    ~MortalInventory() override { m_isAlive.store(false); }

    bool QueryNEType(std::int64_t neId, std::uint32_t& neType, bool flag) override {
        if (!m_isAlive.load()) {
            std::cerr << "a service is called after it was taken back" << std::endl;
            std::abort();
        }
        return CountingInventory::QueryNEType(neId, neType, flag);
    }

private:
    std::atomic<bool> m_isAlive{true};
};

TEST_F(Services, ComeAndGoUnderLoad) {
    std::atomic<std::size_t> written{0};
    std::atomic<std::size_t> missed{0};
    Workers converters([&](std::size_t) {
        std::string fdn;
        try {
            ResIDUtil::CardIndex2ResID(Card(), fdn);
            EXPECT_EQ(fdn, CARD_WITH_SUB_SLOT);
            written.fetch_add(1);
        } catch (const NS_UTIL::InterfaceNotExistException&) {
            EXPECT_EQ(fdn, CARD);
            missed.fetch_add(1);
        }
    });
    RepeatFor(UNDER_LOAD, [] {
        auto inventory = std::make_unique<MortalInventory>(1911);
        Registry().RegisterService("InventoryBufif", inventory.get());
        std::this_thread::yield();
        EXPECT_TRUE(Registry().UnregisterService("InventoryBufif"));
        inventory.reset();
        std::this_thread::yield();
    });
    converters.Stop();
    EXPECT_GT(written.load(), 0U);
    EXPECT_GT(missed.load(), 0U);
}

TEST_F(Services, AreNeverMissedWhileOneReplacesAnother) {
    auto current = std::make_unique<MortalInventory>(1911);
    Registry().RegisterService("InventoryBufif", current.get());
    {
        const Workers converters([](std::size_t) {
            std::string fdn;
            EXPECT_NO_THROW(ResIDUtil::CardIndex2ResID(Card(), fdn));
            EXPECT_EQ(fdn, CARD_WITH_SUB_SLOT);
        });
        RepeatFor(UNDER_LOAD, [&current] {
            auto next = std::make_unique<MortalInventory>(1911);
            Registry().RegisterService("InventoryBufif", next.get());
            current = std::move(next);  // frees the replaced one
        });
        EXPECT_GT(converters.GetRounds(), 0U);
    }
    Registry().UnregisterService("InventoryBufif");
}

TEST_F(Services, AreNeverMissedWhileOthersComeAndGo) {
    MortalInventory inventory(1911);
    const Registration registration("InventoryBufif", inventory);
    const Workers converters([](std::size_t) {
        std::string fdn;
        EXPECT_NO_THROW(ResIDUtil::CardIndex2ResID(Card(), fdn));
        EXPECT_EQ(fdn, CARD_WITH_SUB_SLOT);
        int missed = 0;
        for (int look = 0; look < 1000; ++look) {
            ServiceAccess<NS_SERVICE::InventoryBufif> access;
            missed += access.TryGet() == nullptr ? 1 : 0;
        }
        EXPECT_EQ(missed, 0);
    });
    NS_BUNDLEMGR1::ServiceInterface other;
    RepeatFor(UNDER_LOAD, [&other] { const Registration coming("Other", other); });
    EXPECT_GT(converters.GetRounds(), 0U);
}

// A look-up that finds nothing remembers that; registering a service must clear the memory.
TEST_F(Services, AreFoundOnceTheyAreRegistered) {
    const Workers askers([](std::size_t) {
        std::string fdn;
        try {
            ResIDUtil::CardIndex2ResID(Card(), fdn);
        } catch (const NS_UTIL::InterfaceNotExistException&) {}
    });
    MortalInventory inventory(1911);
    RepeatFor(UNDER_LOAD, [&inventory] {
        const Registration registration("InventoryBufif", inventory);
        std::string fdn;
        EXPECT_NO_THROW(ResIDUtil::CardIndex2ResID(Card(), fdn));
    });
}

// An inventory whose queries wait until the test lets them return.
struct HeldInventory : CountingInventory {
    using CountingInventory::CountingInventory;
    bool QueryNEType(std::int64_t neId, std::uint32_t& neType, bool flag) override {
        m_entered.store(true);
        m_entered.notify_all();
        m_mayLeave.wait(false);
        m_left.store(true);
        return CountingInventory::QueryNEType(neId, neType, flag);
    }
    std::atomic<bool> m_entered{false};
    std::atomic<bool> m_mayLeave{false};
    std::atomic<bool> m_left{false};
};

// A call into a registered inventory that lasts until LetGo.
class CallInFlight {
public:
    CallInFlight() {
        Registry().RegisterService("InventoryBufif", &m_inventory);
        m_converter = std::thread([this] { ResIDUtil::CardIndex2ResID(Card(), m_fdn); });
        m_inventory.m_entered.wait(false);
    }

    void LetGo() {
        m_inventory.m_mayLeave.store(true);
        m_inventory.m_mayLeave.notify_all();
    }
    [[nodiscard]] bool HasLeft() const { return m_inventory.m_left.load(); }
    // Waits for the call, and returns its answer.
    std::string Answer() {
        m_converter.join();
        return m_fdn;
    }

private:
    HeldInventory m_inventory{1911};
    std::string m_fdn;
    std::thread m_converter;
};

TEST_F(Services, AreFoundNoMoreAndTakenBackWhenNoCallIsInFlight) {
    CallInFlight call;
    std::atomic<bool> isTakenBack{false};
    std::thread taker([&] {
        EXPECT_TRUE(Registry().UnregisterService("InventoryBufif"));
        EXPECT_TRUE(call.HasLeft()) << "a call is in flight";
        isTakenBack.store(true);
    });
    const auto isFound = [] {
        try {
            return NS_UTIL::IsKLVNE(1911);  // an operation that does not wait
        } catch (const NS_UTIL::InterfaceNotExistException&) {
            return false;
        }
    };
    while (isFound()) {
        std::this_thread::yield();
    }
    for (int round = 0; round < 100; ++round) {
        std::string none;
        EXPECT_THROW(ResIDUtil::CardIndex2ResID(Card(), none), NS_UTIL::InterfaceNotExistException);
        EXPECT_FALSE(isFound());
    }
    EXPECT_FALSE(isTakenBack.load()) << "a call is in flight";
    call.LetGo();
    taker.join();
    EXPECT_TRUE(isTakenBack.load());
    EXPECT_EQ(call.Answer(), CARD_WITH_SUB_SLOT) << "the call in flight has its answer";
}

TEST_F(Services, AreReplacedWhenNoCallIsInFlight) {
    CallInFlight call;
    CountingInventory inventory(1887);
    std::thread replacer([&] {
        Registry().RegisterService("InventoryBufif", &inventory);
        EXPECT_TRUE(call.HasLeft()) << "a call is in flight";
    });
    while (!NS_UTIL::IsKLVNE(1887)) {  // look-ups find the new one during the call into the old one
        std::this_thread::yield();
    }
    call.LetGo();
    replacer.join();
    EXPECT_TRUE(Registry().UnregisterService("InventoryBufif"));
    EXPECT_EQ(call.Answer(), CARD_WITH_SUB_SLOT) << "the call in flight has its answer";
}

TEST_F(Services, MayRegisterOthersAndTakeThemselvesBackFromInside) {
    struct BusyInventory : CountingInventory {
        using CountingInventory::CountingInventory;
        bool QueryNEType(std::int64_t neId, std::uint32_t& neType, bool flag) override {
            NS_BUNDLEMGR1::ServiceInterface other;
            Registry().RegisterService("Inside", &other);
            EXPECT_TRUE(Registry().UnregisterService("Inside"));
            std::string fdn;
            ResIDUtil::CardIndex2ResID({}, fdn);  // needs no inventory
            EXPECT_TRUE(Registry().UnregisterService("InventoryBufif"));
            EXPECT_THROW(ResIDUtil::CardIndex2ResID(Card(), fdn), NS_UTIL::InterfaceNotExistException);
            return CountingInventory::QueryNEType(neId, neType, flag);
        }
    };
    for (int round = 0; round < 50; ++round) {
        auto inventory = std::make_unique<BusyInventory>(1911);
        Registry().RegisterService("InventoryBufif", inventory.get());
        std::string fdn;
        ResIDUtil::CardIndex2ResID(Card(), fdn);
        EXPECT_EQ(fdn, CARD_WITH_SUB_SLOT);
        EXPECT_FALSE(Registry().UnregisterService("InventoryBufif")) << "it has unregistered itself";
    }
}

// An inventory that does something in its first query.
struct ActingInventory : CountingInventory {
    explicit ActingInventory(std::function<void()> act) : CountingInventory(1911), m_act(std::move(act)) {}
    bool QueryNEType(std::int64_t neId, std::uint32_t& neType, bool flag) override {
        if (!m_acted.exchange(true)) {
            m_act();
        }
        return CountingInventory::QueryNEType(neId, neType, flag);
    }
    std::function<void()> m_act;
    std::atomic<bool> m_acted{false};
};

TEST_F(Services, MayReplaceThemselvesFromInside) {
    CountingInventory next(7);
    auto inventory = std::make_unique<ActingInventory>([&next] {
        Registry().RegisterService("InventoryBufif", &next);
        std::string fdn;
        ResIDUtil::CardIndex2ResID(Card(), fdn);
        EXPECT_EQ(fdn, CARD) << "the next inventory answers";
    });
    Registry().RegisterService("InventoryBufif", inventory.get());
    std::string fdn;
    ResIDUtil::CardIndex2ResID(Card(), fdn);
    EXPECT_EQ(fdn, CARD_WITH_SUB_SLOT) << "the old inventory answers the call in flight";
    inventory.reset();
    ResIDUtil::CardIndex2ResID(Card(), fdn);
    EXPECT_EQ(fdn, CARD);
    EXPECT_EQ(next.m_calls.load(), 2U);
    EXPECT_TRUE(Registry().UnregisterService("InventoryBufif"));
}

TEST_F(Services, ThatTakeThemselvesBackWaitForOtherThreads) {
    std::atomic<bool> isOtherInside{false};
    std::atomic<bool> hasOtherLeft{false};
    std::thread other;
    ActingInventory inventory([&] {
        // A second thread enters the inventory, and leaves it some time after this one began to wait for it.
        other = std::thread([&] {
            ServiceAccess<NS_SERVICE::InventoryBufif> access;
            EXPECT_NE(access.TryGet(), nullptr);
            isOtherInside.store(true);
            isOtherInside.notify_all();
            std::this_thread::sleep_for(milliseconds{50});
            hasOtherLeft.store(true);
        });
        isOtherInside.wait(false);
        EXPECT_TRUE(Registry().UnregisterService("InventoryBufif"));
        EXPECT_TRUE(hasOtherLeft.load());
    });
    Registry().RegisterService("InventoryBufif", &inventory);
    std::string fdn;
    ResIDUtil::CardIndex2ResID(Card(), fdn);
    EXPECT_EQ(fdn, CARD_WITH_SUB_SLOT);
    other.join();
}

// Each service uses everything that the registry offers from inside its own operations.
TEST_F(Services, MayUseTheRegistryFromInside) {
    static std::size_t uses = 0;
    static const auto useRegistry = [] {
        NS_BUNDLEMGR1::ServiceInterface other;
        Registry().RegisterService("Inside", &other);
        Registry().RegisterService("Inside", &other);
        {
            const std::lock_guard lock(NS_BUNDLEMGR1::_g_actualmutex);
            EXPECT_EQ(Registry().GetServiceObjects().back().GetInterface(), &other);
        }
        EXPECT_NE(NS_BUNDLEMGR1::CheckIFBuf("Inside"), nullptr);
        EXPECT_NE(ServiceAccess<NS_SERVICE::InventoryBufif>().TryGet(), nullptr);
        EXPECT_TRUE(Registry().UnregisterService("Inside"));
        EXPECT_FALSE(Registry().UnregisterService("Inside"));
        ++uses;
    };
    struct Log : NS_SERVICE::LogSvcInterface, NS_SERVICE::ModuleLogger {
        NS_SERVICE::ModuleLogger* GetModuleLogger(const std::string&, const std::string&, const std::string&) override {
            useRegistry();
            return this;
        }
        void WriteLog(const std::string&, const std::string&, int, int, const char*, ...) override { useRegistry(); }
    } log;
    struct DataAccess : NS_SERVICE::DAWSvcInterface {
        NS_SERVICE::ConfigObject* GetConfiguration(const std::string&, const std::string&) override {
            useRegistry();
            return nullptr;
        }
    } dataAccess;
    ActingInventory inventory([] { useRegistry(); });
    const Registration first("InventoryBufif", inventory);
    const Registration second("DAWSvcInterface", dataAccess);
    const Registration third("LogSvcInterface", log);
    std::string fdn;
    ResIDUtil::CardIndex2ResID(Card(), fdn);
    PortIndex port;
    ResIDUtil::ResID2LoopBackPortIndex("NE=5", port);
    NS_UTIL::NS_FRAME::RES_ID_LOG.Write(1064, 1, "[A test]");
    EXPECT_EQ(uses, 4U) << "the query, the file, the logger and its record";
}

TEST_F(Services, MayBeCalledFromInsideServicesUnderLoad) {
    // Each query asks again from inside, for the next lower NE number, down to 0.
    struct DeepInventory : CountingInventory {
        using CountingInventory::CountingInventory;
        bool QueryNEType(std::int64_t neId, std::uint32_t& neType, bool flag) override {
            CardIndex card;
            card.slotId = 3;
            card.neId = static_cast<std::int32_t>(neId) - 1;
            std::string fdn;
            if (neId > 0) {
                try {
                    ResIDUtil::CardIndex2ResID(card, fdn);
                } catch (const NS_UTIL::InterfaceNotExistException&) {
                    // unregistered during this query
                }
            }
            return CountingInventory::QueryNEType(neId, neType, flag);
        }
    };
    Workers converters([](std::size_t) {
        std::string fdn;
        CardIndex card = Card();
        card.neId = 30;  // nests deeper than one block of pins
        try {
            ResIDUtil::CardIndex2ResID(card, fdn);
            EXPECT_EQ(fdn, "NE=30,S=3,CP=-1,SS=-1,SC=-1");
        } catch (const NS_UTIL::InterfaceNotExistException&) {}
    });
    RepeatFor(UNDER_LOAD, [] {
        auto inventory = std::make_unique<DeepInventory>(1911);
        const Registration registration("InventoryBufif", *inventory);
        std::this_thread::sleep_for(milliseconds{1});
    });
}

// Each service unregisters the other one from inside its own operation, both at the same time.
TEST_F(Services, MayTakeEachOtherBack) {
    struct Inventory : CountingInventory {
        explicit Inventory(std::barrier<>& bothInside) : CountingInventory(1911), m_bothInside(bothInside) {}
        bool QueryNEType(std::int64_t neId, std::uint32_t& neType, bool flag) override {
            m_bothInside.arrive_and_wait();
            EXPECT_TRUE(Registry().UnregisterService("DAWSvcInterface"));
            return CountingInventory::QueryNEType(neId, neType, flag);
        }
        std::barrier<>& m_bothInside;
    };
    struct DataAccess : NS_SERVICE::DAWSvcInterface {
        explicit DataAccess(std::barrier<>& bothInside) : m_bothInside(bothInside) {}
        NS_SERVICE::ConfigObject* GetConfiguration(const std::string&, const std::string&) override {
            m_bothInside.arrive_and_wait();
            EXPECT_TRUE(Registry().UnregisterService("InventoryBufif"));
            return nullptr;
        }
        std::barrier<>& m_bothInside;
    };
    for (int round = 0; round < 30; ++round) {
        std::barrier bothInside(2);
        Inventory inventory(bothInside);
        DataAccess dataAccess(bothInside);
        Registry().RegisterService("InventoryBufif", &inventory);
        Registry().RegisterService("DAWSvcInterface", &dataAccess);
        std::thread writer([] {
            std::string fdn;
            ResIDUtil::CardIndex2ResID(Card(), fdn);
            EXPECT_EQ(fdn, CARD_WITH_SUB_SLOT);
        });
        PortIndex port;
        ResIDUtil::ResID2LoopBackPortIndex("NE=5", port);
        EXPECT_EQ(port.neId, 5);
        writer.join();
    }
}

// ---- Configuration items --------------------------------------------------------------------------------------------

TEST_F(Items, ChangeUnderLoad) {
    const Configuration configuration;
    CountingInventory inventory(1911);
    const Registration registration("InventoryBufif", inventory);
    PortIndex port;
    port.neId = 12;
    port.slotId = 3;
    port.portId = 1;
    std::atomic<std::size_t> listed{0};
    Workers converters([&](std::size_t number) {
        std::string fdn;
        PortIndex read;
        ResIDUtil::PortIndex2ResID(port, fdn, false);
        if (fdn == "NE=12,S=3,CP=-1,SS=-1,SC=-1,PP=||1|") {
            listed.fetch_add(1);
        } else {
            EXPECT_EQ(fdn, "NE=12,S=3,CP=-1,PP=||1|");
        }
        ResIDUtil::ResID2PortIndex("NE=12,S=0,PP=||1|", read);
        EXPECT_TRUE(read.slotId == 0 || read.slotId == -1) << read.slotId;
        if (number == 0) {
            Configuration::Set("Telvandaire", read.slotId == 0 ? "1" : "0");
        }
    });
    const std::string longList(3000, '7');
    RepeatFor(UNDER_LOAD, [&longList] {
        Configuration::Set("NETypeListForSubSlot", "7,1911");
        std::this_thread::yield();
        Configuration::Set("NETypeListForSubSlot", longList);
        Configuration::Remove("NETypeListForSubSlot");
        Configuration::Set("Another item", longList);
    });
    converters.Stop();
    EXPECT_GT(listed.load(), 0U);
}

// ---- Pins -----------------------------------------------------------------------------------------------------------

void PinDeeper(int depth, const std::vector<std::unique_ptr<int>>& things) {
    ReadPin pin;
    if (depth == 0) {
        for (const auto& thing : things) {
            EXPECT_TRUE(ReadPin::IsPinned(thing.get()));
        }
        return;
    }
    pin.Pin(things[static_cast<std::size_t>(depth) - 1].get());
    PinDeeper(depth - 1, things);
}

TEST_F(Pins, NestToAnyDepth) {
    Workers pinners([](std::size_t number) {
        std::vector<std::unique_ptr<int>> things;
        for (std::size_t left = 11 + number * 13; left > 0; --left) {
            things.push_back(std::make_unique<int>(1));
        }
        PinDeeper(static_cast<int>(things.size()), things);
        for (const auto& thing : things) {
            EXPECT_FALSE(ReadPin::IsPinned(thing.get()));
        }
    });
    std::this_thread::sleep_for(UNDER_LOAD / 2);
}

TEST_F(Pins, ProtectWhatIsPublished) {
    std::atomic<std::string*> published{nullptr};
    const Workers readers([&published](std::size_t) {
        ReadPin pin;
        if (const std::string* const text = pin.Protect(published)) {
            EXPECT_EQ(*text, "a text that is too long to be kept inside of its object");
        }
    });
    RepeatFor(UNDER_LOAD / 2, [&published] {
        auto text = std::make_unique<std::string>("a text that is too long to be kept inside of its object");
        published.store(text.get());
        std::this_thread::yield();
        published.store(nullptr);
        ReadPin::WaitUntilReleased(text.get());
    });
}

struct ConvertsAtThreadEnd {
    ~ConvertsAtThreadEnd() {
        std::string fdn;
        ResIDUtil::CardIndex2ResID(Card(), fdn);
        if (fdn != CARD_WITH_SUB_SLOT) {
            std::cerr << "a conversion from a destructor went wrong" << std::endl;
            std::abort();
        }
    }
    bool isTouched = false;
};

// Thread-local objects are destroyed in reverse order. So one made before the thread's first pin converts when the
// thread has already given its pins back.
TEST_F(Pins, AreThereInDestructorsOfThreadLocalObjects) {
    CountingInventory inventory(1911);
    const Registration registration("InventoryBufif", inventory);
    for (int round = 0; round < 100; ++round) {
        std::thread([] {
            thread_local ConvertsAtThreadEnd before;
            before.isTouched = true;
            std::string fdn;
            ResIDUtil::CardIndex2ResID(Card(), fdn);
            thread_local ConvertsAtThreadEnd after;
            after.isTouched = true;
        }).join();
    }
    EXPECT_EQ(inventory.m_calls.load(), 300U);
}

// ---- Loggers --------------------------------------------------------------------------------------------------------

// A log service whose logger is freed with it.
class MortalLog : public NS_SERVICE::LogSvcInterface {
public:
    NS_SERVICE::ModuleLogger* GetModuleLogger(const std::string&, const std::string&, const std::string&) override {
        return m_logger.get();
    }

private:
    struct Logger : NS_SERVICE::ModuleLogger {
        ~Logger() override { m_isAlive.store(false); }
        void WriteLog(const std::string& file, const std::string&, int line, int, const char*, ...) override {
            if (!m_isAlive.load() || file != "resIDUtil" || line != 1064) {
                std::cerr << "a logger is used after its service was taken back" << std::endl;
                std::abort();
            }
            m_records.fetch_add(1);
        }
        std::atomic<bool> m_isAlive{true};
        std::atomic<std::size_t> m_records{0};
    };
    std::unique_ptr<Logger> m_logger = std::make_unique<Logger>();

public:
    std::size_t GetRecords() const { return m_logger->m_records.load(); }
};

TEST_F(Loggers, AreForgottenWithTheirService) {
    Workers writers([](std::size_t number) {
        NS_UTIL::NS_FRAME::RES_ID_LOG.Write(1064, 1, "[Thread %d]", static_cast<int>(number));
    });
    std::size_t records = 0;
    RepeatFor(UNDER_LOAD, [&records] {
        auto log = std::make_unique<MortalLog>();
        Registry().RegisterService("LogSvcInterface", log.get());
        std::this_thread::yield();
        EXPECT_TRUE(Registry().UnregisterService("LogSvcInterface"));
        records += log->GetRecords();
    });
    EXPECT_GT(records, 0U);
}

TEST_F(Loggers, AreUsedNoMoreWhileTheirServiceWaitsToBeTakenBack) {
    // Its first record waits; it only counts the others.
    struct HeldLog : NS_SERVICE::LogSvcInterface, NS_SERVICE::ModuleLogger {
        NS_SERVICE::ModuleLogger* GetModuleLogger(const std::string&, const std::string&, const std::string&) override {
            return this;
        }
        void WriteLog(const std::string&, const std::string&, int, int, const char*, ...) override {
            if (m_records.fetch_add(1) == 0) {
                m_entered.store(true);
                m_entered.notify_all();
                m_mayLeave.wait(false);
            }
        }
        std::atomic<int> m_records{0};
        std::atomic<bool> m_entered{false};
        std::atomic<bool> m_mayLeave{false};
    } log;
    const auto write = [] { NS_UTIL::NS_FRAME::RES_ID_LOG.Write(1064, 1, "a record"); };
    Registry().RegisterService("LogSvcInterface", &log);
    std::thread writer(write);
    log.m_entered.wait(false);
    write();
    EXPECT_EQ(log.m_records.load(), 2);
    std::atomic<bool> isTakenBack{false};
    std::thread taker([&isTakenBack] { isTakenBack.store(Registry().UnregisterService("LogSvcInterface")); });
    int records = 0;
    do {
        records = log.m_records.load();
        write();
    } while (log.m_records.load() != records);
    for (int round = 0; round < 100; ++round) {
        write();
    }
    EXPECT_EQ(log.m_records.load(), records);
    EXPECT_FALSE(isTakenBack.load()) << "a call is in flight";
    log.m_mayLeave.store(true);
    log.m_mayLeave.notify_all();
    taker.join();
    writer.join();
    EXPECT_TRUE(isTakenBack.load());
}

}  // namespace
