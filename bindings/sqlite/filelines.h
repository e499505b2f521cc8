/// The lines of one file, one at a time.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "lines/blockreader.h"

namespace NS_KX::NS_SQLITE {

/// Whether a line can be an identifier.
enum class LineState {
    TEXT,      ///< it can
    NO_TEXT,   ///< it is empty, holds a NUL byte or is not UTF-8
    TOO_LONG,  ///< it is longer than `LONGEST_LINE`
};

/// Walks a file. A carriage return before a line end belongs to the line end.
class FileLines {
public:
    /// `isTextAsked`: whether the query asks for more than the number of lines; if not, each counts as TEXT.
    FileLines(const std::string& file, bool isTextAsked)
        // "-" is a file of that name, not the standard input of the program that runs SQLite.
        : m_reader({file == "-" ? "./-" : file}, BLOCK_SIZE), m_isTextAsked(isTextAsked) {}

    /// Goes to the next line, at first to the first one. False after the last. Throws as `BlockReader::Next` does.
    bool Next();

    /// The number of the line, from 1.
    [[nodiscard]] std::size_t Number() const noexcept { return m_number; }
    /// The line without its end, until `Next`. Empty if it is too long.
    [[nodiscard]] std::string_view Text() const noexcept { return m_line; }
    [[nodiscard]] LineState State() const noexcept { return m_state; }

private:
    // Larger blocks fall out of the processor's caches.
    static constexpr std::size_t BLOCK_SIZE = std::size_t{256} << 10U;

    [[nodiscard]] LineState StateOfLine();

    BlockReader m_reader;
    bool m_isTextAsked;
    InputBlock m_block;
    std::string_view m_rest;  // of the block
    std::size_t m_number = 0;
    std::string_view m_line;
    LineState m_state = LineState::TEXT;
};

}  // namespace NS_KX::NS_SQLITE
