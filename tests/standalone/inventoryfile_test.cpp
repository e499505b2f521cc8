#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <span>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include <SQLiteCpp/SQLiteCpp.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <kx_standalone/inventoryfile.h>

#include "support.h"

namespace {

using namespace NS_STANDALONE;
using namespace NS_TEST;
using testing::AllOf;
using testing::AnyOf;
using testing::HasSubstr;

Inventory SmallInventory() {
    return {.neTypes = {{0, "", false, false}, {1887, "KLV \"one\"", false, true}, {65535, "last\n", true, true}},
            .nes = {{0, 1887, false, true}, {7, 65535, true, false}, {2147483647, 0, true, true}},
            .domainMembers = {{DomainCache::NE_TYPE_LIST, "access", 3},
                              {DomainCache::NE_TYPE_LIST, "router and metro", 65535},
                              {DomainCache::EQUIPMENT_TYPE, "OTN", 0},
                              {DomainCache::EQUIPMENT_TYPE, "OTN", 9}}};
}

// Large enough that writing it takes a while. All its rows have the same NE type, which identifies it.
Inventory LargeInventory(std::uint16_t neType, std::int32_t neCount = 20000) {
    Inventory inventory{.neTypes = {{neType, "type", false, false}}, .nes = {}, .domainMembers = {}};
    for (std::int32_t neId = 0; neId < neCount; ++neId) {
        inventory.nes.push_back({neId, neType, false, false});
    }
    return inventory;
}

void Execute(const std::filesystem::path& file, const std::string& statements) {
    SQLite::Database(file.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE).exec(statements);
}

// An inventory that another program may have made: right tables, no checks.
std::filesystem::path MakeUncheckedInventory(const std::filesystem::path& file, const std::string& rows) {
    CreateInventory(file);
    Execute(file, R"(
        DROP TABLE ne; DROP TABLE ne_type; DROP TABLE domain_member;
        CREATE TABLE ne_type (ne_type, name, ip_service, klv);
        CREATE TABLE ne (ne_id, ne_type, multi_sub_shelf, oam_number_omitted);
        CREATE TABLE domain_member (cache, domain, ne_type);
        INSERT INTO ne_type VALUES (5, 'five', 0, 0);
        INSERT INTO ne VALUES (50, 5, 1, 0);
        INSERT INTO domain_member VALUES ('EQUIPMENT_TYPE', 'OTN', 5);)" +
                      rows);
    return file;
}

TEST(DomainCache, IsFoundByItsName) {
    for (const DomainCache cache : DOMAIN_CACHES) {
        EXPECT_EQ(FindDomainCache(NameOf(cache)), cache);
    }
    EXPECT_EQ(NameOf(DomainCache::NE_TYPE_LIST), "NE_TYPE_LIST");
    EXPECT_EQ(NameOf(DomainCache::EQUIPMENT_TYPE), "EQUIPMENT_TYPE");
    EXPECT_EQ(FindDomainCache("EQUIPMENT"), std::nullopt);
    EXPECT_EQ(FindDomainCache(""), std::nullopt);
}

TEST(InventoryFile, StartsEmpty) {
    const TemporaryFolder folder;
    CreateInventory(folder / "a.db");
    EXPECT_EQ(ReadInventory(folder / "a.db"), Inventory{});
}

TEST(InventoryFile, IsNotCreatedOverAFile) {
    const TemporaryFolder folder;
    WriteFile(folder / "a.db", "mine");
    EXPECT_THAT(ErrorOf([&] { CreateInventory(folder / "a.db"); }),
                AllOf(HasSubstr((folder / "a.db").string()), HasSubstr("File exists")));
    EXPECT_EQ(ReadFile(folder / "a.db"), "mine");
}

TEST(InventoryFile, IsNotCreatedInAMissingFolder) {
    const TemporaryFolder folder;
    EXPECT_THAT(ErrorOf([&] { CreateInventory(folder / "none/a.db"); }), HasSubstr((folder / "none/a.db").string()));
}

TEST(InventoryFile, GivesBackWhatWasWritten) {
    const TemporaryFolder folder;
    MakeInventory(folder / "a.db", SmallInventory());
    EXPECT_EQ(ReadInventory(folder / "a.db"), SmallInventory());
    ReplaceInventory(folder / "a.db", {});
    EXPECT_EQ(ReadInventory(folder / "a.db"), Inventory{});
}

TEST(InventoryFile, IsReadInTheOrderOfKeys) {
    const TemporaryFolder folder;
    Inventory backwards = SmallInventory();
    std::ranges::reverse(backwards.neTypes);
    std::ranges::reverse(backwards.nes);
    std::ranges::reverse(backwards.domainMembers);
    MakeInventory(folder / "a.db", backwards);
    EXPECT_EQ(ReadInventory(folder / "a.db"), SmallInventory());
}

TEST(InventoryFile, MayHaveANameThatSqliteGivesAMeaning) {
    const TemporaryFolder folder;
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.Path());
    MakeInventory(":memory:", SmallInventory());
    EXPECT_EQ(ReadInventory(":memory:"), SmallInventory());
    std::filesystem::current_path(before);
    EXPECT_TRUE(std::filesystem::is_regular_file(folder / ":memory:"));
}

TEST(InventoryFile, MustBeThere) {
    const TemporaryFolder folder;
    const auto complaint = AllOf(HasSubstr((folder / "a.db").string()), HasSubstr("no such file"));
    EXPECT_THAT(ErrorOf([&] { ReadInventory(folder / "a.db"); }), complaint);
    EXPECT_THAT(ErrorOf([&] { ReplaceInventory(folder / "a.db", {}); }), complaint);
    EXPECT_FALSE(std::filesystem::exists(folder / "a.db"));
}

TEST(InventoryFile, MustBeAFile) {
    const TemporaryFolder folder;
    EXPECT_THAT(ErrorOf([&] { ReadInventory(folder.Path()); }),
                AllOf(HasSubstr(folder.Path().string()), HasSubstr("not a regular file")));
}

TEST(InventoryFile, MustBeSqlite) {
    const TemporaryFolder folder;
    WriteFile(folder / "a.db", std::string(5000, 'x'));
    const auto complaint = AllOf(HasSubstr((folder / "a.db").string()), HasSubstr("not a database"));
    EXPECT_THAT(ErrorOf([&] { ReadInventory(folder / "a.db"); }), complaint);
    EXPECT_THAT(ErrorOf([&] { ReplaceInventory(folder / "a.db", {}); }), complaint);
    EXPECT_EQ(ReadFile(folder / "a.db"), std::string(5000, 'x'));
}

TEST(InventoryFile, MustBeAnInventory) {
    const TemporaryFolder folder;
    WriteFile(folder / "empty.db", "");
    Execute(folder / "other.db", "CREATE TABLE ne (ne_id); PRAGMA user_version = 1");
    for (const char* name : {"empty.db", "other.db"}) {
        const auto complaint = AllOf(HasSubstr((folder / name).string()), HasSubstr("is not an inventory"));
        EXPECT_THAT(ErrorOf([&] { ReadInventory(folder / name); }), complaint);
        EXPECT_THAT(ErrorOf([&] { ReplaceInventory(folder / name, {}); }), complaint);
    }
    EXPECT_EQ(ReadFile(folder / "empty.db"), "");
}

TEST(InventoryFile, MustBeOfThisSchemaVersion) {
    const TemporaryFolder folder;
    MakeInventory(folder / "a.db", SmallInventory());
    Execute(folder / "a.db", "PRAGMA user_version = 2");
    const auto complaint = AllOf(HasSubstr((folder / "a.db").string()), HasSubstr("schema version 2, not 1"));
    EXPECT_THAT(ErrorOf([&] { ReadInventory(folder / "a.db"); }), complaint);
    EXPECT_THAT(ErrorOf([&] { ReplaceInventory(folder / "a.db", {}); }), complaint);
    Execute(folder / "a.db", "PRAGMA user_version = 1");
    EXPECT_EQ(ReadInventory(folder / "a.db"), SmallInventory());
}

TEST(InventoryFile, MustHaveEachTableAndColumn) {
    const TemporaryFolder folder;
    for (const std::string table : {"ne_type", "ne", "domain_member"}) {
        const auto file = MakeUncheckedInventory(folder / (table + ".db"), "DROP TABLE " + table);
        EXPECT_THAT(ErrorOf([&] { ReadInventory(file); }),
                    AllOf(HasSubstr(file.string()), HasSubstr("table " + table + ": no such table")));
    }
    const auto file = MakeUncheckedInventory(folder / "column.db", "ALTER TABLE ne_type DROP COLUMN klv");
    EXPECT_THAT(ErrorOf([&] { ReadInventory(file); }), HasSubstr("table ne_type: no such column: klv"));
}

TEST(InventoryFile, IsReadWithoutChecksOfItsOwn) {
    const TemporaryFolder folder;
    const Inventory expected{.neTypes = {{5, "five", false, false}},
                             .nes = {{50, 5, true, false}},
                             .domainMembers = {{DomainCache::EQUIPMENT_TYPE, "OTN", 5}}};
    EXPECT_EQ(ReadInventory(MakeUncheckedInventory(folder / "a.db", "")), expected);
}

struct BadRow {
    const char* name;
    const char* statement;
    const char* complaint;
};

class InventoryFileWithBadRow : public testing::TestWithParam<BadRow> {};

TEST_P(InventoryFileWithBadRow, IsRefusedNamingFileTableAndRow) {
    const TemporaryFolder folder;
    const auto file = MakeUncheckedInventory(folder / "a.db", GetParam().statement);
    EXPECT_EQ(ErrorOf([&] { ReadInventory(file); }), file.string() + ": " + GetParam().complaint);
}

INSTANTIATE_TEST_SUITE_P(
    All, InventoryFileWithBadRow,
    testing::Values(
        BadRow{"NeTypeTooLarge", "INSERT INTO ne_type VALUES (65536, 'x', 0, 0)",
               "table ne_type: row ne_type=65536: ne_type is 65536, not a whole number from 0 to 65535"},
        BadRow{"NeTypeNegative", "INSERT INTO ne_type VALUES (-1, 'x', 0, 0)",
               "table ne_type: row ne_type=-1: ne_type is -1, not a whole number from 0 to 65535"},
        BadRow{"NeTypeText", "INSERT INTO ne_type VALUES ('6', 'x', 0, 0)",
               "table ne_type: row ne_type=\"6\": ne_type is \"6\", not a whole number from 0 to 65535"},
        BadRow{"NeTypeFraction", "INSERT INTO ne_type VALUES (6.5, 'x', 0, 0)",
               "table ne_type: row ne_type=6.5: ne_type is 6.5, not a whole number from 0 to 65535"},
        BadRow{"NeTypeNull", "INSERT INTO ne_type VALUES (NULL, 'x', 0, 0)",
               "table ne_type: row ne_type=NULL: ne_type is NULL, not a whole number from 0 to 65535"},
        BadRow{"NeTypeTwice", "INSERT INTO ne_type VALUES (5, 'x', 0, 0)",
               "table ne_type: row ne_type=5: is there twice"},
        BadRow{"NameNumber", "INSERT INTO ne_type VALUES (6, 6, 0, 0)",
               "table ne_type: row ne_type=6: name is 6, not a text"},
        BadRow{"NameBinary", "INSERT INTO ne_type VALUES (6, x'00', 0, 0)",
               "table ne_type: row ne_type=6: name is binary, not a text"},
        BadRow{"IpServiceTwo", "INSERT INTO ne_type VALUES (6, 'x', 2, 0)",
               "table ne_type: row ne_type=6: ip_service is 2, not a whole number from 0 to 1"},
        BadRow{"KlvNegative", "INSERT INTO ne_type VALUES (6, 'x', 0, -1)",
               "table ne_type: row ne_type=6: klv is -1, not a whole number from 0 to 1"},
        BadRow{"NeIdTooLarge", "INSERT INTO ne VALUES (2147483648, 5, 0, 0)",
               "table ne: row ne_id=2147483648: ne_id is 2147483648, not a whole number from 0 to 2147483647"},
        BadRow{"NeIdNegative", "INSERT INTO ne VALUES (-1, 5, 0, 0)",
               "table ne: row ne_id=-1: ne_id is -1, not a whole number from 0 to 2147483647"},
        BadRow{"NeIdTwice", "INSERT INTO ne VALUES (50, 5, 0, 0)", "table ne: row ne_id=50: is there twice"},
        BadRow{"NeOfTypeTooLarge", "INSERT INTO ne VALUES (51, 70000, 0, 0)",
               "table ne: row ne_id=51: ne_type is 70000, not a whole number from 0 to 65535"},
        BadRow{"NeOfUnknownType", "INSERT INTO ne VALUES (51, 6, 0, 0)",
               "table ne: row ne_id=51: ne_type is 6, not in table ne_type"},
        BadRow{"SubShelfTwo", "INSERT INTO ne VALUES (51, 5, 2, 0)",
               "table ne: row ne_id=51: multi_sub_shelf is 2, not a whole number from 0 to 1"},
        BadRow{"OamNull", "INSERT INTO ne VALUES (51, 5, 0, NULL)",
               "table ne: row ne_id=51: oam_number_omitted is NULL, not a whole number from 0 to 1"},
        BadRow{"UnknownCache", "INSERT INTO domain_member VALUES ('OTHER', 'OTN', 5)",
               "table domain_member: row cache=\"OTHER\", domain=\"OTN\", ne_type=5: cache is \"OTHER\", not "
               "NE_TYPE_LIST or EQUIPMENT_TYPE"},
        BadRow{"EmptyDomain", "INSERT INTO domain_member VALUES ('NE_TYPE_LIST', '', 5)",
               "table domain_member: row cache=\"NE_TYPE_LIST\", domain=\"\", ne_type=5: domain is \"\", not the name "
               "of a domain"},
        BadRow{"MemberTooLarge", "INSERT INTO domain_member VALUES ('NE_TYPE_LIST', 'access', 65536)",
               "table domain_member: row cache=\"NE_TYPE_LIST\", domain=\"access\", ne_type=65536: ne_type is 65536, "
               "not a whole number from 0 to 65535"},
        BadRow{"MemberTwice", "INSERT INTO domain_member VALUES ('EQUIPMENT_TYPE', 'OTN', 5)",
               "table domain_member: row cache=\"EQUIPMENT_TYPE\", domain=\"OTN\", ne_type=5: is there twice"}),
    [](const auto& parameter) { return parameter.param.name; });

TEST(InventoryFile, IsRefusedWhenPartOfItIsLost) {
    const TemporaryFolder folder;
    const auto file = MakeInventory(folder / "a.db", LargeInventory(1));
    const auto size = std::filesystem::file_size(file);
    const std::string whole = ReadFile(file);

    std::filesystem::resize_file(file, size / 2);
    EXPECT_THAT(ErrorOf([&] { ReadInventory(file); }), AllOf(HasSubstr(file.string()), HasSubstr("malformed")));

    std::string holed = whole;
    holed.replace(holed.size() / 2, 8192, 8192, '\xAA');
    WriteFile(file, holed);
    EXPECT_THAT(ErrorOf([&] { ReadInventory(file); }),
                AllOf(HasSubstr(file.string()), HasSubstr("table ne: "), HasSubstr("malformed")));
}

// SQLite reads the rest of a page that is cut off as zeros.
TEST(InventoryFile, IsRefusedWhereverItIsCutOff) {
    const TemporaryFolder folder;
    const auto file = MakeInventory(folder / "a.db", SmallInventory());
    for (auto size = std::filesystem::file_size(file); size > 0; --size) {
        std::filesystem::resize_file(file, size - 1);
        EXPECT_THAT(ErrorOf([&] { ReadInventory(file); }), HasSubstr(file.string())) << size - 1;
    }
}

TEST(InventoryFile, SaysHowMuchOfItIsCutOff) {
    const TemporaryFolder folder;
    const auto file = MakeInventory(folder / "a.db", SmallInventory());
    ASSERT_EQ(std::filesystem::file_size(file), 16384U);
    std::filesystem::resize_file(file, 16383);
    EXPECT_EQ(ErrorOf([&] { ReadInventory(file); }),
              file.string() + ": is cut off: it has 16383 bytes, and 4 pages of 4096 bytes need 16384");
}

class InventoryWrittenBadly : public testing::Test {
protected:
    InventoryWrittenBadly() { MakeInventory(m_file, SmallInventory()); }

    void ExpectRefused(const Inventory& inventory, const std::string& table, const std::string& row,
                       const std::string& cause) {
        EXPECT_THAT(
            ErrorOf([&] { ReplaceInventory(m_file, inventory); }),
            AllOf(HasSubstr(m_file.string() + ": table " + table + ": row "), HasSubstr(row), HasSubstr(cause)));
        EXPECT_EQ(ReadInventory(m_file), SmallInventory());
    }

    TemporaryFolder m_folder;
    std::filesystem::path m_file = m_folder / "a.db";
};

TEST_F(InventoryWrittenBadly, KeepsWhatItHeld) {
    const Inventory good{.neTypes = {{5, "five", false, false}}, .nes = {{1, 5, false, false}}, .domainMembers = {}};
    Inventory bad = good;
    bad.nes.push_back({-1, 5, false, true});
    ExpectRefused(bad, "ne", "(-1, 5, 0, 1)", "CHECK");
    bad = good;
    bad.nes.push_back({1, 5, false, false});
    ExpectRefused(bad, "ne", "(1, 5, 0, 0)", "UNIQUE");
    bad = good;
    bad.nes.push_back({2, 6, false, false});
    ExpectRefused(bad, "ne", "(2, 6, 0, 0)", "FOREIGN KEY");
    bad = good;
    bad.neTypes.push_back({5, "again", true, false});
    ExpectRefused(bad, "ne_type", "(5, again, 1, 0)", "UNIQUE");
    bad = good;
    bad.domainMembers.push_back({DomainCache::EQUIPMENT_TYPE, "", 7});
    ExpectRefused(bad, "domain_member", "(EQUIPMENT_TYPE, , 7)", "CHECK");
    bad = good;
    bad.domainMembers = {{DomainCache::NE_TYPE_LIST, "access", 7}, {DomainCache::NE_TYPE_LIST, "access", 7}};
    ExpectRefused(bad, "domain_member", "(NE_TYPE_LIST, access, 7)", "UNIQUE");
    bad = good;
    bad.domainMembers = {{static_cast<DomainCache>(9), "access", 7}};
    ExpectRefused(bad, "domain_member", "(unknown, access, 7)", "CHECK");
}

// The tables of an inventory check rows themselves, whichever program writes.
TEST(InventoryFile, ChecksRowsItself) {
    const TemporaryFolder folder;
    const auto file = MakeInventory(folder / "a.db", SmallInventory());
    for (const char* statement :
         {"INSERT INTO ne_type VALUES (65536, 'x', 0, 0)", "INSERT INTO ne_type VALUES (1, 'x', 2, 0)",
          "INSERT INTO ne_type VALUES (1, 'x', 0, 2)", "INSERT INTO ne_type VALUES (1, NULL, 0, 0)",
          "INSERT INTO ne_type VALUES (1, 'x', 'yes', 0)", "INSERT INTO ne VALUES (2147483648, 0, 0, 0)",
          "INSERT INTO ne VALUES (1, 0, 2, 0)", "INSERT INTO ne VALUES (1, 0, 0, 2)",
          "PRAGMA foreign_keys = ON; INSERT INTO ne VALUES (1, 1, 0, 0)",
          "PRAGMA foreign_keys = ON; DELETE FROM ne_type", "INSERT INTO domain_member VALUES ('OTHER', 'OTN', 1)",
          "INSERT INTO domain_member VALUES ('NE_TYPE_LIST', 'OTN', 65536)"}) {
        EXPECT_THROW(Execute(file, statement), SQLite::Exception) << statement;
    }
    EXPECT_EQ(ReadInventory(file), SmallInventory());
}

// Runs action in a forked process, and kills the process after a while.
template <class Action>
void RunAndKill(Action action, std::chrono::microseconds after) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        try {
            action();
        } catch (...) {
            _exit(1);
        }
        pause();
    }
    std::this_thread::sleep_for(after);
    kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the writer failed";
}

TEST(InventoryFile, IsWholeWhereverItsWriterIsKilled) {
    const TemporaryFolder folder;
    const Inventory one = LargeInventory(1);
    const Inventory two = LargeInventory(2);
    const auto file = MakeInventory(folder / "a.db", one);
    for (int round = 0; round < 30; ++round) {
        RunAndKill(
            [&] {
                while (true) {
                    ReplaceInventory(file, two);
                    ReplaceInventory(file, one);
                }
            },
            std::chrono::microseconds{1000 + round * 1700});
        if (HasFatalFailure()) {
            return;
        }
        EXPECT_THAT(ReadInventory(file), AnyOf(one, two));
    }
}

TEST(InventoryFile, IsThereOnlyWhenItIsWholeWhereverItsMakerIsKilled) {
    const TemporaryFolder folder;
    const auto file = folder / "a.db";
    for (int round = 0; round < 30; ++round) {
        RunAndKill(
            [&] {
                while (true) {
                    CreateInventory(file);
                    std::filesystem::remove(file);
                }
            },
            std::chrono::microseconds{1000 + round * 1700});
        if (HasFatalFailure()) {
            return;
        }
        if (std::filesystem::exists(file)) {
            EXPECT_EQ(ReadInventory(file), Inventory{});
            std::filesystem::remove(file);
        }
    }
}

// The writer dies after it changed the file: the next reader undoes the change.
TEST(InventoryFile, IsTheOldOneAfterAWriterThatDied) {
    const TemporaryFolder folder;
    const Inventory inventory = LargeInventory(1);
    const auto file = MakeInventory(folder / "a.db", inventory);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        SQLite::Database database(file.string(), SQLite::OPEN_READWRITE);
        database.exec("PRAGMA cache_size = 1; BEGIN IMMEDIATE; UPDATE ne SET ne_id = ne_id + 1000000");
        raise(SIGKILL);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
    const auto journal = std::filesystem::path(file.string() + "-journal");
    ASSERT_TRUE(std::filesystem::exists(journal) && std::filesystem::file_size(journal) > 0);
    EXPECT_EQ(ReadInventory(file), inventory);
}

TEST(InventoryFile, LetsWritersWaitForEachOther) {
    const TemporaryFolder folder;
    const auto file = MakeInventory(folder / "a.db", SmallInventory());
    SQLite::Database other(file.string(), SQLite::OPEN_READWRITE);
    other.exec("BEGIN IMMEDIATE");
    std::atomic<bool> released{false};
    std::thread holder([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds{300});
        released = true;
        other.exec("COMMIT");
    });
    ReplaceInventory(file, LargeInventory(3, 10));
    EXPECT_TRUE(released);
    holder.join();
    EXPECT_EQ(ReadInventory(file), LargeInventory(3, 10));
}

TEST(InventoryFile, GivesUpOnAWriterThatNeverEnds) {
    const TemporaryFolder folder;
    const auto file = MakeInventory(folder / "a.db", SmallInventory());
    SQLite::Database other(file.string(), SQLite::OPEN_READWRITE);
    other.exec("BEGIN IMMEDIATE");
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_THAT(ErrorOf([&] { ReplaceInventory(file, {}); }),
                AllOf(HasSubstr(file.string()), HasSubstr("database is locked")));
    const std::chrono::duration<double> waited = std::chrono::steady_clock::now() - begin;
    EXPECT_GE(waited.count(), 4);
    EXPECT_LE(waited.count(), 30);
    EXPECT_EQ(ReadInventory(file), SmallInventory());
}

// ---- Replaced as a whole --------------------------------------------------------------------------------------------

TEST(InventoryFile, KeepsItsPermissionsAndALinkToIt) {
    const TemporaryFolder folder;
    MakeInventory(folder / "a.db", SmallInventory());
    std::filesystem::permissions(folder / "a.db", std::filesystem::perms{04640});
    std::filesystem::create_symlink("a.db", folder / "link.db");
    ReplaceInventory(folder / "link.db", LargeInventory(3, 10));
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.db"));
    EXPECT_EQ(ReadInventory(folder / "a.db"), LargeInventory(3, 10));
    EXPECT_EQ(std::filesystem::status(folder / "a.db").permissions(), std::filesystem::perms{0640})
        << "without the set-user-ID bit";
}

// A killed program leaves a write-ahead log. It belongs to the old file.
TEST(InventoryFile, IsNotMixedWithTheWriteAheadLogOfTheFileBefore) {
    const TemporaryFolder folder;
    const auto file = MakeInventory(folder / "a.db", LargeInventory(1, 100));
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        SQLite::Database database(file.string(), SQLite::OPEN_READWRITE);
        database.execAndGet("PRAGMA journal_mode = WAL");
        database.exec("UPDATE ne SET ne_id = ne_id + 1000000");
        raise(SIGKILL);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_GT(std::filesystem::file_size(folder / "a.db-wal"), 0U);
    ReplaceInventory(file, LargeInventory(2, 100));
    EXPECT_FALSE(std::filesystem::exists(folder / "a.db-wal"));
    EXPECT_EQ(ReadInventory(file), LargeInventory(2, 100));
}

TEST(InventoryFile, MayHaveItsLastPagesInAWriteAheadLog) {
    const TemporaryFolder folder;
    const auto file = MakeInventory(folder / "a.db", LargeInventory(1, 1));
    SQLite::Database database(file.string(), SQLite::OPEN_READWRITE);
    database.execAndGet("PRAGMA journal_mode = WAL");
    database.exec("PRAGMA wal_autocheckpoint = 0");
    const auto size = std::filesystem::file_size(file);
    database.exec(
        "WITH RECURSIVE n(i) AS (VALUES (1) UNION ALL SELECT i + 1 FROM n WHERE i < 9999) "
        "INSERT INTO ne SELECT i, 1, 0, 0 FROM n");
    ASSERT_EQ(std::filesystem::file_size(file), size);
    EXPECT_EQ(ReadInventory(file), LargeInventory(1, 10000));
}

void Obey(std::span<sock_filter> filter) {
    const sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 || prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
        _exit(3);
    }
}

// Makes system calls fail in this process from now on, as on a file system that does not support them.
void LetFail(std::initializer_list<std::pair<int, int>> callsAndErrors) {
    std::vector<sock_filter> program{BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
    for (const auto& [call, error] : callsAndErrors) {
        program.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(call), 0, 1));
        program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<unsigned>(error)));
    }
    program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    Obey(program);
}

// Ends this process at its next system call of this number.
void DieAt(int call) {
    std::array program{sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
                       sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(call), 0, 1),
                       sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS),
                       sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW)};
    Obey(program);
}

// Makes this process open no file without a name from now on, as on a file system that cannot hold one.
void RefuseUnnamedFiles() {
    constexpr unsigned UNNAMED = O_TMPFILE & ~O_DIRECTORY;
    std::array program{sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
                       sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_openat, 0, 3),
                       sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[2])),
                       sock_filter BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, UNNAMED, 0, 1),
                       sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EOPNOTSUPP),
                       sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW)};
    Obey(program);
}

// Runs isRight in a forked process. Returns 0 if it returned true.
int CodeOfChild(const std::function<bool()>& isRight) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(isRight() ? 0 : 1);
    }
    int status = 0;
    return child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void LetHardLinksFail() {
#ifdef SYS_link  // 64-bit ARM has only the other call
    LetFail({{SYS_link, EPERM}});
#endif
    LetFail({{SYS_linkat, EPERM}});
}

TEST(InventoryFile, NeedsNoHardLinks) {
    for (const bool hasExclusiveRename : {true, false}) {
        const TemporaryFolder folder;
        EXPECT_EQ(CodeOfChild([&] {
                      LetHardLinksFail();
                      if (!hasExclusiveRename) {
                          LetFail({{SYS_renameat2, EINVAL}});
                      }
                      CreateInventory(folder / "a.db");
                      const std::string again = ErrorOf([&] { CreateInventory(folder / "a.db"); });
                      ReplaceInventory(folder / "a.db", SmallInventory());
                      return again.find("File exists") != std::string::npos;
                  }),
                  0);
        EXPECT_EQ(ReadInventory(folder / "a.db"), SmallInventory());
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);
    }
}

class InventoryFileOfOneUser : public testing::TestWithParam<std::tuple<int, bool>> {};

// At no moment, so that a process that dies then leaves nothing that others may read.
TEST_P(InventoryFileOfOneUser, IsNeverShownToOthers) {
    const auto [lastCall, areUnnamedRefused] = GetParam();
    const TemporaryFolder folder;
    const auto file = MakeInventory(folder / "a.db", LargeInventory(1, 10));
    std::filesystem::permissions(file, std::filesystem::perms{0600});
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        umask(0);
        if (areUnnamedRefused) {
            RefuseUnnamedFiles();
        }
        DieAt(lastCall);
        ReplaceInventory(file, SmallInventory());
        _exit(1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << status;
    std::size_t drafts = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path())) {
        EXPECT_EQ(entry.status().permissions(), std::filesystem::perms{0600}) << entry.path();
        drafts += entry.path().filename().string().starts_with(".inventory.") ? 1 : 0;
    }
    EXPECT_EQ(drafts, areUnnamedRefused ? 1U : 0U);
}

INSTANTIATE_TEST_SUITE_P(All, InventoryFileOfOneUser,
                         testing::Combine(testing::Values(SYS_fsync, SYS_fchown, SYS_fchmod), testing::Bool()));

// ---- Refused, and why -----------------------------------------------------------------------------------------------

TEST(InventoryFile, MayHaveNothingButItsTables) {
    const std::vector<std::pair<std::string, std::string>> strangers{
        {"trigger t", "CREATE TRIGGER t AFTER INSERT ON ne BEGIN DELETE FROM ne; END"},
        {"view v", "CREATE VIEW v AS SELECT 1"},
        {"view ne", "ALTER TABLE ne RENAME TO other; CREATE VIEW ne AS SELECT * FROM ne_type; DROP TABLE other"},
        {"table other", "CREATE TABLE other (a)"},
        {"index i", "CREATE INDEX i ON ne (ne_type)"}};
    for (const auto& [name, statement] : strangers) {
        const TemporaryFolder folder;
        const auto file = MakeInventory(folder / "a.db", SmallInventory());
        Execute(file, statement);
        const auto complaint = file.string() + ": is not an inventory: it has a " + name;
        EXPECT_EQ(ErrorOf([&] { ReadInventory(file); }), complaint);
        EXPECT_EQ(ErrorOf([&] { ReplaceInventory(file, {}); }), complaint);
    }
}

TEST(InventoryFile, HasNamesInUtf8WithoutNul) {
    const TemporaryFolder folder;
    const auto file = MakeInventory(folder / "a.db", SmallInventory());
    for (const std::string& bad :
         {std::string("a\0b", 3), std::string("\xE9"), std::string("\xC0\x80"), std::string("\xED\xA0\x80"),
          std::string("\xF4\x90\x80\x80"), std::string("\xE2\x82"), std::string("x\x80"),
          std::string("\xF8\x88\x80\x80\x80")}) {
        Inventory inventory = SmallInventory();
        inventory.neTypes[1].name = bad;
        EXPECT_EQ(ErrorOf([&] { ReplaceInventory(file, inventory); }),
                  file.string() + ": table ne_type: row ne_type=1887: name is not a text in UTF-8 without NUL");
        {
            SQLite::Database database(file.string(), SQLite::OPEN_READWRITE);
            SQLite::Statement update(database, "UPDATE ne_type SET name = CAST(? AS TEXT) WHERE ne_type = 1887");
            update.bind(1, bad.data(), static_cast<int>(bad.size()));
            update.exec();
        }
        EXPECT_EQ(ErrorOf([&] { ReadInventory(file); }),
                  file.string() + ": table ne_type: row ne_type=1887: name is binary, not a text in UTF-8 without NUL");
    }
    Inventory inventory = SmallInventory();
    inventory.neTypes[1].name =
        "\xC2\x80 \xDF\xBF \xE0\xA0\x80 \xED\x9F\xBF \xEE\x80\x80 \xF0\x90\x80\x80 \xF4\x8F\xBF\xBF";
    ReplaceInventory(file, inventory);
    EXPECT_EQ(ReadInventory(file), inventory);
}

// Runs as an ordinary user: nothing is forbidden to the superuser.
class InventoryFileWithoutRights : public testing::Test {
protected:
    // The text of the error of action, in a process without rights.
    std::string ErrorWithoutRights(const std::function<void()>& action) {
        constexpr unsigned NOBODY = 65534;
        const auto answer = m_answers / "answer";
        EXPECT_EQ(CodeOfChild([&] {
                      std::ofstream stream(answer);
                      if (getuid() == 0 && (setgid(NOBODY) != 0 || setuid(NOBODY) != 0)) {
                          return false;
                      }
                      stream << ErrorOf(action) << std::flush;
                      return stream.good();
                  }),
                  0);
        return ReadFile(answer);
    }

    TemporaryFolder m_answers;
    TemporaryFolder m_folder;
    std::filesystem::path m_file = m_folder / "a.db";
};

TEST_F(InventoryFileWithoutRights, SaysWhatIsForbidden) {
    using std::filesystem::permissions;
    using std::filesystem::perms;
    MakeInventory(m_file, SmallInventory());
    permissions(m_folder.Path(), perms{0755});
    EXPECT_EQ(ErrorWithoutRights([&] { CreateInventory(m_folder / "b.db"); }),
              (m_folder / "b.db").string() + ": cannot be written in its folder: Permission denied");
    permissions(m_folder.Path(), perms{0777});
    permissions(m_file, perms{0444});
    EXPECT_EQ(ErrorWithoutRights([&] { ReplaceInventory(m_file, {}); }),
              m_file.string() + ": cannot be changed: it is read-only");
    permissions(m_folder.Path(), perms{0755});
    permissions(m_file, perms{0});
    EXPECT_EQ(ErrorWithoutRights([&] { ReadInventory(m_file); }),
              m_file.string() + ": cannot be opened: Permission denied");
    permissions(m_folder.Path(), perms{0});
    EXPECT_EQ(ErrorWithoutRights([&] { ReadInventory(m_file); }), m_file.string() + ": Permission denied");
    permissions(m_folder.Path(), perms{0755});
}

TEST_F(InventoryFileWithoutRights, SaysThatAJournalCannotBeUndone) {
    MakeInventory(m_file, LargeInventory(1));
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        SQLite::Database database(m_file.string(), SQLite::OPEN_READWRITE);
        database.exec("PRAGMA cache_size = 1; BEGIN IMMEDIATE; UPDATE ne SET ne_id = ne_id + 1000000");
        raise(SIGKILL);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    std::filesystem::permissions(m_folder.Path(), std::filesystem::perms{0755});
    EXPECT_EQ(ErrorWithoutRights([&] { ReadInventory(m_file); }),
              m_file.string() + ": another program was ended while it changed the file; undoing that by " +
                  m_file.string() + "-journal needs the right to write the file and its folder");
}

// ---- Others at work -------------------------------------------------------------------------------------------------

// With a write-ahead log (which others may have switched on) writers do not wait for readers.
class InventoryFileInJournalMode : public testing::TestWithParam<const char*> {};

TEST_P(InventoryFileInJournalMode, IsAlwaysReadWhole) {
    const TemporaryFolder folder;
    const auto make = [](std::uint16_t neType) {
        Inventory inventory = LargeInventory(neType, 10000);
        inventory.domainMembers = {{DomainCache::EQUIPMENT_TYPE, "OTN", neType}};
        return inventory;
    };
    const auto file = MakeInventory(folder / "a.db", make(1));
    {
        SQLite::Database database(file.string(), SQLite::OPEN_READWRITE);
        database.execAndGet(std::string("PRAGMA journal_mode = ") + GetParam());
    }
    std::vector<std::thread> writers;
    for (std::uint16_t neType = 1; neType <= 2; ++neType) {
        writers.emplace_back([&file, inventory = make(neType)] {
            for (int round = 0; round < 10; ++round) {
                ReplaceInventory(file, inventory);
            }
        });
    }
    for (int round = 0; round < 40; ++round) {
        const Inventory inventory = ReadInventory(file);
        EXPECT_TRUE(inventory == make(1) || inventory == make(2)) << "in round " << round;
    }
    for (std::thread& writer : writers) {
        writer.join();
    }
}

INSTANTIATE_TEST_SUITE_P(All, InventoryFileInJournalMode, testing::Values("DELETE", "WAL"),
                         [](const auto& parameter) { return std::string(parameter.param); });

}  // namespace
