/// Virtual tables: the callbacks that SQLite needs, written once.
#pragma once

#include <memory>
#include <span>
#include <string>

#include "bindings/sqlite/sqlite.h"

namespace NS_KX::NS_SQLITE {

/// Makes the module of a read-only table that every connection has under the module's name, and under no other.
///
/// `Table` derives from sqlite3_vtab and is made from what is given to the module. It has
///   - `RISK`: SQLITE_VTAB_INNOCUOUS or SQLITE_VTAB_DIRECTONLY
///   - `std::string Declare() const`: the statement that creates such a table
///   - `int Plan(sqlite3_index_info&)`, which is xBestIndex
/// `Cursor` derives from sqlite3_vtab_cursor and is made for a `Table`. It has
///   - `void Begin(int plan, std::span<sqlite3_value* const> arguments)`, which is xFilter, and `void Next()`
///   - `bool IsAtEnd() const`, `sqlite3_int64 RowId() const`
///   - `void Give(int column, sqlite3_context*)`; what is not given is NULL
/// The text of an exception is SQLite's message.
template <class Table, class Cursor>
class ReadOnlyModule {
public:
    /// Adds it to a connection. `given` outlives the connection. Throws `RegistrationFailure`.
    static void Add(sqlite3* connection, const std::string& name, const void* given = nullptr) {
        RequireOk(sqlite3_create_module_v2(connection, name.c_str(), &MODULE, AsUserData(given), nullptr));
    }

private:
    static int Connect(sqlite3* connection, void* given, int /*count*/, const char* const* /*arguments*/,
                       sqlite3_vtab** made, char** message) noexcept {
        try {
            auto table = std::make_unique<Table>(given);
            RequireOk(sqlite3_declare_vtab(connection, table->Declare().c_str()));
            RequireOk(sqlite3_vtab_config(connection, Table::RISK));
            *made = table.release();
            return SQLITE_OK;
        } catch (const RegistrationFailure& failure) {
            *message = sqlite3_mprintf("%s", sqlite3_errmsg(connection));
            return failure.Code();
        } catch (...) {
            return SQLITE_NOMEM;
        }
    }

    static int Disconnect(sqlite3_vtab* table) noexcept {
        delete static_cast<Table*>(table);
        return SQLITE_OK;
    }

    static int BestIndex(sqlite3_vtab* table, sqlite3_index_info* info) noexcept {
        return WorkFor(*table, [&] { return static_cast<Table*>(table)->Plan(*info); });
    }

    static int Open(sqlite3_vtab* table, sqlite3_vtab_cursor** opened) noexcept {
        return WorkFor(*table, [&] {
            // NOLINTNEXTLINE(bugprone-unhandled-exception-at-new): `WorkFor` catches it
            *opened = new Cursor(*static_cast<const Table*>(table));
            return SQLITE_OK;
        });
    }

    static int Close(sqlite3_vtab_cursor* cursor) noexcept {
        delete static_cast<Cursor*>(cursor);
        return SQLITE_OK;
    }

    static int Filter(sqlite3_vtab_cursor* cursor, int plan, const char* /*text*/, int count,
                      sqlite3_value** arguments) noexcept {
        return WorkFor(*cursor->pVtab, [&] {
            static_cast<Cursor*>(cursor)->Begin(plan, {arguments, static_cast<std::size_t>(count)});
            return SQLITE_OK;
        });
    }

    static int Next(sqlite3_vtab_cursor* cursor) noexcept {
        return WorkFor(*cursor->pVtab, [&] {
            static_cast<Cursor*>(cursor)->Next();
            return SQLITE_OK;
        });
    }

    static int IsAtEnd(sqlite3_vtab_cursor* cursor) noexcept {
        return static_cast<const Cursor*>(cursor)->IsAtEnd() ? 1 : 0;
    }

    static int Give(sqlite3_vtab_cursor* cursor, sqlite3_context* context, int column) noexcept {
        Answer(context, [&] { static_cast<Cursor*>(cursor)->Give(column, context); });
        return SQLITE_OK;
    }

    static int RowId(sqlite3_vtab_cursor* cursor, sqlite3_int64* rowId) noexcept {
        *rowId = static_cast<const Cursor*>(cursor)->RowId();
        return SQLITE_OK;
    }

    // Without xCreate it has no other name; without xUpdate it is read-only.
    static constexpr sqlite3_module MakeModule() {
        sqlite3_module module{};
        module.xConnect = Connect;
        module.xBestIndex = BestIndex;
        module.xDisconnect = Disconnect;
        module.xOpen = Open;
        module.xClose = Close;
        module.xFilter = Filter;
        module.xNext = Next;
        module.xEof = IsAtEnd;
        module.xColumn = Give;
        module.xRowid = RowId;
        return module;
    }

    static constexpr sqlite3_module MODULE = MakeModule();
};

}  // namespace NS_KX::NS_SQLITE
