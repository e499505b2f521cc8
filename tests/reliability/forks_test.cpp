// A process forks over and over while its threads use the library; each child must be able to use all of it.
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <kx_domain_util/devicedomainmgr.h>
#include <kx_domain_util/fbtype.h>
#include <kx_domain_util/netype.h>
#include <kx_domain_util/ntffilter.h>
#include <kx_domain_util/processexception.h>
#include <kx_domain_util/resIDUtil.h>
#include <kx_domain_util/utilcommon.h>
#include <kx_standalone/host.h>

#include "standalone/support.h"
#include "support/scale.h"
#include "support/services.h"

namespace {

using NS_BUNDLEMGR1::BundleMgr;
using NS_BUNDLEMGR1::CorbaConfigItems;
using NS_BUNDLEMGR1::ReadPin;
using NS_STANDALONE::Host;
using NS_STANDALONE::HostOptions;
using NS_TEST::CountingInventory;
using NS_TEST::Registration;
using NS_UTIL::NtfFilter;
using NS_UTIL::ResIDUtil;
using NS_UTIL::UtilCommon;

constexpr std::chrono::seconds CHILD_TIME{20};
constexpr unsigned short NE_TYPE = 1911;

// Makes these calls in a child process. Returns "well", or what went wrong.
std::string EndOfChild(const std::function<bool()>& isRight) {
    const pid_t child = fork();
    if (child == 0) {
        alarm(CHILD_TIME.count());
        _exit(isRight() ? 0 : 1);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child) {
        return "no child";
    }
    if (WIFSIGNALED(status)) {
        return WTERMSIG(status) == SIGALRM ? "hangs" : "killed by signal " + std::to_string(WTERMSIG(status));
    }
    return WEXITSTATUS(status) == 0 ? "well" : "wrong answer";
}

// Threads that call `work` over and over as long as this object lives.
class Load {
public:
    explicit Load(const std::vector<std::function<void()>>& works) {
        for (const auto& work : works) {
            m_threads.emplace_back([this, work] {
                while (!m_stop.load()) {
                    work();
                }
            });
        }
    }
    ~Load() {
        m_stop.store(true);
        for (std::thread& thread : m_threads) {
            thread.join();
        }
    }
    Load(const Load&) = delete;
    Load& operator=(const Load&) = delete;

private:
    std::atomic<bool> m_stop{false};
    std::vector<std::thread> m_threads;
};

std::string WrittenPort() {
    NS_DOMAIN::PortIndex port;
    port.neId = 12;
    port.portId = 3;
    std::string text;
    ResIDUtil::PortIndex2ResID(port, text, false);
    return text;
}

// Also false if there is no inventory.
bool IsSubShelf(unsigned long neId) try {
    return NS_UTIL::IsTransMultiSubShelfNE(neId, NE_TYPE);
} catch (const NS_UTIL::InterfaceNotExistException&) {
    return false;
}

// ---- Services of a test ---------------------------------------------------------------------------------------------

TEST(Forks, UnderLoadLeaveChildrenThatCanDoAll) {
    CountingInventory inventory(NE_TYPE);
    const Registration registration("InventoryBufif", inventory);
    CountingInventory other(NE_TYPE);
    const std::string written = WrittenPort();
    const Load load({
        [] { WrittenPort(); },
        [] { WrittenPort(); },
        [] { IsSubShelf(12); },
        [&other] {
            BundleMgr::Instance()->RegisterService("other", &other);
            BundleMgr::Instance()->UnregisterService("other");
        },
        [] {
            CorbaConfigItems::Instance()->SetItem("Telvandaire", "0");
            CorbaConfigItems::Instance()->RemoveItem("Telvandaire");
        },
        [] { UtilCommon::Instance()->GetBidirFBType(918); },
        [] { NtfFilter::Instance()->IsFilteNtf(5); },
    });
    for (int round = 0; round < 200; ++round) {
        ASSERT_EQ(EndOfChild([&] {
                      CorbaConfigItems::Instance()->SetItem("Telvandaire", "0");
                      const bool isRight =
                          WrittenPort() == written && IsSubShelf(12) && NS_UTIL::GetFBTypeName(4350) == "POWER" &&
                          UtilCommon::Instance()->GetBidirFBType(918) == 916 && !NtfFilter::Instance()->IsFilteNtf(5);
                      BundleMgr::Instance()->RegisterService("other", &other);
                      return isRight && BundleMgr::Instance()->UnregisterService("other") &&
                             BundleMgr::Instance()->UnregisterService("InventoryBufif") && !IsSubShelf(12);
                  }),
                  "well")
            << "in round " << round;
    }
}

// Forks inside its own operation when the main thread asks for it, like a service that starts another process. The
// child takes the service back inside that operation. Doing so waits for no thread of the parent, and the object stays
// until the operation ends.
class ForkingInventory : public CountingInventory {
public:
    ForkingInventory() : CountingInventory(NE_TYPE) {}

    bool IsTransMultiSubShelf(unsigned long neId, unsigned short neType) override {
        if (std::this_thread::get_id() == m_mainThread) {
            m_ends.push_back(EndOfChild([] {
                const void* const object = OnlyObject();
                return BundleMgr::Instance()->UnregisterService("InventoryBufif") && ReadPin::IsPinned(object);
            }));
        }
        return CountingInventory::IsTransMultiSubShelf(neId, neType);
    }

    std::vector<std::string> m_ends;

private:
    static const void* OnlyObject() {
        const std::lock_guard lock(NS_BUNDLEMGR1::_g_actualmutex);
        return &BundleMgr::Instance()->GetServiceObjects().front();
    }

    const std::thread::id m_mainThread = std::this_thread::get_id();
};

TEST(Forks, InsideAServiceKeepThePinsOfTheForkingThread) {
    ForkingInventory inventory;
    const Registration registration("InventoryBufif", inventory);
    const Load load({[] { IsSubShelf(12); }, [] { IsSubShelf(13); }, [] { IsSubShelf(14); }});
    for (int round = 0; round < 100; ++round) {
        IsSubShelf(12);
    }
    EXPECT_EQ(inventory.m_ends, std::vector<std::string>(100, "well"));
}

// ---- A host ---------------------------------------------------------------------------------------------------------

class ForksOfAHost : public testing::Test {
protected:
    ForksOfAHost() {
        NS_STANDALONE::Inventory inventory;
        inventory.neTypes = {{NE_TYPE, "type", true, true}};
        for (std::int32_t neId = 0; neId < 2000; ++neId) {
            inventory.nes.push_back({neId, NE_TYPE, neId == 12, false});
        }
        NS_TEST::MakeInventory(m_folder / "inventory.db", inventory);
        NS_TEST::WriteFile(m_folder / "kx_corbaagent_bundle/bundle.cfg", "a = 1\n");
        m_options.inventoryFile = m_folder / "inventory.db";
        m_options.configFolder = m_folder.Path();
        m_options.log.kind = NS_STANDALONE::LogTarget::Kind::FILE;
        m_options.log.file = m_folder / "log.txt";
    }

    static void Log(const std::string& text) {
        auto* const service = NS_TEST::FindService<NS_SERVICE::LogSvcInterface>("LogSvcInterface");
        service->GetModuleLogger("m", text, "debug")->WriteLog("f", "g", 1, 3, "<%s>", text.c_str());
    }

    static bool HasItem() {
        auto* const service = NS_TEST::FindService<NS_SERVICE::DAWSvcInterface>("DAWSvcInterface");
        int value = 0;
        return service->GetConfiguration("kx_corbaagent_bundle/bundle.cfg", "")->GetIntItemInfo("a", value) &&
               value == 1;
    }

    NS_TEST::TemporaryFolder m_folder;
    HostOptions m_options;
};

TEST_F(ForksOfAHost, UnderLoadLeaveChildrenThatCanDoAll) {
#ifdef KX_TEST_ADDRESS_SANITIZED
    GTEST_SKIP() << "the address sanitizer of clang 14 does not hold the locks of its allocator over a fork";
#endif
    std::optional<Host> host(m_options);
    {
        const Load load({
            [] { IsSubShelf(12); },
            [] { IsSubShelf(13); },
            [] { Log("of the parent"); },
            [] { Log("of the parent"); },
            [] { HasItem(); },
            [] { NtfFilter::Instance()->IsFilteNtf(5); },  // the first time it logs while it holds its lock
            [&host] { host->ReloadInventory(); },
            [&host] { host->ReloadConfiguration(); },
        });
        for (int round = 0; round < 100; ++round) {
            ASSERT_EQ(EndOfChild([&host] {
                          Log("of a child");
                          host->ReloadInventory();
                          host->ReloadConfiguration();
                          const bool isRight = IsSubShelf(12) && !IsSubShelf(13) && HasItem();
                          host.reset();
                          return isRight;
                      }),
                      "well")
                << "in round " << round;
        }
    }
}

// The child does not repeat what the parent has written but not yet passed to the system.
TEST_F(ForksOfAHost, WriteEachRecordOnce) {
    {
        std::optional<Host> host(m_options);
        Log("before the fork");
        ASSERT_EQ(EndOfChild([&host] {
                      Log("in the child");
                      host.reset();
                      return true;
                  }),
                  "well");
    }
    const std::string text = NS_TEST::ReadFile(m_folder / "log.txt");
    for (const char* const record : {"<before the fork>", "<in the child>"}) {
        const auto first = text.find(record);
        ASSERT_NE(first, std::string::npos) << record;
        EXPECT_EQ(text.find(record, first + 1), std::string::npos) << record;
    }
}

}  // namespace
