/// What a connection gets when it loads the extension. Each throws `RegistrationFailure`.
#pragma once

struct sqlite3;

namespace NS_KX::NS_SQLITE {

/// The scalar functions, fdn_type to fb_level.
void AddFunctions(sqlite3* connection);

/// The table-valued function fdn_file.
void AddFileTable(sqlite3* connection);

/// A table for each constant table of the vocabulary.
void AddConstantTables(sqlite3* connection);

}  // namespace NS_KX::NS_SQLITE
