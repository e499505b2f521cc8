#pragma once

#include <string>
#include <vector>

namespace NS_KXDU {

/// A table for people: columns as wide as their widest cell, two blanks between them.
class TextTable {
public:
    enum class Align { LEFT, RIGHT };

    struct Column {
        std::string head;
        Align align = Align::LEFT;
    };

    explicit TextTable(std::vector<Column> columns) : m_columns(std::move(columns)) {}

    /// cells: one for each column, printable.
    void AddRow(std::vector<std::string> cells) { m_rows.push_back(std::move(cells)); }

    /// The head, a rule and the rows, each ended by LF.
    [[nodiscard]] std::string Text() const;

private:
    std::vector<Column> m_columns;
    std::vector<std::vector<std::string>> m_rows;
};

}  // namespace NS_KXDU
