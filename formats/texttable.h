#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace NS_KX {

/// A table for people, line by line: columns as wide as their widest cell that was measured, two blanks between them.
class TextTable {
public:
    enum class Align { LEFT, RIGHT };

    struct Column {
        std::string head;
        Align align = Align::LEFT;
        std::size_t width = 0;  ///< the least; there is room for the head in any case
    };

    explicit TextTable(std::vector<Column> columns);

    /// Makes room for a row. `cells`: one for each column, printable.
    void Measure(const std::vector<std::string>& cells);

    /// The head and a rule, two lines ended by LF.
    [[nodiscard]] std::string Head() const;
    /// A row, ended by LF. A cell for which there is no room pushes the others to the right.
    [[nodiscard]] std::string Line(const std::vector<std::string>& cells) const;

private:
    std::vector<Column> m_columns;
};

}  // namespace NS_KX
