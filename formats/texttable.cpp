#include "formats/texttable.h"

#include <algorithm>
#include <utility>

#include "text/displaytext.h"

namespace NS_KX {

namespace {

constexpr std::size_t GAP = 2;  // between two columns

void AppendCell(std::string& line, const std::string& cell, const TextTable::Column& column) {
    const std::size_t width = DisplayWidth(cell);
    const std::string padding(std::max(column.width, width) - width, ' ');
    line += column.align == TextTable::Align::RIGHT ? padding + cell : cell + padding;
}

// `cell` after `head`, wrapped at its blanks.
std::string WrappedAfter(const std::string& head, const std::string& cell, std::size_t width) {
    const std::size_t column = DisplayWidth(head);
    std::string lines = head;
    std::size_t end = column;  // of the last line
    for (std::size_t begin = 0; begin < cell.size();) {
        const std::size_t wordEnd = std::min(cell.find(' ', begin), cell.size());
        const std::string word = cell.substr(begin, wordEnd - begin);
        const std::size_t wordWidth = DisplayWidth(word);
        if (end == column) {
            end += wordWidth;
        } else if (end + 1 + wordWidth <= width) {
            lines += ' ';
            end += 1 + wordWidth;
        } else {
            lines.append("\n").append(column, ' ');
            end = column + wordWidth;
        }
        lines += word;
        begin = wordEnd + 1;
    }
    return lines.append("\n");
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

bool TextTable::WrapInto(std::size_t width) {
    constexpr std::size_t LEAST_ROOM = 20;
    Column& last = m_columns.back();
    std::size_t indent = 0;
    for (std::size_t place = 0; place + 1 < m_columns.size(); ++place) {
        indent += m_columns[place].width + GAP;
    }
    if (indent + last.width <= width) {
        return true;
    }
    if (last.align == Align::RIGHT || indent + LEAST_ROOM > width || indent + DisplayWidth(last.head) > width) {
        return false;
    }
    last.width = width - indent;
    m_wrappedInto = width;
    return true;
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
        line.append(place == 0 ? 0 : GAP, ' ');
        if (place + 1 == m_columns.size() && m_wrappedInto != 0 &&
            DisplayWidth(cells[place]) > m_columns[place].width) {
            return WrappedAfter(line, cells[place], m_wrappedInto);
        }
        AppendCell(line, cells[place], m_columns[place]);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line.append("\n");
}

}  // namespace NS_KX
