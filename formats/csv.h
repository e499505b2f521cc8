/// Comma-separated values as in RFC 4180.
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
    /// `text` must outlive the reader. Messages call it `name`, and count its lines from `firstLine`.
    CsvReader(std::string name, std::string_view text, std::size_t firstLine = 1)
        : m_name(std::move(name)), m_text(text), m_line(firstLine), m_rowLine(firstLine) {}

    /// Reads the next row into `row`; false after the last. Throws std::runtime_error as `Complain` does for a quote in
    /// the middle of a field, a quoted field without its end, text after a closing quote, a lone CR, or a NUL byte.
    bool Next(CsvRow& row);

    /// Throws std::runtime_error "name:line: reason" for the last row read.
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

/// Appends `field` to `out`, quoted if necessary.
void AppendCsvField(std::string_view field, TextBuffer& out);

/// A row as a line, ended by LF.
std::string CsvLine(const CsvRow& row);

}  // namespace NS_KX
