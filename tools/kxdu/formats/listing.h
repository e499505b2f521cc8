#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "exitcode.h"

namespace NS_KXDU {

class Verb;

/// Rows of values under named columns, for people or for programs.
class Listing {
public:
    /// What stands where there is no value: reason for people; programs get an empty field or null.
    struct None {
        std::string reason = "-";
    };
    using Cell = std::variant<None, bool, std::int64_t, std::string>;
    using Row = std::vector<Cell>;

    /// TABLE and MARKDOWN say yes and no; CSV, quoted as in RFC 4180, and JSON lines say true and false.
    enum class Format { TABLE, CSV, JSONL, MARKDOWN };

    explicit Listing(std::vector<std::string> columns) : m_columns(std::move(columns)) {}

    /// row: one cell for each column.
    void AddRow(Row row) { m_rows.push_back(std::move(row)); }

    /// A row for each column and a column for each row, for rows that are too wide to be read.
    [[nodiscard]] Listing Turned() const;

    /// Whether some row says nothing: behind its first cell, which tells what was asked, there is only no and none.
    [[nodiscard]] bool HasSilentRow() const;

    /// All lines, each with its end. Empty for JSON lines without a row.
    [[nodiscard]] std::string Text(Format format) const;

private:
    [[nodiscard]] bool IsNumeric(std::size_t column) const;
    [[nodiscard]] std::string TableText() const;
    [[nodiscard]] std::string CsvText() const;
    [[nodiscard]] std::string JsonText() const;
    [[nodiscard]] std::string MarkdownText() const;

    std::vector<std::string> m_columns;
    std::vector<Row> m_rows;
};

/// How the user wants a listing.
struct ListingOptions {
    Listing::Format format = Listing::Format::TABLE;
    std::string output;  ///< empty: standard output
};

/// Adds `--format` and `--output` to verb.
void AddListingOptions(Verb& verb, ListingOptions& options);

/// Throws as `Output` does.
void Print(const Listing& listing, const ListingOptions& options);
/// Prints the answers to what was asked, a row or more for each. `ExitCode::FOUND` when there is a silent one. Throws
/// as above.
ExitCode PrintAnswers(const Listing& listing, const ListingOptions& options);

}  // namespace NS_KXDU
