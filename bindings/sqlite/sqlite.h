/// SQLite's interface, as the program that loads the extension provides it, and how answers reach it.
#pragma once

#include <cstdint>
#include <exception>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include <sqlite3ext.h>

SQLITE_EXTENSION_INIT3

namespace NS_KX::NS_SQLITE {

/// Ends the registration of something in a connection: SQLite refused it with this code.
class RegistrationFailure : public std::exception {
public:
    explicit RegistrationFailure(int code) : m_code(code) {}

    [[nodiscard]] int Code() const noexcept { return m_code; }

private:
    int m_code;
};

/// Throws `RegistrationFailure` unless `code` is SQLITE_OK.
inline void RequireOk(int code) {
    if (code != SQLITE_OK) {
        throw RegistrationFailure(code);
    }
}

/// `data` as SQLite takes it; SQLite hands it back unchanged.
inline void* AsUserData(const void* data) noexcept {
    return const_cast<void*>(data);  // NOLINT(cppcoreguidelines-pro-type-const-cast): SQLite's interface has no const
}

/// A value as text, until it is asked for in another form. Throws std::bad_alloc.
inline std::string_view TextOf(sqlite3_value* value) {
    const auto* const text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    if (text == nullptr) {
        throw std::bad_alloc();
    }
    return {text, static_cast<std::size_t>(sqlite3_value_bytes(value))};
}

/// Gives a text, which SQLite copies.
inline void GiveText(sqlite3_context* context, std::string_view text) noexcept {
    sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

/// Gives a text that lives as long as the process.
inline void GiveConstantText(sqlite3_context* context, std::string_view text) noexcept {
    sqlite3_result_text64(context, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8);
}

/// Gives a number, or NULL if there is none.
inline void GiveNumber(sqlite3_context* context, std::optional<std::int32_t> number) noexcept {
    if (number) {
        sqlite3_result_int(context, *number);
    } else {
        sqlite3_result_null(context);
    }
}

/// Does `work`, which gives an answer. No exception leaves it: SQLite is C.
template <class Work>
void Answer(sqlite3_context* context, Work work) noexcept {
    try {
        work();
    } catch (const std::bad_alloc&) {
        sqlite3_result_error_nomem(context);
    } catch (const std::exception& failure) {
        sqlite3_result_error(context, failure.what(), -1);
    }
}

/// Does `work` for a table, and returns the code of SQLite that it returns. An exception becomes the table's message.
template <class Work>
int WorkFor(sqlite3_vtab& table, Work work) noexcept {
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return SQLITE_NOMEM;
    } catch (const std::exception& failure) {
        sqlite3_free(table.zErrMsg);
        table.zErrMsg = sqlite3_mprintf("%s", failure.what());
        return SQLITE_ERROR;
    }
}

}  // namespace NS_KX::NS_SQLITE
