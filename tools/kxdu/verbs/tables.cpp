#include "catalogue/tables.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "cli/listing.h"
#include "cli/verb.h"
#include "cli/verbs.h"
#include "lines/failure.h"
#include "text/quoting.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  kxdu tables
  kxdu tables client-rates
  kxdu tables fb-type-levels --format csv -o levels.csv

Without TABLE, lists the tables: name, number of rows, what they hold. With TABLE, prints all rows of that table, in the
order in which all programs of the system keep them.

Exit code: 0 done; 2 wrong arguments, or an unknown table; 3 the output cannot be written.)";

struct Options {
    ListingOptions listing;
    std::string table;
};

Listing::Cell CellOf(const ConstantTable::Cell& cell) {
    if (const auto* const text = std::get_if<std::string_view>(&cell)) {
        return std::string(*text);
    }
    return std::get<std::int64_t>(cell);
}

void ListRows(const ConstantTable& table, const ListingOptions& options) {
    const std::size_t columns = table.CountColumns();
    Listing listing({table.columns.begin(), table.columns.begin() + columns}, options);
    for (std::size_t row = 0; row < table.countRows(); ++row) {
        Listing::Row cells;
        for (std::size_t column = 0; column < columns; ++column) {
            cells.push_back(CellOf(table.cellAt(row, column)));
        }
        listing.AddRow(std::move(cells));
    }
    listing.Complete();
}

void ListTables(const ListingOptions& options) {
    Listing listing({"table", "rows", "about"}, options);
    for (const ConstantTable& table : AllConstantTables()) {
        listing.AddRow(
            {std::string(table.name), static_cast<std::int64_t>(table.countRows()), std::string(table.about)});
    }
    listing.Complete();
}

ExitCode Tables(const Options& options) {
    if (options.table.empty()) {
        ListTables(options.listing);
        return ExitCode::OK;
    }
    const ConstantTable* const table = FindConstantTable(options.table);
    if (table == nullptr) {
        throw Failure(Cause::INPUT, "unknown table " + Quoted(options.table) + "; for their names see kxdu tables");
    }
    ListRows(*table, options.listing);
    return ExitCode::OK;
}

}  // namespace

void AddTables(CLI::App& app, Action& action) {
    Verb verb(app, action, "tables", "Print the constant tables");
    const auto options = std::make_shared<Options>();
    verb.AddText("TABLE", "", options->table, "The table to print; without it, lists all tables");
    AddListingOptions(verb, options->listing);
    verb.SetAction(HELP, options, Tables);
}

}  // namespace NS_KX::NS_KXDU
