#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <kx_standalone/inventoryfile.h>

#include "catalogue/statistics.h"
#include "cli/counting.h"
#include "cli/listing.h"
#include "cli/verb.h"
#include "cli/verbs.h"
#include "formats/texttable.h"
#include "lines/failure.h"
#include "lines/fileinuse.h"
#include "lines/output.h"
#include "text/displaytext.h"
#include "text/number.h"
#include "text/quoting.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  kxdu stats network.fdn
  kxdu stats network.fdn --inventory network.db --by problem
  kxdu stats --no-problems --by ne --format csv *.fdn
  kxdu stats network.fdn --format jsonl | jq -r 'select(.by == "kind") | [.value, .count] | @tsv'

Counts the lines of all inputs together. WHAT is one or more of these words, separated by commas:
  total     lines, different NEs, and lines with a problem
  kind      lines by the kind of thing that they name: the lines of kind ne may name an NE more than once
  layer     NEs by network layer; needs an inventory
  family    NEs by family of equipment, of which an NE may belong to several; needs an inventory
  ne-type   NEs by NE type; needs an inventory
  ne        lines by NE
  fb-type   lines by the FB type of the port that they name or lie on
  level     the same lines by the interface level of that FB type
  problem   what kxdu check finds, by reason, with the first place of each

A table shows the largest counts of each; with --by, it shows all. csv, jsonl and md have one row for each count, with
the columns "by", "value", "name", "count", "place" and "text". A row without a value counts what has none. A line that
is no identifier counts as a line without kind and NE.

Problems are those that kxdu check finds with the same inventory and configuration. Without an inventory, an identifier
that is right on some NEs only is no problem; a message counts them.

Exit code: 0 no problem was found; 1 one was found; 2 wrong arguments, or an input that cannot be read; 3 the output
cannot be written.)";

// What is counted together.
struct Group {
    std::string_view word;
    std::string_view value;  // heads of the table; empty: there is no such column
    std::string_view name;
    std::string_view count;
};

constexpr std::array<Group, 9> GROUPS{{
    {"total", "total", "", "count"},
    {"kind", "kind", "", "lines"},
    {"layer", "layer", "", "NEs"},
    {"family", "family", "", "NEs"},
    {"ne-type", "NE type", "name", "NEs"},
    {"ne", "NE", "NE type", "lines"},
    {"fb-type", "FB type", "name", "lines"},
    {"level", "level", "rate", "lines"},
    {"problem", "problem", "", "count"},
}};

struct Options {
    CountingOptions counting;
    ListingOptions listing;
    std::vector<std::string> groups;  // none: all
};

// All that was counted, group by group, in the order of GROUPS.
using GroupRows = std::array<std::vector<CountRow>, GROUPS.size()>;

std::vector<CountRow> TotalRows(const Statistics& statistics) {
    const std::uint64_t nes = statistics.nes.size() - statistics.nes.count(Statistics::NO_NE);
    return {{"lines", {}, statistics.lines},
            {"different NEs", {}, nes},
            {"lines with a problem", {}, statistics.problemLines}};
}

GroupRows RowsOf(const Statistics& statistics, const NS_STANDALONE::Inventory* inventory) {
    GroupRows rows{
        TotalRows(statistics), KindRows(statistics),   {}, {}, {}, NeRows(statistics), FbTypeRows(statistics),
        LevelRows(statistics), ProblemRows(statistics)};
    if (inventory != nullptr) {
        const NeFamilies families(*inventory);
        rows[2] = families.DomainRows(NS_STANDALONE::DomainCache::NE_TYPE_LIST, statistics);
        rows[3] = families.DomainRows(NS_STANDALONE::DomainCache::EQUIPMENT_TYPE, statistics);
        rows[4] = families.NeTypeRows(statistics);
        for (CountRow& row : rows[5]) {
            const auto type = row.value.empty() ? std::nullopt : families.TypeOf(std::stoi(row.value));
            row.name = type ? families.NameOf(*type) : "";
        }
    }
    return rows;
}

// ---- For people -----------------------------------------------------------------------------------------------------

std::string OrNone(const std::string& text) {
    return text.empty() ? "-" : Printable(text);
}

std::vector<std::string> CellsOf(const Group& group, const CountRow& row) {
    std::vector<std::string> cells{OrNone(row.value)};
    if (!group.name.empty()) {
        cells.push_back(OrNone(row.name));
    }
    cells.push_back(Grouped(row.count));
    if (!row.place.empty()) {
        cells.push_back(Printable(row.place + ": " + row.text));
    }
    return cells;
}

std::vector<TextTable::Column> ColumnsOf(const Group& group, std::span<const CountRow> rows) {
    const auto isNumber = [](const CountRow& row) {
        return row.value.find_first_not_of("0123456789-") == std::string::npos;
    };
    const bool isNumeric = std::all_of(rows.begin(), rows.end(), isNumber);
    std::vector<TextTable::Column> columns{
        {std::string(group.value), isNumeric ? TextTable::Align::RIGHT : TextTable::Align::LEFT}};
    if (!group.name.empty()) {
        columns.push_back({std::string(group.name)});
    }
    columns.push_back({std::string(group.count), TextTable::Align::RIGHT});
    if (!rows.front().place.empty()) {
        columns.push_back({"first"});
    }
    return columns;
}

std::string TableOf(const Group& group, std::span<const CountRow> rows, std::size_t mostRows) {
    const auto shown = rows.first(std::min(rows.size(), mostRows));
    TextTable table(ColumnsOf(group, shown));
    for (const CountRow& row : shown) {
        table.Measure(CellsOf(group, row));
    }
    std::string text = table.Head();
    for (const CountRow& row : shown) {
        text += table.Line(CellsOf(group, row));
    }
    if (shown.size() < rows.size()) {
        text +=
            "and " + Grouped(rows.size() - shown.size()) + " more; --by " + std::string(group.word) + " shows all\n";
    }
    return text;
}

bool IsAsked(const Options& options, std::string_view word) {
    const auto& words = options.groups;
    return words.empty() || std::find(words.begin(), words.end(), word) != words.end();
}

void WriteForPeople(const Options& options, const GroupRows& rows) {
    constexpr std::size_t MOST_ROWS = 10;
    std::string text;
    for (std::size_t group = 0; group < GROUPS.size(); ++group) {
        if (IsAsked(options, GROUPS.at(group).word) && !rows.at(group).empty()) {
            text += text.empty() ? "" : "\n";
            text += TableOf(GROUPS.at(group), rows.at(group), options.groups.empty() ? MOST_ROWS : SIZE_MAX);
        }
    }
    WriteWhole(options.listing.output, text);
}

// ---- For programs ---------------------------------------------------------------------------------------------------

void WriteForPrograms(const Options& options, const GroupRows& rows) {
    const auto textCell = [](const std::string& text) { return text.empty() ? Listing::Cell() : Listing::Cell(text); };
    Listing listing({"by", "value", "name", "count", "place", "text"}, options.listing);
    for (std::size_t group = 0; group < GROUPS.size(); ++group) {
        if (!IsAsked(options, GROUPS.at(group).word)) {
            continue;
        }
        for (const CountRow& row : rows.at(group)) {
            listing.AddRow({std::string(GROUPS.at(group).word), textCell(row.value), textCell(row.name),
                            static_cast<std::int64_t>(row.count), textCell(row.place), textCell(row.text)});
        }
    }
    listing.Complete();
}

// ---- The verb -------------------------------------------------------------------------------------------------------

// Takes the words of `--by`; returns what is wrong with them.
std::string TakeGroups(std::string_view text, std::vector<std::string>& groups) {
    for (;;) {
        const auto comma = text.find(',');
        const std::string_view word = text.substr(0, comma);
        if (std::none_of(GROUPS.begin(), GROUPS.end(), [&](const Group& group) { return group.word == word; })) {
            std::string words;
            for (const Group& group : GROUPS) {
                words.append(words.empty() ? "" : ", ").append(group.word);
            }
            return Quoted(word) + " is not one of " + words;
        }
        groups.emplace_back(word);
        if (comma == std::string_view::npos) {
            return {};
        }
        text.remove_prefix(comma + 1);
    }
}

// A group that nothing can be counted for is a mistake only if it was asked for by name.
void RequireInventoryFor(const Options& options) {
    for (const std::string& word : options.groups) {
        if (word == "layer" || word == "family" || word == "ne-type") {
            throw Failure(Cause::INPUT, "--by " + word +
                                            " needs an inventory: give one with --inventory FILE or in "
                                            "KX_INVENTORY");
        }
    }
}

ExitCode Stats(const Options& options) {
    std::vector<FileInUse> filesInUse = FilesInUse(options.counting.services);
    for (const std::string& file : options.counting.bulk.files) {
        filesInUse.push_back({file, "input"});
    }
    RefuseReplacing(filesInUse, options.listing.output);
    std::optional<NS_STANDALONE::Inventory> inventory;
    if (!options.counting.services.inventory.empty()) {
        inventory = ReadInventory(options.counting.services.inventory);
    } else {
        RequireInventoryFor(options);
    }
    const Statistics statistics = CountLines(
        options.counting, filesInUse, [&] { return std::make_unique<LineCounter>(options.counting); },
        [](LineCounter&) {});
    const GroupRows rows = RowsOf(statistics, inventory ? &*inventory : nullptr);
    if (options.listing.format == Listing::Format::TABLE) {
        WriteForPeople(options, rows);
    } else {
        WriteForPrograms(options, rows);
    }
    return statistics.problems.empty() ? ExitCode::OK : ExitCode::FOUND;
}

}  // namespace

void AddStats(CLI::App& app, Action& action) {
    Verb verb(app, action, "stats", "Count identifiers by kind, NE, FB type and interface level, and their problems");
    const auto options = std::make_shared<Options>();
    AddCountingOptions(verb, options->counting);
    verb.AddFlag("--no-problems", options->counting.isWithoutProblems,
                 "Count only; look for no problems, which is faster");
    verb.AddChecked(
        "--by", "WHAT", [&groups = options->groups](const std::string& text) { return TakeGroups(text, groups); },
        "Show all rows of these counts only, such as kind,ne");
    AddListingOptions(verb, options->listing);
    verb.SetAction(HELP, options, Stats);
}

}  // namespace NS_KX::NS_KXDU
