/// What a terminal can show.
#pragma once

#include <cstddef>
#include <string_view>

namespace NS_KX {

/// The value of an environment variable; empty if it is not set.
std::string_view FromEnvironment(const char* variable);

/// Whether `descriptor` is a terminal that obeys control sequences: not one with TERM=dumb.
bool IsCapableTerminal(int descriptor);

/// The width in columns: of COLUMNS, else of the terminal. Returns `otherwise` if neither gives one.
std::size_t ColumnsOf(int descriptor, std::size_t otherwise);

/// Whether the characters of the user's locale (LC_ALL, LC_CTYPE, LANG) are UTF-8.
bool IsUtf8Locale();

}  // namespace NS_KX
