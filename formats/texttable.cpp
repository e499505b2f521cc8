#include "formats/texttable.h"

#include <algorithm>
#include <utility>

#include "text/displaytext.h"

namespace NS_KX {

namespace {

void AppendCell(std::string& line, const std::string& cell, const TextTable::Column& column) {
    const std::size_t width = DisplayWidth(cell);
    const std::string padding(std::max(column.width, width) - width, ' ');
    line += column.align == TextTable::Align::RIGHT ? padding + cell : cell + padding;
}

}  // namespace

TextTable::TextTable(std::vector<Column> columns) : m_columns(std::move(columns)) {
    for (Column& column : m_columns) {
        column.width = std::max(column.width, DisplayWidth(column.head));
    }
}

void TextTable::Measure(const std::vector<std::string>& cells) {
    for (std::size_t place = 0; place < m_columns.size(); ++place) {
        std::size_t& width = m_columns[place].width;
        width = std::max(width, DisplayWidth(cells[place]));
    }
}

std::string TextTable::Head() const {
    std::vector<std::string> heads;
    std::vector<std::string> rules;
    for (const Column& column : m_columns) {
        heads.push_back(column.head);
        rules.emplace_back(column.width, '-');
    }
    return Line(heads) + Line(rules);
}

std::string TextTable::Line(const std::vector<std::string>& cells) const {
    std::string line;
    for (std::size_t place = 0; place < m_columns.size(); ++place) {
        line += place == 0 ? "" : "  ";
        AppendCell(line, cells[place], m_columns[place]);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line.append("\n");
}

}  // namespace NS_KX
