#include "bindings/sqlite/extension.h"

#include "bindings/sqlite/sqlite.h"

SQLITE_EXTENSION_INIT1

namespace NS_KX::NS_SQLITE {

namespace {

// The first SQLite of a process that loads the extension keeps it: all calls go through one pointer.
bool IsOurs(const sqlite3_api_routines* api) {
    static const sqlite3_api_routines* const ours = (sqlite3_api = api);
    return api == ours;
}

}  // namespace

}  // namespace NS_KX::NS_SQLITE

/// The entry that SQLite calls for each connection that loads the extension.
extern "C" [[gnu::visibility("default")]] int sqlite3_kxsqlite_init(sqlite3* connection, char** message,
                                                                    const sqlite3_api_routines* api) {
    using namespace NS_KX::NS_SQLITE;
    if (!IsOurs(api)) {
        *message = api->mprintf("kx_sqlite: another SQLite library of this process has loaded the extension before");
        return SQLITE_ERROR;
    }
    try {
        AddFunctions(connection);
        AddFileTable(connection);
        AddConstantTables(connection);
    } catch (const RegistrationFailure& failure) {
        return failure.Code();
    } catch (...) {
        return SQLITE_NOMEM;
    }
    return SQLITE_OK_LOAD_PERMANENTLY;
}
