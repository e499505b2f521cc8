/// Lines of inputs, one identifier or record each.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace NS_KX {

/// The greatest size of a line in bytes. A longer line is rejected and never held in memory.
inline constexpr std::size_t LONGEST_LINE = std::size_t{1} << 20U;
/// What is wrong with a longer line.
inline constexpr const char* LINE_TOO_LONG = "the line is longer than 1 MiB";

/// Removes the first line of `text`, and returns it without its line feed. A carriage return before that stays.
constexpr std::string_view TakeVerbatimLine(std::string_view& text) noexcept {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return line;
}

/// Removes the first line of `text`, and returns it without its end: a line feed, or a carriage return and a line feed.
constexpr std::string_view TakeLine(std::string_view& text) noexcept {
    const std::size_t sizeBefore = text.size();
    std::string_view line = TakeVerbatimLine(text);
    if (line.size() != sizeBefore && line.ends_with('\r')) {
        line.remove_suffix(1);
    }
    return line;
}

/// Why a line can be neither an identifier nor a record.
struct LineFlaw {
    std::size_t column;  ///< from 1; 0: the whole line
    const char* reason;
};

/// The flaw of a line that is empty, holds a NUL byte, or is not UTF-8; none for any other line. UTF-8 is not asked for
/// if `mayBeBinary`.
std::optional<LineFlaw> FindFlaw(std::string_view line, bool mayBeBinary = false);

}  // namespace NS_KX
