#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "support/foldertest.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// A connection that has loaded the extension.
class Connection {
public:
    explicit Connection(const char* database = ":memory:") {
        sqlite3* opened = nullptr;
        const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX | SQLITE_OPEN_URI;
        EXPECT_EQ(sqlite3_open_v2(database, &opened, flags, nullptr), SQLITE_OK);
        m_connection.reset(opened);
        sqlite3_enable_load_extension(opened, 1);
        char* message = nullptr;
        EXPECT_EQ(sqlite3_load_extension(opened, KX_SQLITE_EXTENSION, nullptr, &message), SQLITE_OK)
            << (message != nullptr ? message : "");
        sqlite3_free(message);
    }

    // The rows of a statement, their columns joined by "|"; NULL is "-". After them, the message if it fails.
    std::vector<std::string> Rows(const std::string& statement, const std::vector<std::string>& values = {}) const {
        std::vector<std::string> rows;
        sqlite3_stmt* compiled = nullptr;
        int code = sqlite3_prepare_v2(m_connection.get(), statement.c_str(), -1, &compiled, nullptr);
        for (std::size_t place = 0; code == SQLITE_OK && place < values.size(); ++place) {
            code = sqlite3_bind_text(compiled, static_cast<int>(place) + 1, values[place].data(),
                                     static_cast<int>(values[place].size()), SQLITE_TRANSIENT);
        }
        while (compiled != nullptr && (code = sqlite3_step(compiled)) == SQLITE_ROW) {
            rows.push_back(RowOf(compiled));
        }
        if (code != SQLITE_DONE) {
            rows.emplace_back(sqlite3_errmsg(m_connection.get()));
        }
        sqlite3_finalize(compiled);
        return rows;
    }

private:
    static std::string RowOf(sqlite3_stmt* statement) {
        std::string row;
        for (int column = 0; column < sqlite3_column_count(statement); ++column) {
            const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
            row.append(column == 0 ? "" : "|");
            row.append(text != nullptr
                           ? std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(statement, column)))
                           : "-");
        }
        return row;
    }

    struct Close {
        void operator()(sqlite3* connection) const { EXPECT_EQ(sqlite3_close(connection), SQLITE_OK); }
    };

    std::unique_ptr<sqlite3, Close> m_connection;
};

class Sqlite : public FolderTest {
protected:
    [[nodiscard]] std::string File(const std::string& content) const {
        const auto path = folder / "network.fdn";
        std::ofstream(path, std::ios::binary) << content;
        return path.string();
    }
};

constexpr const char* ALL_FUNCTIONS =
    "SELECT fdn_type(?1), fdn_kind(?1), fdn_ne(?1), fdn_get(?1, 'NE'), fdn_get(?1, 'PP:3'), fdn_number(?1, 'PP:2'), "
    "fdn_field(?1, 'portLabel'), fdn_problem(?1), fdn_under(?1, 'NE=1'), fdn_under('NE=1,FR=1', ?1), "
    "fdn_same(?1, 'NE=1'), fdn_set(?1, 'PP:2', '9'), fb_name(?1)";

TEST_F(Sqlite, ManyThreadsLoadItAndAskAtOnce) {
    std::string lines;
    for (int ne = 0; ne < 5000; ++ne) {
        lines += "NE=" + std::to_string(ne) + ",FR=1,S=3,CP=-1,PP=16||2|p" + std::to_string(ne % 7) + "\n";
    }
    const std::string path = File(lines);
    std::vector<std::vector<std::string>> answers(8);
    std::vector<std::thread> threads;
    for (auto& answer : answers) {
        threads.emplace_back([&answer, &path] {
            const Connection connection;
            for (int round = 0; round < 3; ++round) {
                answer = connection.Rows(
                    "SELECT count(*), sum(ne), sum(fdn_ne(fdn)), sum(fdn_number(fdn, 'PP:2')), count(problem), "
                    "count(DISTINCT fdn_get(fdn, 'PP:3')), sum(length(fdn_record(fdn))) > 0, "
                    "sum(fdn_same(fdn, fdn)), (SELECT count(*) FROM client_rates) FROM fdn_file(?)",
                    {path});
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const auto& answer : answers) {
        EXPECT_THAT(answer, ElementsAre("5000|12497500|12497500|10000|0|7|1|5000|17"));
    }
}

TEST_F(Sqlite, ThreadsShareAConnection) {
    const std::string path = File("NE=1,FR=2\nNE=3,FR=4\n");
    const Connection connection;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&, thread] {
            for (int round = 0; round < 100; ++round) {
                const std::string ne = std::to_string(thread * 1000 + round);
                EXPECT_THAT(connection.Rows("SELECT fdn_ne(?1), fdn_record(?1)", {"NE=" + ne}),
                            ElementsAre(ne + R"(|{"reserved":0,"neId":)" + ne + "}"));
                EXPECT_THAT(connection.Rows("SELECT sum(ne), sum(shelf) FROM fdn_file(?)", {path}), ElementsAre("4|6"));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

// With the sanitizers: no function looks past the end of a text, wherever it is cut.
TEST_F(Sqlite, EveryBeginningOfATextIsAnswered) {
    const Connection connection;
    for (const std::string text :
         {"NE=12,FR=1,S=3,CP=-1,SS=2,SC=-1,PP=16|1025|7|a\\|b,AP=1|2|9", "NE=5,MD=3|md1,MA=4|ma1,MEP=7",
          "NE=5,LP=|65547|3|vlanif,CHANNELSET=4", "NE=5,TUNNEL=1|2|in|out|5|backup|7",
          "NE=1,PP=||1|\xC3\x85\xE2\x82\xAC,SUBIF=3", "NE=3,PWE3TRAIL=7,,==||"}) {
        for (std::size_t size = 0; size <= text.size(); ++size) {
            const auto rows = connection.Rows(ALL_FUNCTIONS, {text.substr(0, size)});
            ASSERT_EQ(rows.size(), 1U) << text.substr(0, size);
            const auto file = connection.Rows(
                "SELECT count(*), count(fdn), count(type), count(ne), count(problem), count(name) "
                "FROM fdn_file(?)",
                {File(text.substr(0, size) + "\n" + text)});
            ASSERT_THAT(file, ElementsAre(HasSubstr("2|2|"))) << text.substr(0, size);
        }
    }
}

TEST_F(Sqlite, ItsAnswersAreRefusedWhenSqliteHasNoMemory) {
    const Connection connection;
    const std::string fdn = "NE=1,PP=||1|" + std::string(10'000'000, 'p');
    const sqlite3_int64 before = sqlite3_hard_heap_limit64(sqlite3_memory_used() + 15'000'000);
    const auto rows = connection.Rows("SELECT length(fdn_get(?1, 'PP:3'))", {fdn});
    sqlite3_hard_heap_limit64(before);
    EXPECT_THAT(rows, ElementsAre("out of memory"));
    EXPECT_THAT(connection.Rows("SELECT length(fdn_get(?1, 'PP:3'))", {fdn}), ElementsAre("10000000"));
}

TEST_F(Sqlite, ErrorsOfAFunctionLeaveTheConnectionUsable) {
    const Connection connection;
    for (int round = 0; round < 3; ++round) {
        EXPECT_THAT(connection.Rows("SELECT fdn_get('NE=1', 'XX')"), ElementsAre(HasSubstr("unknown piece \"XX\"")));
        EXPECT_THAT(connection.Rows("SELECT * FROM fdn_file(?)", {(folder / "missing").string()}),
                    ElementsAre(HasSubstr("No such file or directory")));
        EXPECT_THAT(connection.Rows("SELECT fdn_get('NE=1', 'NE')"), ElementsAre("1"));
    }
}

}  // namespace
