// What becomes of a host when memory runs out while it is made or reads its inventory again: each allocation fails in
// turn. Without a configuration folder: the library that parses TOML ends the process when it has no memory.
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include <kx_domain_util/netype.h>
#include <kx_platform/bundlemgr.h>
#include <kx_standalone/host.h>
#include <kx_standalone/inventoryfile.h>

#include "standalone/support.h"
#include "support/allocations.h"

namespace {

using NS_BUNDLEMGR1::BundleMgr;
using NS_STANDALONE::Host;
using NS_STANDALONE::HostOptions;
using NS_STANDALONE::LogTarget;
using NS_TEST::FailingAllocations;
using NS_TEST::LiveAllocations;

class FailingHost : public testing::Test {
protected:
    FailingHost() {
        NS_STANDALONE::CreateInventory(m_folder / "inventory.db");
        NS_STANDALONE::ReplaceInventory(m_folder / "inventory.db",
                                        {{{1911, "an NE type of quite a long name", true, true}},
                                         {{12, 1911, true, false}, {13, 1911, false, true}},
                                         {{NS_STANDALONE::DomainCache::EQUIPMENT_TYPE, "OTN", 1911}}});
        m_options.inventoryFile = m_folder / "inventory.db";
        m_options.log.kind = LogTarget::Kind::FILE;
        m_options.log.file = m_folder / "log.txt";
    }

    // Whether memory runs out in action when only this many allocations are spared.
    static bool RunsOut(std::size_t spared, const std::function<void()>& action) {
        const FailingAllocations failing(spared);
        try {
            action();
            return false;
        } catch (const std::bad_alloc&) {
            return true;
        }
    }

    static bool IsEverythingTakenBack() {
        const std::lock_guard lock(NS_BUNDLEMGR1::_g_actualmutex);
        return BundleMgr::Instance()->GetServiceObjects().empty();
    }

    // Asked in another thread, which would wait for ever for a lock that was left held.
    static bool AnswersRight() {
        bool isRight = false;
        std::thread([&isRight] {
            isRight = NS_UTIL::IsOTNNE(1911) && NS_UTIL::IsKLVNE(1911) && !NS_UTIL::IsKLVNE(7) &&
                      NS_UTIL::IsTransMultiSubShelfNE(12, 1911) && !NS_UTIL::IsTransMultiSubShelfNE(13, 1911);
        }).join();
        return isRight;
    }

    NS_TEST::TemporaryFolder m_folder;
    HostOptions m_options;
};

TEST_F(FailingHost, IsMadeWholeOrNotAtAll) {
    {
        const Host host(m_options);  // makes what stays
        ASSERT_TRUE(AnswersRight());
    }
    const std::ptrdiff_t live = LiveAllocations();
    std::unique_ptr<Host> host;
    std::size_t spared = 0;
    for (; RunsOut(spared, [&] { host = std::make_unique<Host>(m_options); }); ++spared) {
        ASSERT_TRUE(IsEverythingTakenBack()) << spared;
        ASSERT_EQ(LiveAllocations(), live) << spared;
        const Host next(m_options);
        ASSERT_TRUE(AnswersRight()) << spared;
    }
    EXPECT_GT(spared, 100U);
    EXPECT_TRUE(AnswersRight());
    host.reset();
    EXPECT_TRUE(IsEverythingTakenBack());
    EXPECT_EQ(LiveAllocations(), live);
}

TEST_F(FailingHost, KeepsWhatItHasReadWhenItReadsAgain) {
    Host host(m_options);
    host.ReloadInventory();
    ASSERT_TRUE(AnswersRight());
    const std::ptrdiff_t live = LiveAllocations();
    std::size_t spared = 0;
    for (; RunsOut(spared, [&host] { host.ReloadInventory(); }); ++spared) {
        ASSERT_TRUE(AnswersRight()) << spared;
        ASSERT_EQ(LiveAllocations(), live) << spared;
    }
    EXPECT_GT(spared, 10U);
    EXPECT_TRUE(AnswersRight());
}

TEST_F(FailingHost, InventoryFilesStayWhole) {
    const auto file = m_folder / "inventory.db";
    const NS_STANDALONE::Inventory before = NS_STANDALONE::ReadInventory(file);
    NS_STANDALONE::Inventory after = before;
    after.nes.push_back({14, 1911, false, false});
    std::size_t spared = 0;
    for (; RunsOut(spared, [&] { NS_STANDALONE::ReplaceInventory(file, after); }); ++spared) {
        ASSERT_EQ(NS_STANDALONE::ReadInventory(file), before) << spared;
    }
    EXPECT_EQ(NS_STANDALONE::ReadInventory(file), after);
    EXPECT_GT(spared, 3U);
}

}  // namespace
