// What happens to a host and to inventory files if memory runs out while they are made or read: each allocation fails
// in turn, alone or with all later ones.
#include <algorithm>
#include <filesystem>
#include <functional>
#include <mutex>
#include <new>
#include <optional>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include <kx_domain_util/devicedomainmgr.h>
#include <kx_domain_util/netype.h>
#include <kx_platform/bundlemgr.h>
#include <kx_platform/configitems.h>
#include <kx_platform/dawsvcinterface.h>
#include <kx_platform/logsvcinterface.h>
#include <kx_standalone/host.h>
#include <kx_standalone/inventoryfile.h>

#include "standalone/support.h"
#include "support/allocations.h"

namespace {

using NS_BUNDLEMGR1::BundleMgr;
using NS_BUNDLEMGR1::CorbaConfigItems;
using NS_STANDALONE::Host;
using NS_STANDALONE::HostOptions;
using NS_STANDALONE::LogTarget;
using NS_TEST::FailingAllocations;
using NS_TEST::LiveAllocations;
using NS_TEST::Shortage;
using NS_UTIL::DeviceDomainMgr;

constexpr const char* BUNDLE_FILE = "kx_corbaagent_bundle/bundle.cfg";
constexpr const char* OTHER_FILE = "other.cfg";
const std::string OLD_TEXT = "an old text that is too long to be kept inside of its object";
const std::string NEW_TEXT = "a new text that is too long to be kept inside of its object";

class FailingHost : public testing::TestWithParam<Shortage> {
protected:
    FailingHost() {
        NS_STANDALONE::CreateInventory(m_inventoryFile);
        NS_STANDALONE::ReplaceInventory(m_inventoryFile, {{{1911, "an NE type of quite a long name", true, true}},
                                                          {{12, 1911, true, false}, {13, 1911, false, true}},
                                                          {{NS_STANDALONE::DomainCache::EQUIPMENT_TYPE, "OTN", 1911}}});
        m_options.inventoryFile = m_inventoryFile;
        m_options.log.kind = LogTarget::Kind::FILE;
        m_options.log.file = m_folder / "log.txt";
        WriteConfiguration(OLD_TEXT);
        NS_TEST::WriteFile(m_folder / OTHER_FILE, "number = 3\n[\"a section of quite a long name\"]\nnumber = 4\n");
    }

    void WriteConfiguration(const std::string& text) {
        NS_TEST::WriteFile(m_folder / BUNDLE_FILE,
                           "# a comment\nText = \"" + text + "\"\nLetters = 'of " + text +
                               "'\nNumber = 1_000\nFlag = true\n[section]\nnumber = 7\ntext = \"\\u0041\"\n");
    }

    // Lets each allocation of `action` fail in turn, until none is left to fail. After each attempt calls `check` with
    // whether the action succeeded; that undoes everything, so that nothing remains. Returns the number of failures.
    static std::size_t LetEachFail(const std::function<void()>& action, const std::function<void(bool)>& check) {
        action();  // makes what stays
        check(true);
        bool hasOneFailed = true;
        std::size_t spared = 0;
        for (; hasOneFailed && !HasFailure(); ++spared) {
            const testing::ScopedTrace trace(__FILE__, __LINE__, std::to_string(spared) + " allocations are spared");
            const std::ptrdiff_t live = LiveAllocations();
            const bool isDone = IsDoneSparing(spared, action, hasOneFailed);
            EXPECT_TRUE(isDone || hasOneFailed);
            check(isDone);
            EXPECT_EQ(LiveAllocations(), live);
        }
        return spared - 1;
    }

    static bool IsDoneSparing(std::size_t spared, const std::function<void()>& action, bool& hasOneFailed) {
        const FailingAllocations failing(spared, GetParam());
        bool isDone = true;
        try {
            action();
        } catch (const std::bad_alloc&) {
            isDone = false;
        }
        hasOneFailed = failing.HasOneFailed();
        return isDone;
    }

    static bool IsEverythingTakenBack() {
        std::string text;
        const std::lock_guard lock(NS_BUNDLEMGR1::_g_actualmutex);
        return BundleMgr::Instance()->GetServiceObjects().empty() &&
               !CorbaConfigItems::Instance()->GetStrItemInfo("Text", text);
    }

    // Asks in another thread, which would wait forever for a lock that was left held.
    static bool AnswersRight() {
        bool isRight = false;
        std::thread([&isRight] {
            isRight = NS_UTIL::IsOTNNE(1911) && NS_UTIL::IsKLVNE(1911) && !NS_UTIL::IsKLVNE(7) &&
                      NS_UTIL::IsTransMultiSubShelfNE(12, 1911) && !NS_UTIL::IsTransMultiSubShelfNE(13, 1911);
        }).join();
        return isRight;
    }

    static std::string Item(const std::string& key) {
        std::string text;
        return CorbaConfigItems::Instance()->GetStrItemInfo(key, text) ? text : "none";
    }

    static bool HasConfiguration(const std::string& text) {
        return Item("Text") == text && Item("Letters") == "of " + text && Item("Number") == "1000" &&
               Item("Flag") == "1";
    }

    NS_TEST::TemporaryFolder m_folder;
    std::filesystem::path m_inventoryFile = m_folder / "inventory.db";
    HostOptions m_options;
};

class FailingHostMade : public FailingHost {
protected:
    void ExpectWholeOrNotAtAll(const std::function<void()>& expectAnswers) {
        std::optional<Host> host;
        const std::size_t failures = LetEachFail([&] { host.emplace(m_options); },
                                                 [&](bool isDone) {
                                                     if (isDone) {
                                                         expectAnswers();
                                                     }
                                                     host.reset();
                                                     ASSERT_TRUE(IsEverythingTakenBack());
                                                     const Host next(m_options);
                                                     expectAnswers();
                                                 });
        EXPECT_GT(failures, 100U);
    }
};

TEST_P(FailingHostMade, IsWholeOrNotAtAll) {
    ExpectWholeOrNotAtAll([] { ASSERT_TRUE(AnswersRight()); });
}

TEST_P(FailingHostMade, OfAConfigurationIsWholeOrNotAtAll) {
    m_options.configFolder = m_folder.Path();
    ExpectWholeOrNotAtAll([] {
        ASSERT_TRUE(AnswersRight());
        ASSERT_TRUE(HasConfiguration(OLD_TEXT));
    });
}

TEST_P(FailingHost, KeepsWhatItHasReadWhenItReadsAgain) {
    Host host(m_options);
    const std::size_t failures =
        LetEachFail([&host] { host.ReloadInventory(); }, [](bool) { ASSERT_TRUE(AnswersRight()); });
    EXPECT_GT(failures, 10U);
}

// Nothing can fail after the last list is stored: it comes with the NEs of its file.
TEST_P(FailingHost, ReplacesAllWhenTheLastListIsStored) {
    const std::string lastDomain = "~ a domain of quite a long name behind all others";
    const NS_STANDALONE::Inventory before = NS_STANDALONE::ReadInventory(m_inventoryFile);
    NS_STANDALONE::Inventory after = before;
    after.nes.front().multiSubShelf = false;
    after.domainMembers.push_back({NS_STANDALONE::DomainCache::EQUIPMENT_TYPE, lastDomain, 7});
    Host host(m_options);
    NS_STANDALONE::ReplaceInventory(m_inventoryFile, after);
    const std::size_t failures =
        LetEachFail([&host] { host.ReloadInventory(); },
                    [&](bool isDone) {
                        ASSERT_EQ(NS_UTIL::IsTransMultiSubShelfNE(12, 1911), !isDone);
                        ASSERT_EQ(DeviceDomainMgr::Instance()->isInDomainEqtCache(lastDomain, 7), isDone);
                        NS_STANDALONE::ReplaceInventory(m_inventoryFile, before);
                        host.ReloadInventory();
                        NS_STANDALONE::ReplaceInventory(m_inventoryFile, after);
                    });
    EXPECT_GT(failures, 10U);
}

// After a failure, each item is the old or the new one; after the next reading, all are new.
TEST_P(FailingHost, HasWholeItemsWhenItReadsItsConfigurationAgain) {
    m_options.configFolder = m_folder.Path();
    Host host(m_options);
    const auto reload = [&](const std::string& text) {
        WriteConfiguration(text);
        host.ReloadConfiguration();
        ASSERT_TRUE(HasConfiguration(text));
    };
    WriteConfiguration(NEW_TEXT);
    const std::size_t failures =
        LetEachFail([&host] { host.ReloadConfiguration(); },
                    [&](bool isDone) {
                        const std::string text = Item("Text");
                        const std::string letters = Item("Letters");
                        ASSERT_TRUE(text == NEW_TEXT || (!isDone && text == OLD_TEXT)) << text;
                        ASSERT_TRUE(letters == "of " + NEW_TEXT || (!isDone && letters == "of " + OLD_TEXT)) << letters;
                        reload(NEW_TEXT);
                        reload(OLD_TEXT);
                        WriteConfiguration(NEW_TEXT);
                    });
    EXPECT_GT(failures, 10U);
}

// If the first question could not read a file, the next question reads it.
TEST_P(FailingHost, AnswersFromAFileThatItCouldNotReadBefore) {
    m_options.configFolder = m_folder.Path();
    const auto ask = [](const std::string& section) {
        auto& service = *NS_TEST::FindService<NS_SERVICE::DAWSvcInterface>("DAWSvcInterface");
        int number = 0;
        NS_SERVICE::ConfigObject* const object = service.GetConfiguration(OTHER_FILE, section);
        return object != nullptr && object->GetIntItemInfo("number", number) ? number : -1;
    };
    std::optional<Host> host(m_options);
    const std::string section = "a section of quite a long name";
    int number = 0;
    const std::size_t failures = LetEachFail([&] { number = ask(section); },
                                             [&](bool isDone) {
                                                 ASSERT_TRUE(!isDone || number == 4) << number;
                                                 ASSERT_EQ(ask(section), 4);
                                                 ASSERT_EQ(ask(""), 3);
                                                 host.emplace(m_options);
                                             });
    EXPECT_GT(failures, 10U);
}

// Remains of a file that could not be read do no harm after the file is gone.
TEST_P(FailingHost, ForgetsAFileThatItCouldNotRead) {
    m_options.configFolder = m_folder.Path();
    const std::string text = NS_TEST::ReadFile(m_folder / OTHER_FILE);
    std::optional<Host> host(m_options);
    auto* service = NS_TEST::FindService<NS_SERVICE::DAWSvcInterface>("DAWSvcInterface");
    const std::size_t failures =
        LetEachFail([&] { service->GetConfiguration(OTHER_FILE, ""); },
                    [&](bool) {
                        std::filesystem::remove(m_folder / OTHER_FILE);
                        host->ReloadConfiguration();
                        ASSERT_EQ(service->GetConfiguration(OTHER_FILE, ""), nullptr);
                        NS_TEST::WriteFile(m_folder / OTHER_FILE, text);
                        host.emplace(m_options);
                        service = NS_TEST::FindService<NS_SERVICE::DAWSvcInterface>("DAWSvcInterface");
                    });
    EXPECT_GT(failures, 10U);
}

// The operation that logs the record continues.
TEST_P(FailingHost, DropsARecordThatThereIsNoMemoryFor) {
    const Host host(m_options);
    auto* const service = NS_TEST::FindService<NS_SERVICE::LogSvcInterface>("LogSvcInterface");
    ASSERT_NE(service, nullptr);
    NS_SERVICE::ModuleLogger* const logger = service->GetModuleLogger("module", "sub-module", "debug");
    const std::string name = "name";
    const std::string text(1000, 'x');  // too long to be formatted without an allocation
    const std::size_t failures = LetEachFail([&] { logger->WriteLog(name, name, 1, 1, "%s", text.c_str()); },
                                             [](bool isDone) { ASSERT_TRUE(isDone); });
    EXPECT_GT(failures, 0U);
    const std::string written = NS_TEST::ReadFile(m_options.log.file);
    EXPECT_EQ(std::count(written.begin(), written.end(), '\n'), 2)
        << "the first record, and the record of the attempt without a failure";
}

TEST_P(FailingHost, InventoryFilesStayWhole) {
    const NS_STANDALONE::Inventory before = NS_STANDALONE::ReadInventory(m_inventoryFile);
    NS_STANDALONE::Inventory after = before;
    after.nes.push_back({14, 1911, false, false});
    const std::size_t failures =
        LetEachFail([&] { NS_STANDALONE::ReplaceInventory(m_inventoryFile, after); },
                    [&](bool isDone) {
                        ASSERT_EQ(NS_STANDALONE::ReadInventory(m_inventoryFile), isDone ? after : before);
                        NS_STANDALONE::ReplaceInventory(m_inventoryFile, before);
                    });
    EXPECT_GT(failures, 3U);
}

TEST_P(FailingHost, InventoryFilesAreReadWholeOrNotAtAll) {
    const NS_STANDALONE::Inventory right = NS_STANDALONE::ReadInventory(m_inventoryFile);
    NS_STANDALONE::Inventory inventory;
    const std::size_t failures = LetEachFail([&] { inventory = NS_STANDALONE::ReadInventory(m_inventoryFile); },
                                             [&](bool isDone) {
                                                 ASSERT_TRUE(!isDone || inventory == right);
                                                 inventory = {};
                                                 ASSERT_EQ(NS_STANDALONE::ReadInventory(m_inventoryFile), right);
                                             });
    EXPECT_GT(failures, 3U);
}

TEST_P(FailingHost, InventoryFilesAreMadeWholeOrNotAtAll) {
    const std::filesystem::path folder = m_folder / "of its own";
    std::filesystem::create_directory(folder);
    const std::size_t failures = LetEachFail([&] { NS_STANDALONE::CreateInventory(folder / "inventory.db"); },
                                             [&](bool isDone) {
                                                 if (isDone) {
                                                     ASSERT_EQ(NS_STANDALONE::ReadInventory(folder / "inventory.db"),
                                                               NS_STANDALONE::Inventory{});
                                                     std::filesystem::remove(folder / "inventory.db");
                                                 }
                                                 ASSERT_TRUE(std::filesystem::is_empty(folder));
                                             });
    EXPECT_GT(failures, 3U);
}

constexpr auto NAME = [](const auto& shortage) { return shortage.param == Shortage::STAYS ? "ForGood" : "Once"; };
INSTANTIATE_TEST_SUITE_P(When, FailingHost, testing::ValuesIn(NS_TEST::SHORTAGES), NAME);
INSTANTIATE_TEST_SUITE_P(When, FailingHostMade, testing::ValuesIn(NS_TEST::SHORTAGES), NAME);

}  // namespace
