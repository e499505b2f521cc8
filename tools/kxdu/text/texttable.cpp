#include "text/texttable.h"

#include <algorithm>

#include "text/displaytext.h"

namespace NS_KXDU {

namespace {

void AppendCell(std::string& line, const std::string& cell, std::size_t width, TextTable::Align align) {
    const std::string padding(width - DisplayWidth(cell), ' ');
    line += align == TextTable::Align::RIGHT ? padding + cell : cell + padding;
}

void AppendLine(std::string& text, std::string line) {
    line.erase(line.find_last_not_of(' ') + 1);
    text.append(line).append("\n");
}

}  // namespace

std::string TextTable::Text() const {
    std::vector<std::size_t> widths;
    for (std::size_t column = 0; column < m_columns.size(); ++column) {
        std::size_t width = DisplayWidth(m_columns[column].head);
        for (const auto& row : m_rows) {
            width = std::max(width, DisplayWidth(row[column]));
        }
        widths.push_back(width);
    }
    const auto joined = [&](const auto& cellOf) {
        std::string line;
        for (std::size_t column = 0; column < m_columns.size(); ++column) {
            line += column == 0 ? "" : "  ";
            AppendCell(line, cellOf(column), widths[column], m_columns[column].align);
        }
        return line;
    };
    std::string text;
    AppendLine(text, joined([&](std::size_t column) { return m_columns[column].head; }));
    AppendLine(text, joined([&](std::size_t column) { return std::string(widths[column], '-'); }));
    for (const auto& row : m_rows) {
        AppendLine(text, joined([&](std::size_t column) { return row[column]; }));
    }
    return text;
}

}  // namespace NS_KXDU
