// What happens to inventory files and hosts if SQLite itself runs out of memory: each of its allocations fails in turn,
// alone or with all later ones. SQLite takes its memory from malloc, so failing operator new does not reach it.
#include <cstddef>
#include <filesystem>
#include <functional>
#include <limits>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <kx_domain_util/netype.h>
#include <kx_standalone/host.h>
#include <kx_standalone/inventoryfile.h>

#include "standalone/support.h"
#include "support/allocations.h"

namespace {

using NS_STANDALONE::Host;
using NS_STANDALONE::HostOptions;
using NS_STANDALONE::Inventory;
using NS_TEST::Shortage;

// SQLite's own memory functions, with failures when they are asked for. Used by one thread.
class SqliteMemory {
public:
    // Before the first use of SQLite.
    static void TakeOver() {
        ASSERT_EQ(sqlite3_config(SQLITE_CONFIG_GETMALLOC, &Original()), SQLITE_OK);
        sqlite3_mem_methods failing = Original();
        failing.xMalloc = [](int size) -> void* { return MayHave() ? Original().xMalloc(size) : nullptr; };
        failing.xRealloc = [](void* memory, int size) -> void* {
            return MayHave() ? Original().xRealloc(memory, size) : nullptr;
        };
        ASSERT_EQ(sqlite3_config(SQLITE_CONFIG_MALLOC, &failing), SQLITE_OK);
    }

    // While it lives, allocations fail after the first `spared`.
    class Short {
    public:
        Short(std::size_t spared, Shortage shortage) { State() = {spared, shortage, false}; }
        ~Short() { State() = {}; }
        Short(const Short&) = delete;
        Short& operator=(const Short&) = delete;

        [[nodiscard]] static bool HasOneFailed() { return State().hasOneFailed; }
    };

private:
    struct Plan {
        std::size_t spared = std::numeric_limits<std::size_t>::max();
        Shortage shortage = Shortage::PASSES;
        bool hasOneFailed = false;
    };

    static sqlite3_mem_methods& Original() {
        static sqlite3_mem_methods methods;
        return methods;
    }

    static Plan& State() {
        static Plan plan;
        return plan;
    }

    static bool MayHave() {
        Plan& plan = State();
        if (plan.spared > 0) {
            --plan.spared;
            return true;
        }
        const bool isSpared = plan.hasOneFailed && plan.shortage == Shortage::PASSES;
        plan.hasOneFailed = true;
        return isSpared;
    }
};

const Inventory OLD{{{1911, "an NE type", true, true}}, {{12, 1911, true, false}}, {}};
const Inventory NEW{{{7, "another one", false, false}, {1911, "an NE type", true, true}},
                    {{12, 1911, false, false}, {13, 7, false, true}},
                    {{NS_STANDALONE::DomainCache::EQUIPMENT_TYPE, "OTN", 1911}}};

class FailingSqlite : public testing::TestWithParam<Shortage> {
protected:
    static void SetUpTestSuite() { SqliteMemory::TakeOver(); }

    // Lets each allocation of `action` fail in turn, until none is left to fail. After each attempt calls `check` with
    // whether the action succeeded. Returns the number of failures.
    static std::size_t LetEachFail(const std::function<void()>& action, const std::function<void(bool)>& check) {
        bool hasOneFailed = true;
        std::size_t spared = 0;
        for (; hasOneFailed && !HasFailure(); ++spared) {
            const testing::ScopedTrace trace(__FILE__, __LINE__, std::to_string(spared) + " allocations are spared");
            bool isDone = true;
            {
                const SqliteMemory::Short memory(spared, GetParam());
                try {
                    action();
                } catch (const std::exception& error) {
                    isDone = false;
                    EXPECT_NE(std::string(error.what()), "");
                }
                hasOneFailed = SqliteMemory::Short::HasOneFailed();
            }
            EXPECT_TRUE(isDone || hasOneFailed) << "it failed without a reason";
            check(isDone);
        }
        return spared - 1;
    }

    // A file with these rows.
    std::filesystem::path Made(const char* name, const Inventory& inventory) {
        const std::filesystem::path file = m_folder / name;
        NS_STANDALONE::CreateInventory(file);
        NS_STANDALONE::ReplaceInventory(file, inventory);
        return file;
    }

    // Puts a copy in the place of the inventory, without waiting for the disk.
    void Put(const std::filesystem::path& file) {
        std::filesystem::copy_file(file, m_file, std::filesystem::copy_options::overwrite_existing);
    }

    NS_TEST::TemporaryFolder m_folder;
    std::filesystem::path m_file = m_folder / "inventory.db";
};

TEST_P(FailingSqlite, LetsAnInventoryBeMadeOrNot) {
    const std::size_t failures = LetEachFail([&] { NS_STANDALONE::CreateInventory(m_file); },
                                             [&](bool isDone) {
                                                 ASSERT_EQ(exists(m_file), isDone);
                                                 if (isDone) {
                                                     ASSERT_EQ(NS_STANDALONE::ReadInventory(m_file), Inventory());
                                                 }
                                                 std::filesystem::remove(m_file);
                                                 ASSERT_TRUE(is_empty(m_folder.Path())) << "something is left";
                                             });
    EXPECT_GT(failures, 50U);
}

TEST_P(FailingSqlite, LetsAnInventoryBeReplacedOrNot) {
    const std::filesystem::path old = Made("old.db", OLD);
    Put(old);
    const std::size_t failures = LetEachFail([&] { NS_STANDALONE::ReplaceInventory(m_file, NEW); },
                                             [&](bool isDone) {
                                                 ASSERT_EQ(NS_STANDALONE::ReadInventory(m_file), isDone ? NEW : OLD);
                                                 Put(old);
                                             });
    EXPECT_GT(failures, 50U);
}

TEST_P(FailingSqlite, LetsAnInventoryBeReadOrNot) {
    Put(Made("new.db", NEW));
    Inventory read;
    const std::size_t failures = LetEachFail(
        [&] {
            read = {};
            read = NS_STANDALONE::ReadInventory(m_file);
        },
        [&](bool isDone) { ASSERT_EQ(read, isDone ? NEW : Inventory()); });
    EXPECT_GT(failures, 50U);
}

TEST_P(FailingSqlite, LetsAHostKeepWhatItHas) {
    const std::filesystem::path old = Made("old.db", OLD);
    const std::filesystem::path changed = Made("new.db", NEW);
    Put(old);
    HostOptions options;
    options.inventoryFile = m_file;
    Host host(options);
    const auto isOld = [] { return NS_UTIL::IsTransMultiSubShelfNE(12, 1911); };
    ASSERT_TRUE(isOld());
    Put(changed);
    const std::size_t failures = LetEachFail([&] { host.ReloadInventory(); },
                                             [&](bool isDone) {
                                                 ASSERT_EQ(isOld(), !isDone);
                                                 Put(old);
                                                 host.ReloadInventory();
                                                 Put(changed);
                                             });
    EXPECT_GT(failures, 50U);
}

INSTANTIATE_TEST_SUITE_P(When, FailingSqlite, testing::ValuesIn(NS_TEST::SHORTAGES),
                         [](const auto& shortage) { return shortage.param == Shortage::PASSES ? "Once" : "ForGood"; });

}  // namespace
