#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <fstream>
#include <limits>
#include <new>
#include <span>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <tuple>

#include <SQLiteCpp/SQLiteCpp.h>
#include <SQLiteCpp/VariadicBind.h>
#include <sqlite3.h>

#include <kx_standalone/inventoryfile.h>

#include "forks.h"
#include "newfile.h"
#include "text/utf8sequence.h"

namespace NS_STANDALONE {

namespace {

namespace fs = std::filesystem;

constexpr int APPLICATION_ID = 0x6B784E45;  // "kxNE": marks inventories among SQLite files
constexpr int SCHEMA_VERSION = 1;
constexpr int BUSY_TIMEOUT_MS = 5000;
constexpr const char* TEXT_RULE = "a text in UTF-8 without NUL";

bool FollowsTextRule(std::string_view text) noexcept {
    while (!text.empty() && text.front() != '\0') {
        const std::size_t size = NS_KX::Utf8SequenceSize(text);
        if (size == 0) {
            return false;
        }
        text.remove_prefix(size);
    }
    return text.empty();
}

struct Column {
    std::string_view name;
    std::string_view definition;
};

struct Table {
    std::string_view name;
    std::array<Column, 4> columns;  // in the order of the row structs; the rest have no name
    std::size_t keyColumns;         // the first ones
    std::string_view options;
};

constexpr Table NE_TYPE_TABLE{"ne_type",
                              {{{"ne_type", "INTEGER PRIMARY KEY CHECK (ne_type BETWEEN 0 AND 65535)"},
                                {"name", "TEXT NOT NULL"},
                                {"ip_service", "INTEGER NOT NULL CHECK (ip_service IN (0, 1))"},
                                {"klv", "INTEGER NOT NULL CHECK (klv IN (0, 1))"}}},
                              1,
                              "STRICT"};
constexpr Table NE_TABLE{"ne",
                         {{{"ne_id", "INTEGER PRIMARY KEY CHECK (ne_id BETWEEN 0 AND 2147483647)"},
                           {"ne_type", "INTEGER NOT NULL REFERENCES ne_type (ne_type)"},
                           {"multi_sub_shelf", "INTEGER NOT NULL CHECK (multi_sub_shelf IN (0, 1))"},
                           {"oam_number_omitted", "INTEGER NOT NULL CHECK (oam_number_omitted IN (0, 1))"}}},
                         1,
                         "STRICT"};
constexpr Table DOMAIN_MEMBER_TABLE{
    "domain_member",
    {{{"cache", "TEXT NOT NULL CHECK (cache IN ('NE_TYPE_LIST', 'EQUIPMENT_TYPE'))"},
      {"domain", "TEXT NOT NULL CHECK (domain <> '')"},
      {"ne_type", "INTEGER NOT NULL CHECK (ne_type BETWEEN 0 AND 65535), PRIMARY KEY (cache, domain, ne_type)"}}},
    3,
    "STRICT, WITHOUT ROWID"};
constexpr std::array TABLES{NE_TYPE_TABLE, NE_TABLE, DOMAIN_MEMBER_TABLE};

// Calls text for each of the first `count` columns of a table, and joins the results with commas.
template <class Text>
std::string OfColumns(const Table& table, std::size_t count, Text text) {
    std::string all;
    for (const Column& column : std::span(table.columns).first(count)) {
        if (!column.name.empty()) {
            all.append(all.empty() ? "" : ", ").append(text(column));
        }
    }
    return all;
}

std::string NamesOf(const Table& table, std::size_t count = std::tuple_size_v<decltype(Table::columns)>) {
    return OfColumns(table, count, [](const Column& column) { return column.name; });
}

std::string NamesOfCaches() {
    std::string names;
    for (const DomainCache cache : DOMAIN_CACHES) {
        names.append(names.empty() ? "" : " or ").append(NameOf(cache));
    }
    return names;
}

// A place in an inventory, for error texts.
struct Place {
    const fs::path& file;
    std::string_view table{};

    [[noreturn]] void Fail(const std::string& what) const {
        std::string text = file.string() + ": ";
        if (!table.empty()) {
            text.append("table ").append(table).append(": ");
        }
        throw std::runtime_error(text + what);
    }
};

// Returns why `file` cannot be opened, read or written; SQLite may say only that it cannot.
std::string CauseOf(const SQLite::Exception& error, const fs::path& file) {
    if (error.getErrorCode() != SQLITE_CANTOPEN && error.getErrorCode() != SQLITE_READONLY) {
        return error.what();
    }
    if (!std::ifstream(file)) {
        return "cannot be opened: " + std::generic_category().message(errno);
    }
    std::error_code ignored;
    const fs::path journal = file.string() + "-journal";
    if (fs::exists(journal, ignored)) {
        return "another program was ended while it changed the file; undoing that by " + journal.string() +
               " needs the right to write the file and its folder";
    }
    return error.what();
}

// Runs action, and reports an error of SQLite with its place.
template <class Action>
auto At(const Place& place, Action action) {
    try {
        return action();
    } catch (const SQLite::Exception& error) {
        if (error.getErrorCode() == SQLITE_NOMEM) {
            throw std::bad_alloc();
        }
        place.Fail(CauseOf(error, place.file));
    }
}

// Reads the rows of a table in the order of the key. Checks each value again: another program may have made the file
// with fewer checks.
class RowReader {
public:
    RowReader(const SQLite::Database& database, Place place, const Table& table)
        : m_place(place), m_keyColumns(table.keyColumns), m_statement(database, SelectText(table)) {}

    bool Next() { return m_statement.executeStep(); }

    template <class Number>
    Number GetNumber(int column, std::int64_t smallest, std::int64_t largest) {
        const SQLite::Column value = m_statement.getColumn(column);
        if (!value.isInteger() || value.getInt64() < smallest || value.getInt64() > largest) {
            FailAtValue(column, "a whole number from " + std::to_string(smallest) + " to " + std::to_string(largest));
        }
        return static_cast<Number>(value.getInt64());
    }

    std::uint16_t GetNeType(int column) {
        return GetNumber<std::uint16_t>(column, 0, std::numeric_limits<std::uint16_t>::max());
    }

    bool GetFlag(int column) { return GetNumber<int>(column, 0, 1) == 1; }

    std::string GetText(int column) {
        const SQLite::Column value = m_statement.getColumn(column);
        if (!value.isText()) {
            FailAtValue(column, "a text");
        }
        std::string text = value.getString();
        if (!FollowsTextRule(text)) {
            FailAtValue(column, TEXT_RULE);
        }
        return text;
    }

    [[noreturn]] void FailAtValue(int column, const std::string& expected) {
        FailAtRow(std::string(m_statement.getColumn(column).getName()) + " is " + GetValueText(column) + ", not " +
                  expected);
    }

    [[noreturn]] void FailAtRow(const std::string& what) {
        std::string row;
        for (int column = 0; column < static_cast<int>(m_keyColumns); ++column) {
            row.append(column == 0 ? "row " : ", ").append(m_statement.getColumn(column).getName());
            row.append("=").append(GetValueText(column));
        }
        m_place.Fail(row + ": " + what);
    }

private:
    static std::string SelectText(const Table& table) {
        std::string text = "SELECT ";
        text.append(NamesOf(table)).append(" FROM ").append(table.name);
        return text.append(" ORDER BY ").append(NamesOf(table, table.keyColumns));
    }

    std::string GetValueText(int column) {
        const SQLite::Column value = m_statement.getColumn(column);
        if (value.isNull()) {
            return "NULL";
        }
        if (value.isText()) {
            return FollowsTextRule(value.getString()) ? '"' + value.getString() + '"' : "binary";
        }
        return value.isBlob() ? "binary" : value.getString();
    }

    Place m_place;
    std::size_t m_keyColumns;
    SQLite::Statement m_statement;
};

// Adds rows to a table.
class RowWriter {
public:
    RowWriter(const SQLite::Database& database, Place place, const Table& table)
        : m_place(place), m_columns(NamesOf(table)), m_statement(database, InsertText(table)) {}

    void CheckText(const std::string& text, std::string_view column, std::uint16_t neType) const {
        if (!FollowsTextRule(text)) {
            m_place.Fail("row ne_type=" + std::to_string(neType) + ": " + std::string(column) + " is not " + TEXT_RULE);
        }
    }

    template <class... Values>
    void Write(const Values&... values) {
        m_statement.reset();
        try {
            SQLite::bind(m_statement, values...);
            m_statement.exec();
        } catch (const SQLite::Exception& error) {
            std::ostringstream row;
            row.exceptions(std::ios::badbit);  // else exhausted memory would silently shorten the text
            const char* separator = "";
            ((row << separator << values, separator = ", "), ...);
            m_place.Fail("row (" + m_columns + ") = (" + row.str() + "): " + error.what());
        }
    }

private:
    static std::string InsertText(const Table& table) {
        std::string text = "INSERT INTO ";
        text.append(table.name).append(" (").append(NamesOf(table)).append(") VALUES (");
        return text.append(OfColumns(table, table.columns.size(), [](const Column&) { return "?"; })).append(")");
    }

    Place m_place;
    std::string m_columns;
    SQLite::Statement m_statement;
};

// Opens the file for writing if possible, even to read it: if another program died in a transaction, the next one that
// opens the file undoes it.
SQLite::Database Open(const fs::path& file) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (status.type() == fs::file_type::none) {
        Place{file}.Fail(error.message());
    }
    if (!fs::is_regular_file(status)) {
        Place{file}.Fail(fs::exists(status) ? "is not a regular file" : "no such file");
    }
    // SQLite gives some names a special meaning (":memory:", say), but no absolute ones.
    return {fs::absolute(file).string(), SQLite::OPEN_READWRITE, BUSY_TIMEOUT_MS};
}

std::string QueryText(const SQLite::Database& database, const char* query) {
    SQLite::Statement statement(database, query);
    return statement.executeStep() ? statement.getColumn(0).getString() : std::string();
}

bool HasWriteAheadLog(const SQLite::Database& database) {
    return QueryText(database, "PRAGMA journal_mode") == "wal";
}

// Returns the size in bytes of the opened file, or of its journal; 0 if that is not open.
sqlite3_int64 SizeOf(const SQLite::Database& database, int pointerOperation) {
    sqlite3_file* file = nullptr;
    sqlite3_file_control(database.getHandle(), "main", pointerOperation, static_cast<void*>(&file));
    sqlite3_int64 size = 0;
    if (file != nullptr && file->pMethods != nullptr && file->pMethods->xFileSize(file, &size) != SQLITE_OK) {
        throw SQLite::Exception("its size is not known", SQLITE_IOERR);
    }
    return size;
}

// Refuses a file that is cut off. SQLite itself reads the rest of a page that is cut off as zeros. Call it in a
// transaction that has read something: only then an interrupted change is undone, and no one else changes the size.
void CheckSize(const SQLite::Database& database, const fs::path& file) {
    if (HasWriteAheadLog(database) && SizeOf(database, SQLITE_FCNTL_JOURNAL_POINTER) > 0) {
        return;  // the log may hold the pages that the file lacks, or may be left from a time when it did
    }
    const std::int64_t pages = std::stoll(QueryText(database, "PRAGMA page_count"));
    const std::int64_t pageSize = std::stoll(QueryText(database, "PRAGMA page_size"));
    const std::int64_t size = SizeOf(database, SQLITE_FCNTL_FILE_POINTER);
    if (size < pages * pageSize) {
        Place{file}.Fail("is cut off: it has " + std::to_string(size) + " bytes, and " + std::to_string(pages) +
                         " pages of " + std::to_string(pageSize) + " bytes need " + std::to_string(pages * pageSize));
    }
}

// Refuses a file of another kind or version, and one with more than the tables of an inventory: rows do not show what
// a trigger or a view does.
void CheckSchema(const SQLite::Database& database, const fs::path& file) {
    const auto pragma = [&](const char* query) {
        SQLite::Statement statement(database, query);
        statement.executeStep();
        return statement.getColumn(0).getInt();
    };
    if (pragma("PRAGMA application_id") != APPLICATION_ID) {
        Place{file}.Fail("is not an inventory");
    }
    const int version = pragma("PRAGMA user_version");
    if (version != SCHEMA_VERSION) {
        Place{file}.Fail("is an inventory of schema version " + std::to_string(version) + ", not " +
                         std::to_string(SCHEMA_VERSION));
    }
    std::string tables;
    for (const Table& table : TABLES) {
        tables.append(tables.empty() ? "'" : ", '").append(table.name).append("'");
    }
    const std::string query =
        R"(SELECT type || ' ' || name FROM sqlite_schema WHERE name NOT LIKE 'sqlite\_%' ESCAPE '\' AND NOT )"
        "(type = 'table' AND name IN (" +
        tables + ")) LIMIT 1";
    const std::string stranger = QueryText(database, query.c_str());
    if (!stranger.empty()) {
        Place{file}.Fail("is not an inventory: it has a " + stranger);
    }
}

// Reads a table by calling readRow at each of its rows.
template <class ReadRow>
void ReadTable(const SQLite::Database& database, const fs::path& file, const Table& table, ReadRow readRow) {
    const Place place{file, table.name};
    At(place, [&] {
        RowReader reader(database, place, table);
        while (reader.Next()) {
            readRow(reader);
        }
    });
}

DomainCache ReadCache(RowReader& reader) {
    const auto cache = FindDomainCache(reader.GetText(0));
    if (!cache) {
        reader.FailAtValue(0, NamesOfCaches());
    }
    return *cache;
}

// Rows come in the order of their numbers, unless the file is damaged.
template <class Number>
void CheckFollows(RowReader& reader, Number number, Number before) {
    if (number == before) {
        reader.FailAtRow("is there twice");
    }
    if (number < before) {
        reader.FailAtRow("is out of order: the file is damaged");
    }
}

std::vector<NeTypeRow> ReadNeTypes(const SQLite::Database& database, const fs::path& file) {
    std::vector<NeTypeRow> rows;
    ReadTable(database, file, NE_TYPE_TABLE, [&](RowReader& reader) {
        const NeTypeRow row{reader.GetNeType(0), reader.GetText(1), reader.GetFlag(2), reader.GetFlag(3)};
        if (!rows.empty()) {
            CheckFollows(reader, row.neType, rows.back().neType);
        }
        rows.push_back(row);
    });
    return rows;
}

std::vector<NeRow> ReadNes(const SQLite::Database& database, const fs::path& file,
                           const std::vector<NeTypeRow>& neTypes) {
    std::vector<NeRow> rows;
    ReadTable(database, file, NE_TABLE, [&](RowReader& reader) {
        const NeRow row{reader.GetNumber<std::int32_t>(0, 0, std::numeric_limits<std::int32_t>::max()),
                        reader.GetNeType(1), reader.GetFlag(2), reader.GetFlag(3)};
        if (!rows.empty()) {
            CheckFollows(reader, row.neId, rows.back().neId);
        }
        if (!std::ranges::binary_search(neTypes, row.neType, {}, &NeTypeRow::neType)) {
            reader.FailAtValue(1, "in table ne_type");
        }
        rows.push_back(row);
    });
    return rows;
}

std::vector<DomainMemberRow> ReadDomainMembers(const SQLite::Database& database, const fs::path& file) {
    std::vector<DomainMemberRow> rows;
    ReadTable(database, file, DOMAIN_MEMBER_TABLE, [&](RowReader& reader) {
        const DomainMemberRow row{ReadCache(reader), reader.GetText(1), reader.GetNeType(2)};
        if (row.domain.empty()) {
            reader.FailAtValue(1, "the name of a domain");
        }
        if (!rows.empty() && rows.back() == row) {
            reader.FailAtRow("is there twice");
        }
        rows.push_back(row);
    });
    // The file orders the caches by name.
    std::ranges::stable_sort(rows, {}, &DomainMemberRow::cache);
    return rows;
}

// Writes rows by calling writeRow for each of them.
template <class Row, class WriteRow>
void WriteTable(const SQLite::Database& database, const fs::path& file, const Table& table,
                const std::vector<Row>& rows, WriteRow writeRow) {
    const Place place{file, table.name};
    At(place, [&] {
        RowWriter writer(database, place, table);
        for (const Row& row : rows) {
            writeRow(writer, row);
        }
    });
}

void WriteRows(const SQLite::Database& database, const fs::path& file, const Inventory& inventory) {
    WriteTable(database, file, NE_TYPE_TABLE, inventory.neTypes, [](RowWriter& writer, const NeTypeRow& row) {
        writer.CheckText(row.name, "name", row.neType);
        writer.Write(row.neType, row.name, row.ipService, row.klv);
    });
    WriteTable(database, file, NE_TABLE, inventory.nes, [](RowWriter& writer, const NeRow& row) {
        writer.Write(row.neId, row.neType, row.multiSubShelf, row.oamNumberOmitted);
    });
    WriteTable(database, file, DOMAIN_MEMBER_TABLE, inventory.domainMembers,
               [](RowWriter& writer, const DomainMemberRow& row) {
                   writer.CheckText(row.domain, "domain", row.neType);
                   writer.Write(std::string(NameOf(row.cache)), row.domain, row.neType);
               });
}

std::string Schema() {
    std::string schema;
    for (const Table& table : TABLES) {
        schema.append("CREATE TABLE ").append(table.name).append(" (\n    ");
        schema.append(OfColumns(table, table.columns.size(), [](const Column& column) {
            return std::string(column.name).append(" ").append(column.definition);
        }));
        schema.append("\n) ").append(table.options).append(";\n");
    }
    return schema;
}

// The bytes of an inventory file. They are made in memory, so that no journal is ever left beside the file: the next
// program that opens the file would apply it, even to another file that was copied there meanwhile.
class FileImage {
public:
    FileImage(const Inventory& inventory, const fs::path& file) {
        SQLite::Database database(":memory:", SQLite::OPEN_READWRITE);
        database.exec("PRAGMA foreign_keys = ON");
        SQLite::Transaction transaction(database);
        database.exec("PRAGMA application_id = " + std::to_string(APPLICATION_ID));
        database.exec("PRAGMA user_version = " + std::to_string(SCHEMA_VERSION));
        database.exec(Schema());
        WriteRows(database, file, inventory);
        transaction.commit();
        m_bytes = sqlite3_serialize(database.getHandle(), "main", &m_size, 0);
        if (m_bytes == nullptr) {
            throw std::bad_alloc();
        }
    }
    ~FileImage() { sqlite3_free(m_bytes); }
    FileImage(const FileImage&) = delete;
    FileImage& operator=(const FileImage&) = delete;

    [[nodiscard]] std::string_view View() const {
        return {reinterpret_cast<const char*>(m_bytes), static_cast<std::size_t>(m_size)};
    }

private:
    unsigned char* m_bytes = nullptr;
    sqlite3_int64 m_size = 0;
};

// Calls write, which works in the folder of `file`.
template <class Write>
void WriteFile(const fs::path& file, Write write) {
    try {
        write();
    } catch (const std::system_error& error) {
        const bool isFile = error.code() == std::errc::file_exists;
        Place{file}.Fail(isFile ? error.code().message()
                                : "cannot be written in its folder: " + error.code().message());
    }
}

// Whether the opened file was moved, deleted or replaced.
bool IsMoved(const SQLite::Database& database) {
    int isMoved = 0;
    sqlite3_file_control(database.getHandle(), "main", SQLITE_FCNTL_HAS_MOVED, &isMoved);
    return isMoved != 0;
}

// Calls action while no one else can write `file`. First switches off a write-ahead log, which others may have switched
// on: SQLite would apply it to the next file of that name.
template <class Action>
void WhileLocked(const fs::path& file, Action action) {
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::milliseconds{BUSY_TIMEOUT_MS};
    while (true) {
        SQLite::Database database = Open(file);
        if (sqlite3_db_readonly(database.getHandle(), "main") == 1) {
            Place{file}.Fail("cannot be changed: it is read-only");  // else it would be replaced all the same
        }
        if (HasWriteAheadLog(database)) {
            const bool isOff = database.tryExec("PRAGMA journal_mode = DELETE") == SQLITE_OK;
            if (!isOff && std::chrono::steady_clock::now() > giveUp) {
                Place{file}.Fail(database.getErrorMsg());
            }
            std::this_thread::sleep_for(std::chrono::milliseconds{isOff ? 0 : 10});
        } else {
            const SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
            if (!IsMoved(database) && !HasWriteAheadLog(database)) {
                return action(database);
            }
        }
    }
}

}  // namespace

std::string_view NameOf(DomainCache cache) noexcept {
    switch (cache) {
        case DomainCache::NE_TYPE_LIST:
            return "NE_TYPE_LIST";
        case DomainCache::EQUIPMENT_TYPE:
            return "EQUIPMENT_TYPE";
    }
    return "unknown";  // the table of domain members refuses it
}

std::optional<DomainCache> FindDomainCache(std::string_view name) noexcept {
    for (const DomainCache cache : DOMAIN_CACHES) {
        if (NameOf(cache) == name) {
            return cache;
        }
    }
    return std::nullopt;
}

void CreateInventory(const fs::path& file) {
    const InventoryFileUse use;
    At(Place{file}, [&] {
        const FileImage image({}, file);
        WriteFile(file, [&] { NewFile(file.parent_path(), image.View(), NewFile::Access::UMASK).Create(file); });
    });
}

Inventory ReadInventory(const fs::path& file) {
    const InventoryFileUse use;
    return At(Place{file}, [&] {
        SQLite::Database database = Open(file);
        // Reads one state of the file, even if others write meanwhile.
        const SQLite::Transaction transaction(database);
        CheckSchema(database, file);
        CheckSize(database, file);
        Inventory inventory;
        inventory.neTypes = ReadNeTypes(database, file);
        inventory.nes = ReadNes(database, file, inventory.neTypes);
        inventory.domainMembers = ReadDomainMembers(database, file);
        return inventory;
    });
}

void ReplaceInventory(const fs::path& file, const Inventory& inventory) {
    const InventoryFileUse use;
    At(Place{file}, [&] {
        const FileImage image(inventory, file);
        WhileLocked(file, [&](const SQLite::Database& database) {
            CheckSchema(database, file);
            const fs::path target = fs::canonical(file);  // a symbolic link stays a link
            WriteFile(file,
                      [&] { NewFile(target.parent_path(), image.View(), NewFile::Access::OWNER).Replace(target); });
        });
    });
}

}  // namespace NS_STANDALONE
