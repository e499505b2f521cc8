#include "formats/csv.h"

#include <algorithm>
#include <stdexcept>

namespace NS_KX {

bool CsvReader::Next(CsvRow& row) {
    row.clear();
    if (IsAtEnd()) {
        return false;
    }
    m_rowLine = m_line;
    do {
        row.push_back(TakeField());
    } while (!EndRow());
    return true;
}

void CsvReader::Complain(std::string_view reason) const {
    throw std::runtime_error(m_name + ":" + std::to_string(m_rowLine) + ": " + std::string(reason));
}

std::string CsvReader::TakeField() {
    if (!IsAtEnd() && m_text[m_at] == '"') {
        return TakeQuotedField();
    }
    const std::size_t begin = m_at;
    m_at = std::min(m_text.find_first_of(std::string_view(",\r\n\"\0", 5), begin), m_text.size());
    if (!IsAtEnd() && m_text[m_at] == '"') {
        Complain("a quote in the middle of a field; quote the whole field and double the quotes in it");
    }
    if (!IsAtEnd() && m_text[m_at] == '\0') {
        Complain("a NUL byte");
    }
    return std::string(m_text.substr(begin, m_at - begin));
}

std::string CsvReader::TakeQuotedField() {
    std::string field;
    for (++m_at; !IsAtEnd(); ++m_at) {
        const char character = m_text[m_at];
        if (character == '"') {
            ++m_at;
            if (IsAtEnd() || m_text[m_at] != '"') {
                return field;
            }
        } else if (character == '\n') {
            ++m_line;
        } else if (character == '\0') {
            Complain("a NUL byte");
        }
        field.push_back(character);
    }
    Complain("a quoted field that does not end");
}

// Steps over what follows a field; true when it ends the row.
bool CsvReader::EndRow() {
    if (IsAtEnd()) {
        return true;
    }
    if (m_text[m_at] == ',') {
        ++m_at;
        return false;
    }
    if (m_text.substr(m_at, 2) == "\r\n") {
        ++m_at;
    } else if (m_text[m_at] == '\r') {
        Complain("a carriage return without a line feed");
    } else if (m_text[m_at] != '\n') {
        Complain("text after a quoted field");
    }
    ++m_at;
    ++m_line;
    return true;
}

void AppendCsvField(std::string_view field, TextBuffer& out) {
    if (field.find_first_of(",\"\r\n") == std::string_view::npos) {
        Append(out, field);
        return;
    }
    out.Put('"');
    for (const char character : field) {
        out.Put(character);
        if (character == '"') {
            out.Put(character);
        }
    }
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
