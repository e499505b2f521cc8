// What may happen to an inventory while the tool works on it.
#include <algorithm>
#include <sstream>
#include <string>

#include <SQLiteCpp/SQLiteCpp.h>

#include "kxdu/program.h"

class ToolInventory : public ProgramTest {
protected:
    // A folder of CSV files with this many NEs, all of one type.
    void WriteCsv(const std::string& name, int nes, int neType) const {
        std::string rows = "ne_id,ne_type,multi_sub_shelf,oam_number_omitted\n";
        for (int ne = 0; ne < nes; ++ne) {
            rows.append(std::to_string(ne)).append(",").append(std::to_string(neType)).append(",0,0\n");
        }
        WriteFile(name + "/ne.csv", rows);
        WriteFile(name + "/ne_type.csv",
                  "ne_type,name,ip_service,klv\n" + std::to_string(neType) + ",of " + name + ",1,0\n");
        WriteFile(name + "/domain_member.csv",
                  "cache,domain,ne_type\nEQUIPMENT_TYPE,OTN," + std::to_string(neType) + "\n");
    }

    // Makes n.db with the content of the folder.
    void MakeInventory(const std::string& csv) const {
        ASSERT_EQ(Shell("rm -f n.db; kxdu inventory init n.db && kxdu inventory import n.db " + csv).code, 0);
    }

    [[nodiscard]] bool Holds(const std::string& csv) const {
        return Shell("kxdu inventory export n.db exported && diff -r " + csv + " exported").code == 0;
    }
};

// ---- Not what it should be ------------------------------------------------------------------------------------------

// Overwrites one page after the other: each loss must be noticed.
TEST_F(ToolInventory, ALostPageIsNoticedWhereverItIs) {
    WriteCsv("csv", 10000, 5);
    MakeInventory("csv");
    const std::string whole = ReadFile("n.db");
    constexpr std::size_t PAGE = 4096;
    ASSERT_GT(whole.size(), 10 * PAGE);
    for (std::size_t page = 0; page < whole.size(); page += PAGE) {
        std::string holed = whole;
        holed.replace(page, PAGE, PAGE, '\xAA');
        WriteFile("n.db", holed);
        const Ended ended = Shell("kxdu inventory list n.db --nes");
        EXPECT_EQ(ended.code, 2) << "page at " << page;
        EXPECT_EQ(ended.out, "") << "page at " << page;
        EXPECT_EQ(ended.err.rfind("kxdu: n.db: ", 0), 0U) << ended.err;
    }
}

// All rows are present and right, but in the wrong places.
TEST_F(ToolInventory, MisplacedPagesAreNoticed) {
    WriteCsv("csv", 10000, 5);
    MakeInventory("csv");
    const std::string whole = ReadFile("n.db");
    constexpr std::size_t PAGE = 4096;
    constexpr char LEAF_OF_ROWS = '\x0D';
    std::size_t swapped = 0;
    for (std::size_t page = 2 * PAGE; page + PAGE < whole.size(); page += PAGE) {
        if (whole[page] != LEAF_OF_ROWS || whole[page + PAGE] != LEAF_OF_ROWS) {
            continue;
        }
        ++swapped;
        WriteFile("n.db", whole.substr(0, page) + whole.substr(page + PAGE, PAGE) + whole.substr(page, PAGE) +
                              whole.substr(page + 2 * PAGE));
        const Ended ended = Shell("kxdu inventory list n.db --nes");
        EXPECT_EQ(ended.code, 2) << "page at " << page;
        EXPECT_EQ(ended.out, "") << "page at " << page;
        EXPECT_EQ(ended.err.rfind("kxdu: n.db: ", 0), 0U) << ended.err;
    }
    EXPECT_GT(swapped, 10U);
}

TEST_F(ToolInventory, NoVerbGoesOnWithOneThatIsCorrupt) {
    WriteCsv("csv", 10000, 5);
    MakeInventory("csv");
    const std::string whole = ReadFile("n.db");
    for (const std::string& corrupt :
         {whole.substr(0, whole.size() / 2), whole.substr(0, 4096), std::string(), std::string(whole.size(), '\0')}) {
        WriteFile("n.db", corrupt);
        for (const char* const command :
             {"encode --inventory n.db", "check --inventory n.db", "explain --inventory n.db NE=5",
              "ne-type 5 --inventory n.db", "inventory list n.db", "inventory export n.db out",
              "inventory import n.db csv"}) {
            const Ended ended = Shell(std::string("kxdu ") + command, "NE=5\n");
            EXPECT_EQ(ended.code, 2) << command << " with " << corrupt.size() << " bytes";
            EXPECT_EQ(ended.out, "") << command;
            EXPECT_EQ(ended.err.rfind("kxdu: n.db: ", 0), 0U) << command << ": " << ended.err;
        }
        EXPECT_FALSE(Exists("out"));
    }
}

TEST_F(ToolInventory, AJournalThatIsNoneIsPassedOver) {
    WriteCsv("csv", 10, 5);
    MakeInventory("csv");
    WriteFile("n.db-journal", std::string(100000, '\x5A'));
    EXPECT_TRUE(Holds("csv"));
}

// ---- Others at work -------------------------------------------------------------------------------------------------

TEST_F(ToolInventory, OneThatStaysLockedIsGivenUp) {
    WriteCsv("old", 3, 5);
    WriteCsv("new", 4, 6);
    MakeInventory("old");
    SQLite::Database other((folder / "n.db").string(), SQLite::OPEN_READWRITE);
    other.exec("BEGIN EXCLUSIVE");
    // All at once, since each of them waits for a while. The clock of the shell counts whole seconds.
    const Ended ended = Shell(
        "begin=$(date +%s); for verb in 'inventory import n.db new' 'inventory list n.db' 'inventory export n.db out'"
        " 'encode --inventory n.db' 'check --inventory n.db' 'explain --inventory n.db NE=5'"
        " 'ne-type 5 --inventory n.db'; do { kxdu $verb; echo $? $(($(date +%s) - begin)); } & done; wait");
    std::istringstream verbs(ended.out);
    int code = 0;
    int seconds = 0;
    int count = 0;
    for (; verbs >> code >> seconds; ++count) {
        EXPECT_EQ(code, 2);
        EXPECT_GE(seconds, 4);
        EXPECT_LE(seconds, 30);
    }
    EXPECT_EQ(count, 7) << ended.out;
    std::string complaints;
    for (int verb = 0; verb < 7; ++verb) {
        complaints += "kxdu: n.db: database is locked\n";
    }
    EXPECT_EQ(ended.err, complaints);
    other.exec("COMMIT");
    EXPECT_TRUE(Holds("old"));
}

TEST_F(ToolInventory, ImportsAtOnceComeOneAfterTheOther) {
    WriteCsv("one", 20000, 5);
    WriteCsv("two", 30000, 6);
    MakeInventory("one");
    for (int round = 0; round < 3; ++round) {
        const Ended ended = Shell(
            "pids=; for reader in 1 2 3; do for csv in one two; do kxdu inventory import n.db $csv >/dev/null &"
            " pids=\"$pids $!\"; done; kxdu inventory list n.db --nes --format csv >listed$reader &"
            " pids=\"$pids $!\"; done; for pid in $pids; do wait $pid; echo $?; done >codes; sort -u codes");
        EXPECT_EQ(ended.out, "0\n");
        EXPECT_EQ(ended.err, "");
        EXPECT_TRUE(Holds("one") || Holds("two"));
        for (const char* const listed : {"listed1", "listed2", "listed3"}) {
            const std::string rows = ReadFile(listed);
            const auto lines = std::count(rows.begin(), rows.end(), '\n');
            EXPECT_TRUE(lines == 20001 || lines == 30001) << lines;
        }
    }
}

TEST_F(ToolInventory, OfManyWhoMakeItOneDoes) {
    const Ended ended = Shell(
        "pids=; for try in 1 2 3 4 5 6 7 8; do kxdu inventory init n.db & pids=\"$pids $!\"; done;"
        " for pid in $pids; do wait $pid; echo $? >>codes; done; sort codes | tr -d '\\n'; rm codes");
    EXPECT_EQ(ended.out, "n.db: empty inventory created\n02222222");
    EXPECT_EQ(Shell("kxdu inventory list n.db").code, 0);
    EXPECT_EQ(Files(), 1);
}

// ---- An end before the end ------------------------------------------------------------------------------------------

class ToolInventoryKilled : public ToolInventory, public testing::WithParamInterface<const char*> {
protected:
    // May come too late for `reached`; the caller then tries again.
    [[nodiscard]] Ended KillWhen(const std::string& reached, const std::string& verb) const {
        return Shell("size=$(stat -c %s n.db); " + InBackground(verb + " >/dev/null") + StopWhen(reached, GetParam()));
    }
};

// The import is killed at any time of its run. A backup that is then copied over the inventory is read unchanged: no
// journal remains beside it.
TEST_P(ToolInventoryKilled, InMidImportHoldsWhatItHeldAndSpoilsNoBackup) {
    WriteCsv("old", 1000, 5);
    WriteCsv("new", 500000, 6);
    WriteCsv("saved", 2000, 7);
    MakeInventory("saved");
    ASSERT_EQ(Shell("mv n.db saved.db").code, 0);
    int hits = 0;
    for (int round = 0; round < 12; ++round) {
        MakeInventory("old");
        const std::string delay = std::to_string(round * 60 + 20);
        const Ended ended = Shell(InBackground("inventory import n.db new >/dev/null") + "sleep $(printf '0.%03d' " +
                                  delay + "); kill -" + GetParam() + " $!; wait $!; kill -l $?");
        const bool isHit = ended.out == std::string(GetParam()) + "\n";
        hits += isHit ? 1 : 0;
        // A signal that comes after the new file is in its place still ends the run as killed.
        EXPECT_TRUE(Holds("old") || Holds("new")) << "in round " << round;
        EXPECT_EQ(Shell("ls -A | grep -e '-journal$' -e '-wal$'").code, 1) << "in round " << round;
        EXPECT_TRUE(GetParam() == std::string("KILL") || Shell("ls -d .inventory.*").code != 0)
            << "only KILL may come between the hidden name and the final one";
        ASSERT_EQ(Shell("cp saved.db n.db").code, 0);
        EXPECT_TRUE(Holds("saved")) << "in round " << round;
    }
    EXPECT_GT(hits, 3);
    EXPECT_EQ(Shell("kxdu inventory import n.db new").code, 0);
    EXPECT_TRUE(Holds("new"));
}

// The export is killed after it has begun to write a table.
TEST_P(ToolInventoryKilled, InMidExportLeavesAllOldFiles) {
    WriteCsv("old", 3, 5);
    WriteCsv("new", 500000, 6);
    MakeInventory("new");
    bool isHit = false;
    for (int round = 0; round < 30 && !isHit; ++round) {
        ASSERT_EQ(Shell("rm -rf out; cp -r old out").code, 0);
        isHit = KillWhen("find -L /proc/$!/fd -type f -links 0 -size +0 2>/dev/null | grep -q .",
                         "inventory export n.db out")
                    .out == std::string(GetParam()) + "\n";
    }
    ASSERT_TRUE(isHit) << "never killed in time";
    EXPECT_EQ(Shell("diff -r old out").code, 0);
    EXPECT_TRUE(Holds("new"));
}

TEST_P(ToolInventoryKilled, InMidInitLeavesAWholeOneOrNone) {
    int hits = 0;
    for (int round = 0; round < 60; ++round) {
        ASSERT_EQ(Shell("rm -f n.db").code, 0);
        const std::string delay = std::to_string(round % 20);
        const Ended ended = Shell(InBackground("inventory init n.db >/dev/null") + "sleep $(printf '0.%03d' " + delay +
                                  "); kill -" + GetParam() + " $!; wait $!; kill -l $?");
        hits += ended.out == std::string(GetParam()) + "\n" ? 1 : 0;
        EXPECT_TRUE(!Exists("n.db") || Shell("kxdu inventory list n.db").code == 0) << "in round " << round;
        EXPECT_EQ(Files(), Exists("n.db") ? 1 : 0) << "in round " << round;
    }
    EXPECT_GT(hits, 0) << "never killed in time";
}

INSTANTIATE_TEST_SUITE_P(By, ToolInventoryKilled, testing::Values("INT", "TERM", "HUP", "KILL"),
                         [](const auto& parameter) { return std::string(parameter.param); });

// ---- No space -------------------------------------------------------------------------------------------------------

// A limit on the size of files simulates a disk that fills up, sooner or later.
TEST_F(ToolInventory, AnImportOntoAFullDiskChangesNothing) {
    WriteCsv("old", 2000, 5);
    WriteCsv("new", 200000, 6);
    MakeInventory("old");
    for (const char* const limit : {"1", "8", "20", "60", "200", "1000"}) {
        const Ended ended = Shell("(ulimit -f " + std::string(limit) + "; kxdu inventory import n.db new)");
        EXPECT_EQ(ended.code, 2) << limit;
        EXPECT_EQ(ended.err.rfind("kxdu: n.db: ", 0), 0U) << limit << ": " << ended.err;
        EXPECT_TRUE(Holds("old")) << limit;
    }
}

TEST_F(ToolInventory, OnAFullDiskNoneIsMadeByHalf) {
    for (const char* const limit : {"1", "8", "16"}) {
        const Ended ended = Shell("(ulimit -f " + std::string(limit) + "; kxdu inventory init n.db)");
        EXPECT_EQ(ended.code, 2) << limit;
        EXPECT_EQ(ended.err.rfind("kxdu: n.db: ", 0), 0U) << limit << ": " << ended.err;
        EXPECT_EQ(Files(), 0) << limit;
    }
}

// The tables belong together.
TEST_F(ToolInventory, AnExportOntoAFullDiskLeavesAllOldFiles) {
    WriteCsv("old", 3, 5);
    WriteCsv("new", 30000, 6);
    MakeInventory("new");
    EXPECT_EQ(Shell("cp -r old out; ulimit -f 100; kxdu inventory export n.db out").code, 3);
    EXPECT_EQ(Shell("diff -r old out").code, 0);
}
