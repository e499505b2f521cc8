#include <atomic>
#include <thread>

#include <gmock/gmock.h>

#include <kx_domain_util/devicedomainmgr.h>
#include <kx_domain_util/netype.h>
#include <kx_domain_util/processexception.h>
#include <kx_platform/configitems.h>
#include <kx_platform/dawsvcinterface.h>
#include <kx_platform/inventorybufif.h>
#include <kx_platform/logsvcinterface.h>
#include <kx_standalone/host.h>

#include "support.h"

namespace {

using namespace NS_STANDALONE;
using namespace NS_TEST;
using NS_BUNDLEMGR1::CorbaConfigItems;

bool AnythingIsThere() {
    std::string item;
    std::map<std::string, std::list<int>> lists;
    NS_UTIL::DeviceDomainMgr::Instance()->GetDomainEqtCache(lists);
    return FindService<NS_SERVICE::InventoryBufif>("InventoryBufif") != nullptr ||
           FindService<NS_SERVICE::DAWSvcInterface>("DAWSvcInterface") != nullptr ||
           FindService<NS_SERVICE::LogSvcInterface>("LogSvcInterface") != nullptr ||
           CorbaConfigItems::Instance()->GetStrItemInfo("Telvandaire", item) || !lists.empty();
}

class HostTest : public testing::Test {
protected:
    HostTest() {
        MakeInventory(m_folder / "a.db", {.neTypes = {{1887, "KLV", false, true}},
                                          .nes = {{12, 1887, true, false}},
                                          .domainMembers = {{DomainCache::EQUIPMENT_TYPE, "OTN", 7}}});
        WriteFile(m_folder / "kx_corbaagent_bundle/bundle.cfg", "Telvandaire = 2\n");
        m_options.inventoryFile = m_folder / "a.db";
        m_options.configFolder = m_folder.Path();
        m_options.log.kind = LogTarget::Kind::FILE;
        m_options.log.file = m_folder / "kx.log";
    }

    TemporaryFolder m_folder;
    HostOptions m_options;
};

TEST_F(HostTest, NamesTheItemsOfItsConfiguration) {
    using testing::ElementsAre;
    using testing::IsEmpty;
    const std::string file = m_folder / "kx_corbaagent_bundle/bundle.cfg";
    CorbaConfigItems::Instance()->SetItem("Other", "1");
    {
        Host host(m_options);
        EXPECT_THAT(host.ConfigurationItems(), ElementsAre("Telvandaire"));
        WriteFile(file, "b = 1\na = \"x\"\n[section]\nc = 1\n");
        host.ReloadConfiguration();
        EXPECT_THAT(host.ConfigurationItems(), ElementsAre("a", "b"));
    }
    m_options.configFolder.clear();
    EXPECT_THAT(Host(m_options).ConfigurationItems(), IsEmpty());
    CorbaConfigItems::Instance()->RemoveItem("Other");
}

TEST_F(HostTest, RegistersAllAndTakesAllBack) {
    for (int round = 0; round < 3; ++round) {
        ASSERT_FALSE(AnythingIsThere());
        {
            const Host host(m_options);
            EXPECT_NE(FindService<NS_SERVICE::InventoryBufif>("InventoryBufif"), nullptr);
            EXPECT_NE(FindService<NS_SERVICE::DAWSvcInterface>("DAWSvcInterface"), nullptr);
            EXPECT_NE(FindService<NS_SERVICE::LogSvcInterface>("LogSvcInterface"), nullptr);
            EXPECT_TRUE(NS_UTIL::IsOTNNE(7));
            EXPECT_TRUE(NS_UTIL::IsKLVNE(1887));
            EXPECT_TRUE(NS_UTIL::IsTransMultiSubShelfNE(12, 1887));
        }
        EXPECT_FALSE(AnythingIsThere());
        EXPECT_THROW(NS_UTIL::IsKLVNE(1887), NS_UTIL::InterfaceNotExistException);
    }
}

TEST_F(HostTest, MayHaveNoParts) {
    Host host(HostOptions{});
    host.ReloadInventory();
    host.ReloadConfiguration();
    EXPECT_FALSE(AnythingIsThere());
}

TEST_F(HostTest, LeavesNothingBehindWhenItsConfigurationIsBad) {
    WriteFile(m_folder / "kx_corbaagent_bundle/bundle.cfg", "Telvandaire = 2\nx = [1]\n");
    EXPECT_THAT(ErrorOf([&] { const Host host(m_options); }), testing::HasSubstr("bundle.cfg:2:"));
    EXPECT_FALSE(AnythingIsThere());
}

TEST_F(HostTest, LeavesNothingBehindWhenItsInventoryIsBad) {
    m_options.inventoryFile = m_folder / "absent.db";
    EXPECT_THAT(ErrorOf([&] { const Host host(m_options); }), testing::HasSubstr("absent.db: no such file"));
    EXPECT_FALSE(AnythingIsThere());
}

TEST_F(HostTest, LeavesNothingBehindWhenItsLogIsBad) {
    m_options.log.file = m_folder.Path();
    EXPECT_THAT(ErrorOf([&] { const Host host(m_options); }), testing::HasSubstr("log file"));
    EXPECT_FALSE(AnythingIsThere());
}

TEST_F(HostTest, WaitsForCallsInFlightBeforeItFrees) {
    auto host = std::make_unique<Host>(m_options);
    std::atomic<bool> stop{false};
    std::atomic<int> answers{0};
    std::atomic<int> refusals{0};
    std::vector<std::thread> callers;
    for (int thread = 0; thread < 3; ++thread) {
        callers.emplace_back([&] {
            while (!stop) {
                try {
                    ASSERT_TRUE(NS_UTIL::IsKLVNE(1887));
                    ASSERT_TRUE(NS_UTIL::IsTransMultiSubShelfNE(12, 1887));
                    ++answers;
                } catch (const NS_UTIL::InterfaceNotExistException&) {
                    ++refusals;
                }
            }
        });
    }
    const auto waitForFirst = [](const std::atomic<int>& count) {
        while (count == 0) {
            std::this_thread::yield();
        }
    };
    waitForFirst(answers);
    host.reset();
    waitForFirst(refusals);
    for (int round = 0; round < 20; ++round) {
        host = std::make_unique<Host>(m_options);
        host.reset();
    }
    stop = true;
    for (std::thread& caller : callers) {
        caller.join();
    }
}

}  // namespace
