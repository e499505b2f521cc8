#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace NS_STANDALONE {

/// A place in a text: lines, and characters in UTF-8 of a line, count from 1.
struct TextPlace {
    std::size_t line = 1;
    std::size_t column = 1;
};

/// The deepest nesting that a configuration file may have. A level is each part of a table's header and of a key, each
/// array and each inline table; levels within one another add up.
inline constexpr std::size_t MAX_TOML_DEPTH = 100;

/// Returns the place of the first level of `text` (TOML) past `MAX_TOML_DEPTH`, or nothing. Call it before the parser:
/// the parser and the destructor of its tables call themselves for each level. For text that is not TOML, the answer is
/// nothing only if the parser finds the error before it nests too deep. Throws std::bad_alloc.
std::optional<TextPlace> FindTooDeep(std::string_view text);

}  // namespace NS_STANDALONE
