#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <kx_domain_util/constanttables.h>

#include "cli/listing.h"
#include "cli/verb.h"
#include "cli/verbs.h"
#include "lines/failure.h"
#include "text/text.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  kxdu tables
  kxdu tables client-rates
  kxdu tables fb-type-levels --format csv -o levels.csv

Without NAME, lists the tables: name, number of rows, what they hold. With NAME, prints all rows of that table, in the
order in which all programs of the system keep them.

Exit code: 0 done; 2 wrong arguments, or an unknown table; 3 the output cannot be written.)";

struct Options {
    ListingOptions listing;
    std::string table;
};

Listing::Cell CellOf(std::string_view text) {
    return std::string(text);
}

template <class Number>
Listing::Cell CellOf(Number number) {
    return static_cast<std::int64_t>(number);
}

// Lists `rows`; each of `members` becomes a column.
template <class Row, class... Members>
void ListRows(const ListingOptions& options, std::vector<std::string> columns, std::span<const Row> rows,
              Members Row::*... members) {
    Listing listing(std::move(columns), options);
    for (const Row& row : rows) {
        listing.AddRow({CellOf(row.*members)...});
    }
    listing.Complete();
}

template <class Number>
void ListNumbers(const ListingOptions& options, const char* column, std::span<const Number> numbers) {
    Listing listing({column}, options);
    for (const Number number : numbers) {
        listing.AddRow({CellOf(number)});
    }
    listing.Complete();
}

struct ConstantTable {
    const char* name;
    const char* about;
    std::size_t (*count)();
    void (*list)(const ListingOptions& options);
};

template <auto GetRows>
std::size_t CountOf() {
    return GetRows().size();
}

const std::array<ConstantTable, 10> TABLES{{
    {"fb-type-names", "names of FB types", CountOf<NS_UTIL::GetFbTypeNameRows>,
     [](const ListingOptions& options) {
         ListRows(options, {"fbType", "name"}, NS_UTIL::GetFbTypeNameRows(), &NS_UTIL::FbTypeNameRow::fbType,
                  &NS_UTIL::FbTypeNameRow::name);
     }},
    {"ptn-aid-fb-types", "FB types that have a PTN AID; one is listed twice", CountOf<NS_UTIL::GetPtnAidFbTypes>,
     [](const ListingOptions& options) { ListNumbers(options, "fbType", NS_UTIL::GetPtnAidFbTypes()); }},
    {"port-object-fb-types", "FB types that are port objects of any kind", CountOf<NS_UTIL::GetPortObjectFbTypes>,
     [](const ListingOptions& options) { ListNumbers(options, "fbType", NS_UTIL::GetPortObjectFbTypes()); }},
    {"domain-names", "names of domain ids", CountOf<NS_UTIL::GetDomainNameRows>,
     [](const ListingOptions& options) {
         ListRows(options, {"domainId", "name"}, NS_UTIL::GetDomainNameRows(), &NS_UTIL::DomainNameRow::domainId,
                  &NS_UTIL::DomainNameRow::name);
     }},
    {"fb-type-levels", "interface levels on which FB types sit", CountOf<NS_UTIL::GetFbTypeLevelRows>,
     [](const ListingOptions& options) {
         ListRows(options, {"fbType", "level"}, NS_UTIL::GetFbTypeLevelRows(), &NS_UTIL::FbTypeLevelRow::fbType,
                  &NS_UTIL::FbTypeLevelRow::level);
     }},
    {"level-fb-types", "canonical FB types of interface levels", CountOf<NS_UTIL::GetLevelFbTypeRows>,
     [](const ListingOptions& options) {
         ListRows(options, {"level", "fbType"}, NS_UTIL::GetLevelFbTypeRows(), &NS_UTIL::LevelFbTypeRow::level,
                  &NS_UTIL::LevelFbTypeRow::fbType);
     }},
    {"bidir-fb-types", "bidirectional FB types of unidirectional ones", CountOf<NS_UTIL::GetBidirFbTypeRows>,
     [](const ListingOptions& options) {
         ListRows(options, {"fbType", "bidirFbType"}, NS_UTIL::GetBidirFbTypeRows(), &NS_UTIL::BidirFbTypeRow::fbType,
                  &NS_UTIL::BidirFbTypeRow::bidirFbType);
     }},
    {"ctp-names", "TMF names of reserved CTPs", CountOf<NS_UTIL::GetCtpNameRows>,
     [](const ListingOptions& options) {
         ListRows(options, {"name", "ctpId"}, NS_UTIL::GetCtpNameRows(), &NS_UTIL::CtpNameRow::name,
                  &NS_UTIL::CtpNameRow::ctpId);
     }},
    {"client-rates", "interface levels of client rates", CountOf<NS_UTIL::GetClientRateRows>,
     [](const ListingOptions& options) {
         ListRows(options, {"name", "level"}, NS_UTIL::GetClientRateRows(), &NS_UTIL::ClientRateRow::name,
                  &NS_UTIL::ClientRateRow::level);
     }},
    {"optical-boards", "types of optical boards of the ROADM kind", CountOf<NS_UTIL::GetOpticalBoards>,
     [](const ListingOptions& options) { ListNumbers(options, "boardType", NS_UTIL::GetOpticalBoards()); }},
}};

void ListTables(const ListingOptions& options) {
    Listing listing({"table", "rows", "about"}, options);
    for (const ConstantTable& table : TABLES) {
        listing.AddRow({table.name, static_cast<std::int64_t>(table.count()), table.about});
    }
    listing.Complete();
}

ExitCode Tables(const Options& options) {
    if (options.table.empty()) {
        ListTables(options.listing);
        return ExitCode::OK;
    }
    const auto* const table = std::find_if(TABLES.begin(), TABLES.end(),
                                           [&](const ConstantTable& known) { return options.table == known.name; });
    if (table == TABLES.end()) {
        throw Failure(Cause::USAGE, "unknown table " + Quoted(options.table) + "; for their names see kxdu tables");
    }
    table->list(options.listing);
    return ExitCode::OK;
}

}  // namespace

void AddTables(CLI::App& app, Action& action) {
    Verb verb(app, action, "tables", "Print the constant tables");
    const auto options = std::make_shared<Options>();
    verb.AddText("NAME", "", options->table, "The table to print; without it, lists all tables");
    AddListingOptions(verb, options->listing);
    verb.SetAction(HELP, options, Tables);
}

}  // namespace NS_KX::NS_KXDU
