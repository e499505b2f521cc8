#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "cli/verbs.h"
#include "lines/bufferedoutput.h"

namespace NS_KX::NS_KXDU {

class ListingStyle;
class Verb;
struct ListingOptions;

/// Rows of values under named columns, for people or for programs. They are written as they are added, so that any
/// number of them takes little memory.
class Listing {
public:
    /// What stands where there is no value: `reason` for people; programs get an empty field or null.
    struct None {
        std::string reason = "-";
    };
    using Cell = std::variant<None, bool, std::int64_t, std::string>;
    using Row = std::vector<Cell>;

    /// TABLE and MARKDOWN say yes and no; CSV, quoted as in RFC 4180, and JSON lines say true and false.
    enum class Format { TABLE, CSV, JSONL, MARKDOWN };

    /// At most this many rows of TABLE and MARKDOWN wait, until they have shown how wide the columns are and which hold
    /// numbers.
    static constexpr std::size_t MEASURED_ROWS = 10'000;

    /// `preface`: text in front of the listing. Throws, like `AddRow` and `Complete`, as `Output` does.
    Listing(std::vector<std::string> columns, const ListingOptions& options, std::string_view preface = {});
    ~Listing();
    Listing(const Listing&) = delete;
    Listing& operator=(const Listing&) = delete;

    /// `row`: one cell for each column.
    void AddRow(Row row);

    /// Ends the listing, with `footer` after it. Without this call it is not complete.
    void Complete(std::string_view footer = {});
    /// Ends a listing of answers to what was asked, a row or more for each: `ExitCode::FOUND` when there is a silent
    /// one.
    ExitCode CompleteAnswers();

    /// Whether a row says nothing: after its first cell, which repeats the question, there is only no and none.
    static bool IsSilent(const Row& row);

private:
    void WriteMeasured();

    BufferedOutput m_output;
    std::unique_ptr<ListingStyle> m_style;
    bool m_isMeasuring;
    std::vector<Row> m_measured;  // while they are gathered
    bool m_hasSilentRow = false;
};

/// The cell of a value that may be missing.
Listing::Cell CellOf(std::optional<int> number);
Listing::Cell CellOf(std::optional<std::string> text);

/// How the user wants a listing.
struct ListingOptions {
    Listing::Format format = Listing::Format::TABLE;
    std::string output;  ///< empty: standard output
};

/// Adds `--format` and `--output` to `verb`.
void AddListingOptions(Verb& verb, ListingOptions& options);

}  // namespace NS_KX::NS_KXDU
