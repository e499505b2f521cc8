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

/// Takes the fields of rows one by one, strictly. Lines end with LF or CRLF, the last one may lack its end. A quoted
/// field may hold delimiters, line ends and doubled quotes.
class CsvFields {
public:
    /// `text` must outlive the object. Its first row is read first.
    explicit CsvFields(std::string_view text, char delimiter = ',') noexcept : m_text(text), m_delimiter(delimiter) {}

    /// Takes the next field of the row; false after the last one, and if `Problem` says something. The field is a view
    /// of the text or of this object, until the next row.
    bool Next(std::string_view& field);
    /// Goes to the next row after the last field of a row; false if there is none.
    bool NextRow() noexcept;

    /// What is wrong: a quote in the middle of a field, a quoted field without its end, text after a closing quote, a
    /// lone CR, or a NUL byte. Empty if nothing is.
    [[nodiscard]] std::string_view Problem() const noexcept { return m_problem; }
    /// How many line ends were read.
    [[nodiscard]] std::size_t LineEnds() const noexcept { return m_lineEnds; }

private:
    bool TakePlain(std::string_view& field);
    bool TakeQuoted(std::string_view& field);
    std::string_view Unquoted(std::string_view field);
    bool StepOverEnd();
    bool Fail(std::string_view problem) noexcept;
    [[nodiscard]] bool IsAtEnd() const noexcept { return m_at == m_text.size(); }

    std::string_view m_text;
    char m_delimiter;
    std::size_t m_at = 0;
    std::size_t m_lineEnds = 0;
    bool m_isRowRead = false;
    std::string_view m_problem;
    std::string m_unquoted;
};

/// Reads whole rows by the same rules.
class CsvReader {
public:
    /// `text` must outlive the reader. Messages call it `name`, and count its lines from `firstLine`.
    CsvReader(std::string name, std::string_view text, std::size_t firstLine = 1)
        : m_name(std::move(name)), m_fields(text), m_firstLine(firstLine), m_rowLine(firstLine) {}

    /// Reads the next row into `row`; false after the last. Throws std::runtime_error as `Complain` does for what
    /// `CsvFields::Problem` says.
    bool Next(CsvRow& row);

    /// Throws std::runtime_error "name:line: reason" for the last row read.
    [[noreturn]] void Complain(std::string_view reason) const;

private:
    std::string m_name;
    CsvFields m_fields;
    std::size_t m_firstLine;
    std::size_t m_rowLine;  // where the row began
};

/// Appends `field` to `out`, quoted if necessary.
void AppendCsvField(std::string_view field, TextBuffer& out);

/// A row as a line, ended by LF.
std::string CsvLine(const CsvRow& row);

}  // namespace NS_KX
