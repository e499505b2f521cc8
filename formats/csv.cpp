#include "formats/csv.h"

#include <algorithm>
#include <stdexcept>

namespace NS_KX {

bool CsvFields::Next(std::string_view& field) {
    if (m_isRowRead) {
        return false;
    }
    const bool isQuoted = !IsAtEnd() && m_text[m_at] == '"';
    return (isQuoted ? TakeQuoted(field) : TakePlain(field)) && StepOverEnd();
}

bool CsvFields::NextRow() noexcept {
    m_unquoted.clear();
    m_isRowRead = IsAtEnd();
    return !m_isRowRead;
}

bool CsvFields::TakePlain(std::string_view& field) {
    const std::size_t begin = m_at;
    const auto isPlain = [this](char character) {
        return character != m_delimiter && character != '\r' && character != '\n' && character != '"' &&
               character != '\0';
    };
    while (!IsAtEnd() && isPlain(m_text[m_at])) {
        ++m_at;
    }
    field = m_text.substr(begin, m_at - begin);
    if (!IsAtEnd() && m_text[m_at] == '"') {
        return Fail("a quote in the middle of a field; quote the whole field and double the quotes in it");
    }
    return true;
}

bool CsvFields::TakeQuoted(std::string_view& field) {
    const std::size_t begin = ++m_at;
    bool hasQuotes = false;
    for (; !IsAtEnd(); ++m_at) {
        const char character = m_text[m_at];
        if (character == '\0') {
            return Fail("a NUL byte");
        }
        m_lineEnds += character == '\n' ? 1 : 0;
        if (character != '"') {
            continue;
        }
        if (m_text.substr(m_at + 1, 1) != "\"") {
            field = m_text.substr(begin, m_at - begin);
            ++m_at;
            field = hasQuotes ? Unquoted(field) : field;
            return true;
        }
        hasQuotes = true;
        ++m_at;
    }
    return Fail("a quoted field that does not end");
}

// Takes one of each two quotes out.
std::string_view CsvFields::Unquoted(std::string_view field) {
    m_unquoted.reserve(m_text.size());  // or views of it would not stay valid
    const std::size_t begin = m_unquoted.size();
    for (std::size_t at = 0; at < field.size(); ++at) {
        m_unquoted.push_back(field[at]);
        at += field[at] == '"' ? 1 : 0;
    }
    return std::string_view(m_unquoted).substr(begin);
}

// Steps over what follows a field, and notes if it ends the row.
bool CsvFields::StepOverEnd() {
    if (!IsAtEnd() && m_text[m_at] == m_delimiter) {
        ++m_at;
        return true;
    }
    m_isRowRead = true;
    if (IsAtEnd()) {
        return true;
    }
    if (m_text[m_at] == '\0') {
        return Fail("a NUL byte");
    }
    if (m_text.substr(m_at, 2) == "\r\n") {
        ++m_at;
    } else if (m_text[m_at] == '\r') {
        return Fail("a carriage return without a line feed");
    } else if (m_text[m_at] != '\n') {
        return Fail("text after a quoted field");
    }
    ++m_at;
    ++m_lineEnds;
    return true;
}

bool CsvFields::Fail(std::string_view problem) noexcept {
    m_problem = problem;
    m_isRowRead = true;
    return false;
}

bool CsvReader::Next(CsvRow& row) {
    row.clear();
    if (!m_fields.NextRow()) {
        return false;
    }
    m_rowLine = m_firstLine + m_fields.LineEnds();
    for (std::string_view field; m_fields.Next(field);) {
        row.emplace_back(field);
    }
    if (!m_fields.Problem().empty()) {
        Complain(m_fields.Problem());
    }
    return true;
}

void CsvReader::Complain(std::string_view reason) const {
    throw std::runtime_error(m_name + ":" + std::to_string(m_rowLine) + ": " + std::string(reason));
}

void AppendCsvField(std::string_view field, TextBuffer& out) {
    const auto needsQuotes = [](char character) {
        return character == ',' || character == '"' || character == '\r' || character == '\n';
    };
    if (std::none_of(field.begin(), field.end(), needsQuotes)) {
        Append(out, field);
        return;
    }
    out.Put('"');
    for (auto quote = field.find('"'); quote != std::string_view::npos; quote = field.find('"')) {
        Append(out, field.substr(0, quote + 1));
        out.Put('"');
        field.remove_prefix(quote + 1);
    }
    Append(out, field);
    out.Put('"');
}

std::string CsvLine(const CsvRow& row) {
    TextBuffer line;
    for (const std::string& field : row) {
        Append(line, &field == &row.front() ? "" : ",");
        AppendCsvField(field, line);
    }
    line.Put('\n');
    return std::string(line.View());
}

}  // namespace NS_KX
