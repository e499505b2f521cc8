#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace NS_KX {

/// A table for people, line by line. Each column is as wide as its widest measured cell; two blanks separate columns.
class TextTable {
public:
    enum class Align { LEFT, RIGHT };

    struct Column {
        std::string head;
        Align align = Align::LEFT;
        std::size_t width = 0;  ///< the least width; the head always has room
    };

    explicit TextTable(std::vector<Column> columns);

    /// Makes room for a row. `cells`: one for each column, printable.
    void Measure(const std::vector<std::string>& cells);

    /// From now on, wraps the last column so that no line is wider than `width`, but for a longer word. Returns false,
    /// and wraps nothing, if that is not possible: the other columns leave too little room, or the last one holds
    /// numbers.
    bool WrapInto(std::size_t width);

    /// The head and a rule, two lines ended by LF.
    [[nodiscard]] std::string Head() const;
    /// A row, ended by LF; several lines if its last cell is wrapped. A cell that is too wide pushes the following ones
    /// to the right.
    [[nodiscard]] std::string Line(const std::vector<std::string>& cells) const;

private:
    std::vector<Column> m_columns;
    std::size_t m_wrappedInto = 0;  // 0: nothing is wrapped
};

}  // namespace NS_KX
