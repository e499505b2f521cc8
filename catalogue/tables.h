/// The constant tables with their names and columns, for listings.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <variant>

namespace NS_KX {

/// A constant table: rows of one or two columns, in the order that the whole system shares. A column holds numbers or
/// texts. The rows live as long as the library. Any thread.
struct ConstantTable {
    using Cell = std::variant<std::int64_t, std::string_view>;

    std::string_view name;                    ///< "fb-type-levels"
    std::string_view about;                   ///< what its rows mean
    std::array<std::string_view, 2> columns;  ///< "fbType"; the second is empty if there is one column
    std::size_t (*countRows)();
    Cell (*cellAt)(std::size_t row, std::size_t column);  ///< both within the table

    [[nodiscard]] std::size_t CountColumns() const noexcept { return columns[1].empty() ? 1 : 2; }
};

/// All constant tables.
std::span<const ConstantTable> AllConstantTables();

/// The table of this name; null if there is none.
const ConstantTable* FindConstantTable(std::string_view name);

}  // namespace NS_KX
