/// Comma-separated values as RFC 4180 has them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "text/textbuffer.h"

namespace NS_KX {

using CsvRow = std::vector<std::string>;

/// Reads rows, strictly. Lines end with LF or CRLF, the last one may lack its end. A quoted field may hold commas, line
/// ends and doubled quotes.
class CsvReader {
public:
    /// `name` stands in messages for `text`, which must outlive the reader and begins at the line `firstLine`.
    CsvReader(std::string name, std::string_view text, std::size_t firstLine = 1)
        : m_name(std::move(name)), m_text(text), m_line(firstLine), m_rowLine(firstLine) {}

    /// Reads the next row into `row`; false behind the last. Throws std::runtime_error, its text as `Complain` makes
    /// it, at a quote in the middle of a field, a quoted field that does not end or goes on behind its quote, a lone
    /// CR, and a NUL byte.
    bool Next(CsvRow& row);

    /// Throws std::runtime_error "name:line: reason" for the row that was read last.
    [[noreturn]] void Complain(std::string_view reason) const;

private:
    std::string TakeField();
    std::string TakeQuotedField();
    bool EndRow();
    [[nodiscard]] bool IsAtEnd() const { return m_at == m_text.size(); }

    std::string m_name;
    std::string_view m_text;
    std::size_t m_at = 0;
    std::size_t m_line;     // at m_at
    std::size_t m_rowLine;  // where the row began
};

/// Appends `field` to `out`, quoted where it must be.
void AppendCsvField(std::string_view field, TextBuffer& out);

/// A row as a line, ended by LF.
std::string CsvLine(const CsvRow& row);

}  // namespace NS_KX
