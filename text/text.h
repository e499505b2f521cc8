#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace NS_KX {

/// Some programs write it at the beginning of a UTF-8 file. It belongs to the file, not to its text.
inline constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";

inline std::string_view WithoutByteOrderMark(std::string_view text) noexcept {
    return text.substr(text.starts_with(BYTE_ORDER_MARK) ? BYTE_ORDER_MARK.size() : 0);
}

/// Whether `text` holds nothing but ASCII.
bool IsAscii(std::string_view text) noexcept;

/// The position of the first byte sequence that is not UTF-8; `text.size()` if there is none.
std::size_t FindInvalidUtf8(std::string_view text);

/// Whether `text` is UTF-8.
inline bool IsUtf8(std::string_view text) {
    return FindInvalidUtf8(text) == text.size();
}

/// Why a line can be neither an identifier nor a record.
struct Flaw {
    std::size_t column;  ///< from 1; 0: the whole line
    const char* reason;
};

/// The flaw of a line that is empty, holds a NUL byte, or is not UTF-8; none for any other line. UTF-8 is not asked for
/// if `mayBeBinary`.
std::optional<Flaw> FindFlaw(std::string_view line, bool mayBeBinary = false);

/// Appends `text` in double quotes to a message. Cuts it if it has more than `longest` bytes, and replaces characters
/// that would steer a terminal.
void AppendQuoted(std::string& message, std::string_view text, std::size_t longest = 60);
/// The same by itself.
inline std::string Quoted(std::string_view text, std::size_t longest = 60) {
    std::string quoted;
    AppendQuoted(quoted, text, longest);
    return quoted;
}
/// The same for a text that must not be cut.
inline std::string QuotedWhole(std::string_view text) {
    return Quoted(text, std::string_view::npos);
}

/// `number` in groups of three digits: 1,234,567.
std::string Grouped(std::uint64_t number);

/// The greatest width of a line of help, in columns.
inline constexpr std::size_t HELP_WIDTH = 120;

/// Puts the words on lines of at most `width` columns, separated by blanks. The first line begins with `head`, the
/// others with as many blanks. The last line has no line end.
std::string Wrapped(const std::string& head, const std::vector<std::string>& words, std::size_t width = HELP_WIDTH);

}  // namespace NS_KX
