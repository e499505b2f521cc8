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
#include "cli/counting.h"
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
  kxdu ne-type --ne 37 --inventory network.db
  KX_INVENTORY=network.db kxdu ne-type 1912 --format jsonl

A table has a line for each question and a column for each NE type, at most 1000; the last column, "yes if", names the
numbers, lists or inventory columns that make the answer yes. csv and jsonl have a row for each NE type, without limit;
their last column, "because", names those of each yes. A question bears the name of the library's function that answers
it; "name" is the inventory's name of the type. Without an inventory, only the questions are answered whose answers are
fixed in the library; the others have "-" (csv: empty, jsonl: null). IsTransMultiSubShelfNE is about one NE, so it needs
--ne too. With --ne alone, the NE type is that of this NE in the inventory.

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

using NS_STANDALONE::DomainCache;
using NS_STANDALONE::Inventory;

constexpr int LARGEST_NE_TYPE = 65535;

// A table is kept in memory whole: its first line needs its last column.
constexpr std::size_t MOST_IN_A_TABLE = 1000;

// A question, and what makes its answer yes: a number that the library knows, a list, or a column of the inventory.
struct Question {
    const char* name;
    bool (*ask)(unsigned short neType);
    const char* numbers = nullptr;
    DomainCache cache = DomainCache::EQUIPMENT_TYPE;  // of the lists
    std::array<const char*, 2> lists{};
    const char* column = nullptr;
};

constexpr std::array<Question, 4> FIXED_QUESTIONS{{
    {.name = "IsPTN41", .ask = NS_UTIL::IsPTN41, .numbers = "1911, 1912 or 1913"},
    {.name = "IsPTN31", .ask = NS_UTIL::IsPTN31, .numbers = "1335"},
    {.name = "IsPTN470", .ask = NS_UTIL::IsPTN470, .numbers = "1888"},
    {.name = "IsKLVByNEType",
     .ask = NS_UTIL::IsKLVByNEType,
     .numbers = "1887, 1895, 1908, 1947, 1948, 1971, 1972, 1978, 1982 or 1987"},
}};

constexpr Question InNeTypeList(const char* name, bool (*ask)(unsigned short neType), const char* list) {
    return {.name = name, .ask = ask, .cache = DomainCache::NE_TYPE_LIST, .lists = {list}};
}

constexpr Question InEquipmentList(const char* name, bool (*ask)(unsigned short neType), const char* list,
                                   const char* otherList = nullptr, const char* column = nullptr) {
    return {.name = name, .ask = ask, .lists = {list, otherList}, .column = column};
}

// Answered by the inventory, or by the domain lists that are loaded from it.
constexpr std::array<Question, 21> INVENTORY_QUESTIONS{{
    InNeTypeList("IsRouteNE", NS_UTIL::IsRouteNE, "router and metro"),
    InNeTypeList("IsTransNE", NS_UTIL::IsTransNE, "transmission"),
    InNeTypeList("IsAccessNE", NS_UTIL::IsAccessNE, "access"),
    InEquipmentList("IsPTNClasssNE", NS_UTIL::IsPTNClasssNE, "PTN"),
    InEquipmentList("IsPTNDMTNE", NS_UTIL::IsPTNDMTNE, "PTNDMT"),
    InEquipmentList("IsPTNNE", NS_UTIL::IsPTNNE, "PTN", "PTNDMT"),
    InEquipmentList("IsMSTPNE", NS_UTIL::IsMSTPNE, "MSTP"),
    InEquipmentList("IsIPMSTPNE", NS_UTIL::IsIPMSTPNE, "MSTP"),
    InEquipmentList("IsIPKLVNE", NS_UTIL::IsIPKLVNE, "IPKLV"),
    InEquipmentList("IsKLV600NE", NS_UTIL::IsKLV600NE, "KLV6XX"),
    InEquipmentList("IsOTNNE", NS_UTIL::IsOTNNE, "OTN"),
    InEquipmentList("IsWDMNE", NS_UTIL::IsWDMNE, "WDM"),
    InEquipmentList("IsOTN_NA", NS_UTIL::IsOTN_NA, "OTN_NA"),
    InEquipmentList("IsWDM_NA", NS_UTIL::IsWDM_NA, "WDM_NA"),
    InEquipmentList("IsNAWDMByNEType", NS_UTIL::IsNAWDMByNEType, "OTN_NA", "WDM_NA"),
    InEquipmentList("IsOTN4750NE", NS_UTIL::IsOTN4750NE, "OTN4750NE"),
    InEquipmentList("IsBIGSLOTNE", NS_UTIL::IsBIGSLOTNE, "BIGSLOTNE"),
    InEquipmentList("IsAccBitsNE", NS_UTIL::IsAccBitsNE, "ACCBITSNE"),
    InEquipmentList("IsMultiShelfTypeNE", NS_UTIL::IsMultiShelfTypeNE, "MultiShelfTypeNE"),
    InEquipmentList("IsIPServiceNE", NS_UTIL::IsIPServiceNE, "PTN31", "OTN", "ip_service"),
    {.name = "IsKLVNE", .ask = NS_UTIL::IsKLVNE, .column = "klv"},
}};

constexpr const char* ABOUT_AN_NE = "IsTransMultiSubShelfNE";
constexpr const char* COLUMN_OF_AN_NE = "multi_sub_shelf";

// When the answer is yes: "in list PTN or PTNDMT".
std::string RuleOf(const Question& question) {
    if (question.numbers != nullptr) {
        return std::string("it is ") + question.numbers;
    }
    std::string rule;
    for (const char* const list : question.lists) {
        if (list != nullptr) {
            rule.append(rule.empty() ? "in list " : " or ").append(list);
        }
    }
    if (question.column != nullptr) {
        rule.append(rule.empty() ? "" : ", or ").append(question.column).append(" is 1");
    }
    return rule;
}

std::vector<std::string> ColumnNames() {
    std::vector<std::string> names{"neType", "name"};
    for (const Question& question : FIXED_QUESTIONS) {
        names.emplace_back(question.name);
    }
    for (const Question& question : INVENTORY_QUESTIONS) {
        names.emplace_back(question.name);
    }
    names.emplace_back(ABOUT_AN_NE);
    return names;
}

// In the order of the questions.
std::vector<std::string> Rules() {
    std::vector<std::string> rules;
    rules.reserve(FIXED_QUESTIONS.size() + INVENTORY_QUESTIONS.size() + 1);
    for (const Question& question : FIXED_QUESTIONS) {
        rules.push_back(RuleOf(question));
    }
    for (const Question& question : INVENTORY_QUESTIONS) {
        rules.push_back(RuleOf(question));
    }
    rules.push_back(std::string(COLUMN_OF_AN_NE) + " of the NE is 1");
    return rules;
}

Listing::Cell NameOf(std::uint16_t neType, const Inventory& known) {
    for (const NS_STANDALONE::NeTypeRow& row : known.neTypes) {
        if (row.neType == neType) {
            return row.name;
        }
    }
    return {};
}

// What makes the answer about this NE type yes: the number itself, the lists that hold it, or else a column.
std::string ReasonOf(const Question& question, std::uint16_t neType, const Inventory* known) {
    if (question.numbers != nullptr || known == nullptr) {  // without an inventory, only numbers are asked
        return "number " + std::to_string(neType);
    }
    std::string reason;
    for (const char* const list : question.lists) {
        const NS_STANDALONE::DomainMemberRow member{question.cache, list != nullptr ? list : "", neType};
        const auto& members = known->domainMembers;
        if (std::find(members.begin(), members.end(), member) != members.end()) {
            reason.append(reason.empty() ? "list " : " and ").append(list);
        }
    }
    return reason.empty() && question.column != nullptr ? question.column : reason;
}

// "IsTransNE: list transmission; IsKLVNE: klv"
class Reasons {
public:
    void Add(const char* question, const std::string& reason) {
        m_text.append(m_text.empty() ? "" : "; ").append(question).append(": ").append(reason);
    }
    [[nodiscard]] Listing::Cell Cell() const { return m_text.empty() ? Listing::Cell() : Listing::Cell(m_text); }

private:
    std::string m_text;
};

// The answers, and why each yes is one. `known`: null without an inventory.
Listing::Row AnswersFor(std::uint16_t neType, const Inventory* known, std::int32_t ne) {
    Reasons reasons;
    const auto answerTo = [&](const Question& question) {
        const bool isYes = question.ask(neType);
        if (isYes) {
            reasons.Add(question.name, ReasonOf(question, neType, known));
        }
        return Listing::Cell(isYes);
    };
    Listing::Row row{std::int64_t{neType}, known != nullptr ? NameOf(neType, *known) : Listing::Cell()};
    for (const Question& question : FIXED_QUESTIONS) {
        row.push_back(answerTo(question));
    }
    for (const Question& question : INVENTORY_QUESTIONS) {
        row.push_back(known != nullptr ? answerTo(question) : Listing::Cell());
    }
    if (known == nullptr) {
        row.emplace_back();
    } else if (ne == -1) {
        row.emplace_back(Listing::None{"needs --ne"});
    } else {
        row.emplace_back(NS_UTIL::IsTransMultiSubShelfNE(static_cast<unsigned long>(ne), neType));
        if (std::get<bool>(row.back())) {
            reasons.Add(ABOUT_AN_NE, COLUMN_OF_AN_NE);
        }
    }
    row.push_back(reasons.Cell());
    return row;
}

// The NE types to show, as the user gave them, or the type of the NE that the user named.
std::vector<std::string> NumbersOf(const Options& options, const Inventory* known) {
    if (!options.numbers.empty()) {
        return options.numbers;
    }
    if (options.ne == -1) {
        throw Failure(Cause::INPUT, "no NE type is given: name NE types, such as 1912, or an NE with --ne");
    }
    const std::string ne = "NE " + std::to_string(options.ne);
    if (known == nullptr) {
        throw Failure(Cause::INPUT, "the type of " + ne +
                                        " stands in an inventory: give one with --inventory FILE or in KX_INVENTORY, "
                                        "or give the type itself");
    }
    const auto type = NeFamilies(*known).TypeOf(options.ne);
    if (!type) {
        throw Failure(Cause::INPUT, options.inventory + ": " + ne + " is not in the inventory");
    }
    return {std::to_string(*type)};
}

using ToRow = std::function<Listing::Row(const std::string& number)>;

ExitCode ListForPrograms(const Options& options, const std::vector<std::string>& numbers, const ToRow& toRow) {
    std::vector<std::string> columns = ColumnNames();
    columns.emplace_back("because");
    Listing listing(std::move(columns), options.listing);
    ForEachAsked(numbers, [&](const std::string& number) { listing.AddRow(toRow(number)); });
    return listing.CompleteAnswers();
}

// The rows that programs get are too wide to read, so people get them as columns.
ExitCode ListForPeople(const Options& options, const std::vector<std::string>& numbers, const ToRow& toRow,
                       std::string_view footer) {
    const std::vector<std::string> questions = ColumnNames();
    std::vector<std::string> heads{questions.front()};
    std::vector<Listing::Row> rows;
    ForEachAsked(numbers, [&](const std::string& number) {
        if (rows.size() == MOST_IN_A_TABLE) {
            throw Failure(Cause::INPUT, "a table shows at most " + std::to_string(MOST_IN_A_TABLE) +
                                            " NE types; --format csv and jsonl take any number");
        }
        rows.push_back(toRow(number));
        heads.push_back(std::to_string(std::get<std::int64_t>(rows.back().front())));
    });
    heads.emplace_back("yes if");
    const std::vector<std::string> rules = Rules();
    Listing listing(std::move(heads), options.listing);
    for (std::size_t question = 1; question < questions.size(); ++question) {
        Listing::Row answers{questions[question]};
        for (const Listing::Row& row : rows) {
            answers.push_back(row[question]);
        }
        const bool isName = question == 1;  // the only line that is no question
        answers.emplace_back(isName ? std::string() : rules[question - 2]);
        listing.AddRow(std::move(answers));
    }
    listing.Complete(footer);
    return std::any_of(rows.begin(), rows.end(), Listing::IsSilent) ? ExitCode::FOUND : ExitCode::OK;
}

ExitCode NeType(const Options& options) {
    const ServiceOptions serviceOptions{options.inventory, {}};
    RefuseReplacing(FilesInUse(serviceOptions), options.listing.output);
    std::optional<Inventory> known;
    if (!options.inventory.empty()) {
        known = ReadInventory(options.inventory);  // for names and reasons, which no service gives
    }
    MissingNes missing(std::string(ABOUT_AN_NE) + " answers no");
    const auto services = StartServices(serviceOptions, &missing);
    const auto toRow = [&](const std::string& number) {
        const auto neType = static_cast<std::uint16_t>(ParseNumber(number, LARGEST_NE_TYPE));
        return AnswersFor(neType, known ? &*known : nullptr, options.ne);
    };
    const std::vector<std::string> numbers = NumbersOf(options, known ? &*known : nullptr);
    const Listing::Format format = options.listing.format;
    const bool isForPrograms = format == Listing::Format::CSV || format == Listing::Format::JSONL;
    const ExitCode code = isForPrograms ? ListForPrograms(options, numbers, toRow)
                                        : ListForPeople(options, numbers, toRow, known ? "" : NEEDS_INVENTORY);
    missing.Tell();
    return code;
}

}  // namespace

void AddNeType(CLI::App& app, Action& action) {
    Verb verb(app, action, "ne-type", "Show which families of network elements NE types belong to");
    const auto options = std::make_shared<Options>();
    AddAsked(verb, "NUMBER", options->numbers, "NE types; may be left out with --ne", Presence::OPTIONAL);
    verb.AddNumber("--ne", options->ne,
                   "The NE that IsTransMultiSubShelfNE is asked about; without NUMBER, its type is shown");
    AddInventoryOption(verb, options->inventory);
    AddListingOptions(verb, options->listing);
    verb.SetAction(HELP, options, NeType);
}

}  // namespace NS_KX::NS_KXDU
