#include <atomic>
#include <chrono>
#include <future>
#include <limits>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include <kx_domain_util/resIDUtil.h>
#include <kx_platform/inventorybufif.h>

#include "support.h"

namespace {

using namespace NS_STANDALONE;
using namespace NS_TEST;
using NS_SERVICE::InventoryBufif;

class InventoryService : public testing::Test {
protected:
    InventoryBufif& Service() { return *FindService<InventoryBufif>("InventoryBufif"); }

    TemporaryFolder m_folder;
    std::filesystem::path m_file =
        MakeInventory(m_folder / "a.db", {.neTypes = {{5, "five", true, false}, {65535, "last", false, true}},
                                          .nes = {{0, 5, false, true}, {2147483647, 65535, true, false}},
                                          .domainMembers = {}});
    Host m_host{WithInventory(m_file)};
};

TEST_F(InventoryService, KnowsTheTypeOfAnNe) {
    std::uint32_t neType = 99;
    EXPECT_TRUE(Service().QueryNEType(0, neType, true));
    EXPECT_EQ(neType, 5U);
    EXPECT_TRUE(Service().QueryNEType(2147483647, neType, false));
    EXPECT_EQ(neType, 65535U);
}

TEST_F(InventoryService, LeavesTheTypeOfAnUnknownNeUntouched) {
    for (const std::int64_t neId :
         {std::int64_t{-1}, std::int64_t{1}, std::int64_t{1} << 32U, std::numeric_limits<std::int64_t>::min(),
          std::numeric_limits<std::int64_t>::max()}) {
        std::uint32_t neType = 99;
        EXPECT_FALSE(Service().QueryNEType(neId, neType, true)) << neId;
        EXPECT_EQ(neType, 99U);
    }
}

TEST(InventoryServiceWithAListener, TellsOfEachQuestionAboutAMissingNe) {
    const TemporaryFolder folder;
    std::vector<std::int64_t> missing;
    HostOptions options = WithInventory(MakeInventory(
        folder / "a.db", {.neTypes = {{5, "five", false, false}}, .nes = {{1, 5, false, false}}, .domainMembers = {}}));
    options.missingNe = [&](std::int64_t neId) { missing.push_back(neId); };
    const Host host(options);
    InventoryBufif& service = *FindService<InventoryBufif>("InventoryBufif");
    std::uint32_t neType = 0;
    for (const int neId : {1, 7}) {
        service.QueryNEType(neId, neType, true);
        service.IsOamNumberOmitted(neId + 1);
        service.IsTransMultiSubShelf(static_cast<unsigned long>(neId) + 2, 5);
    }
    EXPECT_THAT(missing, testing::ElementsAre(2, 3, 7, 8, 9));
}

// The listener may wait for a thread that reloads the inventory.
TEST(InventoryServiceWithAListener, MayBeReloadedWhileTheListenerWaits) {
    const TemporaryFolder folder;
    HostOptions options = WithInventory(MakeInventory(folder / "a.db", {}));
    std::optional<Host> host;
    std::vector<std::future<void>> reloads;
    int done = 0;
    options.missingNe = [&](std::int64_t) {
        reloads.push_back(std::async(std::launch::async, [&] { host->ReloadInventory(); }));
        done += reloads.back().wait_for(std::chrono::seconds{20}) == std::future_status::ready ? 1 : 0;
    };
    host.emplace(options);
    InventoryBufif& service = *FindService<InventoryBufif>("InventoryBufif");
    std::uint32_t neType = 0;
    EXPECT_FALSE(service.QueryNEType(7, neType, true));
    EXPECT_EQ(done, 1);
    EXPECT_FALSE(service.IsOamNumberOmitted(7));
    EXPECT_EQ(done, 2);
    EXPECT_FALSE(service.IsTransMultiSubShelf(7, 5));
    EXPECT_EQ(done, 3);
    std::string fdn;
    NS_DOMAIN::CardIndex card;
    card.neId = 7;
    card.slotId = 3;
    NS_UTIL::ResIDUtil::CardIndex2ResID(card, fdn);
    EXPECT_EQ(done, 4) << "the library waits inside the service";
}

TEST_F(InventoryService, KnowsWhichNesOmitOamNumbers) {
    EXPECT_TRUE(Service().IsOamNumberOmitted(0));
    EXPECT_FALSE(Service().IsOamNumberOmitted(2147483647));
    EXPECT_FALSE(Service().IsOamNumberOmitted(1));
    EXPECT_FALSE(Service().IsOamNumberOmitted(-1));
}

TEST_F(InventoryService, KnowsWhichNesHaveSeveralSubShelves) {
    EXPECT_TRUE(Service().IsTransMultiSubShelf(2147483647UL, 65535));
    EXPECT_TRUE(Service().IsTransMultiSubShelf(2147483647UL, 0));
    EXPECT_FALSE(Service().IsTransMultiSubShelf(0, 5));
    EXPECT_FALSE(Service().IsTransMultiSubShelf(std::numeric_limits<unsigned long>::max(), 5));
}

TEST_F(InventoryService, KnowsNeTypes) {
    EXPECT_TRUE(Service().IsIPServiceNEType(5));
    EXPECT_FALSE(Service().IsIPServiceNEType(65535));
    EXPECT_FALSE(Service().IsIPServiceNEType(6));
    EXPECT_FALSE(Service().IsKLVNEType(5));
    EXPECT_TRUE(Service().IsKLVNEType(65535));
    EXPECT_FALSE(Service().IsKLVNEType(0));
}

TEST_F(InventoryService, AnswersFromTheNewFileAfterReload) {
    ReplaceInventory(m_file,
                     {.neTypes = {{7, "seven", false, true}}, .nes = {{8, 7, true, false}}, .domainMembers = {}});
    EXPECT_FALSE(Service().IsKLVNEType(7));
    m_host.ReloadInventory();
    std::uint32_t neType = 0;
    EXPECT_TRUE(Service().QueryNEType(8, neType, true));
    EXPECT_EQ(neType, 7U);
    EXPECT_FALSE(Service().QueryNEType(0, neType, true));
    EXPECT_TRUE(Service().IsKLVNEType(7));
    EXPECT_FALSE(Service().IsIPServiceNEType(5));
}

TEST_F(InventoryService, AnswersFromTheOldFileAfterAReloadThatFailed) {
    WriteFile(m_file, std::string(5000, 'x'));
    EXPECT_THAT(ErrorOf([&] { m_host.ReloadInventory(); }), testing::HasSubstr(m_file.string()));
    std::filesystem::remove(m_file);
    EXPECT_THAT(ErrorOf([&] { m_host.ReloadInventory(); }), testing::HasSubstr("no such file"));
    EXPECT_TRUE(Service().IsOamNumberOmitted(0));
    EXPECT_TRUE(Service().IsKLVNEType(65535));
}

// Each file knows one NE of a type that the other file does not have.
TEST_F(InventoryService, AnswersManyThreadsWhileItIsReloaded) {
    const auto write = [this](std::uint16_t neType) {
        ReplaceInventory(m_file, {.neTypes = {{neType, "type", true, true}},
                                  .nes = {{1, neType, true, true}, {neType, neType, false, false}},
                                  .domainMembers = {}});
        m_host.ReloadInventory();
    };
    write(100);
    std::atomic<bool> stop{false};
    std::atomic<int> seen[2]{};
    std::vector<std::thread> readers;
    for (int thread = 0; thread < 3; ++thread) {
        readers.emplace_back([&] {
            InventoryBufif& service = Service();
            while (!stop) {
                std::uint32_t neType = 0;
                ASSERT_TRUE(service.QueryNEType(1, neType, true));
                ASSERT_TRUE(neType == 100 || neType == 200) << neType;
                ++seen[neType == 200];
                ASSERT_TRUE(service.IsOamNumberOmitted(1));
                ASSERT_TRUE(service.IsTransMultiSubShelf(1, 100));
                service.IsKLVNEType(100);
            }
        });
    }
    for (int round = 0; round < 30 || ((seen[0] == 0 || seen[1] == 0) && round < 3000); ++round) {
        write(round % 2 == 0 ? 200 : 100);
    }
    stop = true;
    for (std::thread& reader : readers) {
        reader.join();
    }
    EXPECT_GT(seen[0], 0);
    EXPECT_GT(seen[1], 0);
}

}  // namespace
