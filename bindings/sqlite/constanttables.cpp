#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "bindings/sqlite/extension.h"
#include "bindings/sqlite/virtualtable.h"
#include "catalogue/tables.h"

namespace NS_KX::NS_SQLITE {

namespace {

// The name in SQL: "fb_type_levels" for "fb-type-levels", "fb_type" for "fbType".
std::string SqlName(std::string_view name) {
    std::string words;
    for (const char character : name) {
        if (character >= 'A' && character <= 'Z') {
            words += '_';
            words += static_cast<char>(character - 'A' + 'a');
        } else {
            words += character == '-' ? '_' : character;
        }
    }
    return words;
}

bool HasNumbers(const ConstantTable& table, std::size_t column) {
    return std::holds_alternative<std::int64_t>(table.cellAt(0, column));
}

struct Table : sqlite3_vtab {
    static constexpr int RISK = SQLITE_VTAB_INNOCUOUS;
    static constexpr int ALL_ROWS = -1;

    explicit Table(const void* given) : sqlite3_vtab{}, rows(*static_cast<const ConstantTable*>(given)) {}

    [[nodiscard]] std::string Declare() const {
        std::string text = "CREATE TABLE constants(";
        for (std::size_t column = 0; column < rows.CountColumns(); ++column) {
            text.append(column == 0 ? "" : ", ").append(SqlName(rows.columns.at(column)));
            text.append(HasNumbers(rows, column) ? " INTEGER" : " TEXT");
        }
        return text + ")";
    }

    // The plan is a number column whose value is given: a join then gets only the rows that match.
    int Plan(sqlite3_index_info& info) const {
        info.idxNum = ALL_ROWS;
        info.estimatedRows = static_cast<sqlite3_int64>(rows.countRows());
        info.estimatedCost = static_cast<double>(rows.countRows());
        for (int place = 0; place < info.nConstraint; ++place) {
            const auto& constraint = info.aConstraint[place];
            if (constraint.usable != 0 && constraint.op == SQLITE_INDEX_CONSTRAINT_EQ && constraint.iColumn >= 0 &&
                HasNumbers(rows, static_cast<std::size_t>(constraint.iColumn))) {
                info.idxNum = constraint.iColumn;
                info.aConstraintUsage[place].argvIndex = 1;
                info.estimatedRows = 1;
                info.estimatedCost = 1;
                break;
            }
        }
        return SQLITE_OK;
    }

    const ConstantTable& rows;
};

class Cursor : public sqlite3_vtab_cursor {
public:
    explicit Cursor(const Table& table) : sqlite3_vtab_cursor{}, m_rows(table.rows) {}

    // Filters only by integers; SQLite compares again by its own rules.
    void Begin(int plan, std::span<sqlite3_value* const> arguments) {
        m_key.reset();
        if (plan != Table::ALL_ROWS && sqlite3_value_type(arguments[0]) == SQLITE_INTEGER) {
            m_keyColumn = static_cast<std::size_t>(plan);
            m_key = sqlite3_value_int64(arguments[0]);
        }
        m_row = 0;
        SkipOthers();
    }

    void Next() {
        ++m_row;
        SkipOthers();
    }

    [[nodiscard]] bool IsAtEnd() const { return m_row >= m_rows.countRows(); }

    [[nodiscard]] sqlite3_int64 RowId() const { return static_cast<sqlite3_int64>(m_row) + 1; }

    void Give(int column, sqlite3_context* context) const {
        const ConstantTable::Cell cell = m_rows.cellAt(m_row, static_cast<std::size_t>(column));
        if (const auto* const text = std::get_if<std::string_view>(&cell)) {
            GiveConstantText(context, *text);
        } else {
            sqlite3_result_int64(context, std::get<std::int64_t>(cell));
        }
    }

private:
    void SkipOthers() {
        while (m_key && !IsAtEnd() && std::get<std::int64_t>(m_rows.cellAt(m_row, m_keyColumn)) != *m_key) {
            ++m_row;
        }
    }

    const ConstantTable& m_rows;
    std::size_t m_row = 0;
    std::size_t m_keyColumn = 0;
    std::optional<std::int64_t> m_key;
};

}  // namespace

void AddConstantTables(sqlite3* connection) {
    for (const ConstantTable& table : AllConstantTables()) {
        ReadOnlyModule<Table, Cursor>::Add(connection, SqlName(table.name), &table);
    }
}

}  // namespace NS_KX::NS_SQLITE
