#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formats/csv.h"
#include "formats/recordreader.h"

namespace NS_KX {

/// The character between the columns that `line` names: ",", a tab, or ";", which `RecordRow` does not read. None if
/// `line` is no line of column names.
std::optional<char> FindSeparator(std::string_view line);

/// Reads rows of CSV and TSV as `decode` writes them, each in a line of its own: the columns "fdn", "type" and fields
/// in any order. An empty cell is as good as none.
class RecordRow : public RecordReader {
public:
    /// `header`: the line of column names. `separator`: "," or a tab. Throws `BadRecord` for a column that no type has,
    /// or that is there twice, and if no column is called "type" and there is no usual kind.
    RecordRow(std::string_view header, char separator, const Kind* usual = nullptr);

    void Read(std::string_view line) override;

private:
    using Columns = std::vector<const Field*>;  // null: the kind has no such field

    [[nodiscard]] std::string_view CellOf(const std::optional<std::size_t>& column) const;
    void Split(std::string_view line);
    void SplitTsv(std::string_view line);
    void Fill();
    const Columns& ColumnsOf(const Kind& kind);

    char m_separator;
    std::vector<std::string> m_names;  // of the columns
    std::optional<std::size_t> m_fdnColumn;
    std::optional<std::size_t> m_typeColumn;
    std::vector<std::string_view> m_cells;
    CsvFields m_csv{{}};
    std::string m_room;  // for cells of TSV that are not written as they are
    std::map<const Kind*, Columns> m_columns;
};

}  // namespace NS_KX
