/// Columns that a user chooses by their names: pieces of identifiers, fields of their records, and what they are.
#pragma once

#include <cstddef>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "catalogue/kinds.h"
#include "catalogue/pieces.h"
#include "formats/recordformat.h"
#include "text/textbuffer.h"

namespace NS_KX {

/// A column: a piece ("NE", "PP:2", "PORT:2"), a field of a record ("portId", "port.neId"), or the identifier itself,
/// its type or its kind ("fdn", "type", "kind").
struct Column {
    enum class Source { PIECE, FIELD, FDN, TYPE, KIND };

    std::string name;
    Source source;
    PieceName piece = {};  ///< of a column that is one

    /// None if nothing has this name.
    static std::optional<Column> Parse(std::string_view name);

    /// Whether only identifiers of some kind have such a column.
    [[nodiscard]] bool NeedsKind() const noexcept { return source != Source::PIECE && source != Source::FDN; }
};

/// The names that columns can have, tags first, without the places of sub-values.
std::vector<std::string> NamesOfColumns();

/// The line of column names, with its end; empty for JSON lines.
std::string MakeHeader(const std::vector<Column>& columns, OutputFormat format);

/// Writes chosen columns of identifiers, one identifier a line. Any number of threads may share one.
///
/// CSV and TSV: the values; a missing one is empty. JSONL: an object with a member for each column; numbers are
/// numbers, and a missing value is null. TABLE, for people: a missing value is "-".
class ColumnRow {
public:
    ColumnRow(std::vector<Column> columns, OutputFormat format);

    /// The columns that are pieces, in their order.
    [[nodiscard]] const PieceFinder& Pieces() const noexcept { return m_finder; }

    /// Appends the columns of `fdn`. `pieces` are those that `Pieces` finds in it. `kind` and `record`, which `kind`
    /// reads from it, may be null if no column needs a kind. Returns false and leaves `out` unchanged if the line would
    /// have more than `mostSize` bytes.
    bool AppendLine(std::string_view fdn, std::span<const std::string_view> pieces, const Kind* kind,
                    const void* record, TextBuffer& out,
                    std::size_t mostSize = std::numeric_limits<std::size_t>::max()) const;

private:
    using Fields = std::vector<const Field*>;

    void AppendPiece(const Column& column, std::string_view piece, TextBuffer& out) const;
    void AppendField(const Field* field, const void* record, TextBuffer& out) const;
    void AppendText(std::string_view text, TextBuffer& out) const;
    void AppendNone(TextBuffer& out) const;

    std::vector<Column> m_columns;
    OutputFormat m_format;
    std::vector<std::string> m_before;  // for each column, the text before its value
    PieceFinder m_finder;
    std::unordered_map<const Kind*, Fields> m_fields;  // for each kind, its fields among the columns; null: none
};

}  // namespace NS_KX
