#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <kx_domain_util/netype.h>
#include <kx_standalone/inventoryfile.h>

#include "cli/asked.h"
#include "cli/listing.h"
#include "cli/missingnes.h"
#include "cli/numberargument.h"
#include "cli/services.h"
#include "cli/verb.h"
#include "cli/verbs.h"
#include "lines/failure.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  kxdu ne-type 1912 1335 --inventory network.db
  kxdu ne-type 2701 --ne 37 --inventory network.db
  KX_INVENTORY=network.db kxdu ne-type 1912 --format jsonl

A table has a line for each question and a column for each NE type, at most 1000. csv and jsonl have a row for each NE
type, without limit. A question bears the name of the library's function that answers it; "name" is the inventory's name
of the type. Without an inventory, only the questions are answered whose answers are fixed in the library; the others
have "-" (csv: empty, jsonl: null). IsTransMultiSubShelfNE is about one NE, so it needs --ne too.

Exit code: 0 something is known of each NE type; 1 nothing is known of one: it has no name, and no answer is yes;
2 wrong arguments, or an inventory that cannot be read; 3 the output cannot be written.)";

struct Options {
    ListingOptions listing;
    std::string inventory;
    std::int32_t ne = -1;  // none
    std::vector<std::string> numbers;
};

// Explains the "-" in a table that is made without an inventory.
constexpr auto NEEDS_INVENTORY = "\n-: needs an inventory; give one with --inventory FILE or in KX_INVENTORY\n";

constexpr int LARGEST_NE_TYPE = 65535;

// A table is kept in memory whole: its first line needs its last column.
constexpr std::size_t MOST_IN_A_TABLE = 1000;

struct Question {
    const char* name;
    bool (*ask)(unsigned short neType);
};

constexpr std::array<Question, 4> FIXED_QUESTIONS{{
    {"IsPTN41", NS_UTIL::IsPTN41},
    {"IsPTN31", NS_UTIL::IsPTN31},
    {"IsPTN470", NS_UTIL::IsPTN470},
    {"IsKLVByNEType", NS_UTIL::IsKLVByNEType},
}};

// Answered by the inventory, or by the domain lists that are loaded from it.
constexpr std::array<Question, 21> INVENTORY_QUESTIONS{{
    {"IsRouteNE", NS_UTIL::IsRouteNE},
    {"IsTransNE", NS_UTIL::IsTransNE},
    {"IsAccessNE", NS_UTIL::IsAccessNE},
    {"IsPTNClasssNE", NS_UTIL::IsPTNClasssNE},
    {"IsPTNDMTNE", NS_UTIL::IsPTNDMTNE},
    {"IsPTNNE", NS_UTIL::IsPTNNE},
    {"IsMSTPNE", NS_UTIL::IsMSTPNE},
    {"IsIPMSTPNE", NS_UTIL::IsIPMSTPNE},
    {"IsIPKLVNE", NS_UTIL::IsIPKLVNE},
    {"IsKLV600NE", NS_UTIL::IsKLV600NE},
    {"IsOTNNE", NS_UTIL::IsOTNNE},
    {"IsWDMNE", NS_UTIL::IsWDMNE},
    {"IsOTN_NA", NS_UTIL::IsOTN_NA},
    {"IsWDM_NA", NS_UTIL::IsWDM_NA},
    {"IsNAWDMByNEType", NS_UTIL::IsNAWDMByNEType},
    {"IsOTN4750NE", NS_UTIL::IsOTN4750NE},
    {"IsBIGSLOTNE", NS_UTIL::IsBIGSLOTNE},
    {"IsAccBitsNE", NS_UTIL::IsAccBitsNE},
    {"IsMultiShelfTypeNE", NS_UTIL::IsMultiShelfTypeNE},
    {"IsIPServiceNE", NS_UTIL::IsIPServiceNE},
    {"IsKLVNE", NS_UTIL::IsKLVNE},
}};

std::vector<std::string> ColumnNames() {
    std::vector<std::string> names{"neType", "name"};
    for (const Question& question : FIXED_QUESTIONS) {
        names.emplace_back(question.name);
    }
    for (const Question& question : INVENTORY_QUESTIONS) {
        names.emplace_back(question.name);
    }
    names.emplace_back("IsTransMultiSubShelfNE");
    return names;
}

using NeTypes = std::vector<NS_STANDALONE::NeTypeRow>;

Listing::Cell NameOf(std::uint16_t neType, const NeTypes& known) {
    for (const NS_STANDALONE::NeTypeRow& row : known) {
        if (row.neType == neType) {
            return row.name;
        }
    }
    return {};
}

// `known`: the NE types of the inventory; null without one.
Listing::Row AnswersFor(std::uint16_t neType, const NeTypes* known, std::int32_t ne) {
    Listing::Row row{std::int64_t{neType}, known != nullptr ? NameOf(neType, *known) : Listing::Cell()};
    for (const Question& question : FIXED_QUESTIONS) {
        row.emplace_back(question.ask(neType));
    }
    for (const Question& question : INVENTORY_QUESTIONS) {
        row.push_back(known != nullptr ? Listing::Cell(question.ask(neType)) : Listing::Cell());
    }
    if (known == nullptr) {
        row.emplace_back();
    } else if (ne == -1) {
        row.emplace_back(Listing::None{"needs --ne"});
    } else {
        row.emplace_back(NS_UTIL::IsTransMultiSubShelfNE(static_cast<unsigned long>(ne), neType));
    }
    return row;
}

using ToRow = std::function<Listing::Row(const std::string& number)>;

ExitCode ListForPrograms(const Options& options, const ToRow& toRow) {
    Listing listing(ColumnNames(), options.listing);
    ForEachAsked(options.numbers, [&](const std::string& number) { listing.AddRow(toRow(number)); });
    return listing.CompleteAnswers();
}

// The rows that programs get are too wide to read, so people get them as columns.
ExitCode ListForPeople(const Options& options, const ToRow& toRow, std::string_view footer) {
    const std::vector<std::string> questions = ColumnNames();
    std::vector<std::string> heads{questions.front()};
    std::vector<Listing::Row> rows;
    ForEachAsked(options.numbers, [&](const std::string& number) {
        if (rows.size() == MOST_IN_A_TABLE) {
            throw Failure(Cause::USAGE, "a table shows at most " + std::to_string(MOST_IN_A_TABLE) +
                                            " NE types; --format csv and jsonl take any number");
        }
        rows.push_back(toRow(number));
        heads.push_back(std::to_string(std::get<std::int64_t>(rows.back().front())));
    });
    Listing listing(std::move(heads), options.listing);
    for (std::size_t question = 1; question < questions.size(); ++question) {
        Listing::Row answers{questions[question]};
        for (const Listing::Row& row : rows) {
            answers.push_back(row[question]);
        }
        listing.AddRow(std::move(answers));
    }
    listing.Complete(footer);
    return std::any_of(rows.begin(), rows.end(), Listing::IsSilent) ? ExitCode::FOUND : ExitCode::OK;
}

ExitCode NeType(const Options& options) {
    const ServiceOptions serviceOptions{options.inventory, {}};
    RefuseReplacing(FilesInUse(serviceOptions), options.listing.output);
    std::optional<NeTypes> known;
    if (!options.inventory.empty()) {
        known = ReadInventory(options.inventory).neTypes;  // for the names, which no service gives
    }
    MissingNes missing("IsTransMultiSubShelfNE answers no");
    const auto services = StartServices(serviceOptions, &missing);
    const auto toRow = [&](const std::string& number) {
        const auto neType = static_cast<std::uint16_t>(ParseNumber(number, LARGEST_NE_TYPE));
        return AnswersFor(neType, known ? &*known : nullptr, options.ne);
    };
    const Listing::Format format = options.listing.format;
    const bool isForPrograms = format == Listing::Format::CSV || format == Listing::Format::JSONL;
    const ExitCode code =
        isForPrograms ? ListForPrograms(options, toRow) : ListForPeople(options, toRow, known ? "" : NEEDS_INVENTORY);
    missing.Tell();
    return code;
}

}  // namespace

void AddNeType(CLI::App& app, Action& action) {
    Verb verb(app, action, "ne-type", "Show which families of network elements NE types belong to");
    const auto options = std::make_shared<Options>();
    AddAsked(verb, "NUMBER", options->numbers, "NE types");
    verb.AddNumber("--ne", options->ne, "The NE that IsTransMultiSubShelfNE is asked about");
    AddInventoryOption(verb, options->inventory);
    AddListingOptions(verb, options->listing);
    verb.SetAction(HELP, options, NeType);
}

}  // namespace NS_KX::NS_KXDU
