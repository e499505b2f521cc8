#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "catalogue/vocabulary.h"
#include "cli/asked.h"
#include "cli/listing.h"
#include "cli/unknownwords.h"
#include "cli/verb.h"
#include "cli/verbs.h"
#include "text/number.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  kxdu ctp E0 65534
  kxdu tables ctp-names

Columns: what was asked for, the id of the reserved CTP, and its TMF name. The case of a name does not matter. A missing
answer is "-" (csv: empty, jsonl: null).

Exit code: 0 each name and id is known; 1 one is not, all its answers are "-", and standard error says so; 2 wrong
arguments; 3 the output cannot be written.)";

struct Options {
    ListingOptions listing;
    std::vector<std::string> asked;
};

Listing::Row RowOf(const std::string& asked) {
    const auto number = ReadNumber(asked);
    const std::optional<int> id = number ? number : IdOfCtp(asked);
    const std::optional<std::string> name = id ? NameOfCtp(*id) : std::nullopt;
    return id && name ? Listing::Row{asked, CellOf(id), CellOf(name)} : Listing::Row{asked, {}, {}};
}

ExitCode Ctp(const Options& options) {
    Listing listing({"asked", "ctpId", "name"}, options.listing);
    UnknownWords unknown("no reserved CTP; kxdu tables ctp-names lists them");
    ForEachAsked(options.asked, [&](const std::string& asked) { AddAnswer(RowOf(asked), asked, listing, unknown); });
    return CompleteAnswers(listing, unknown);
}

}  // namespace

void AddCtp(CLI::App& app, Action& action) {
    Verb verb(app, action, "ctp", "Show ids and TMF names of reserved connection termination points");
    const auto options = std::make_shared<Options>();
    AddAsked(verb, "NAME|ID", options->asked, "TMF names such as E0, or CTP ids");
    AddListingOptions(verb, options->listing);
    verb.SetAction(HELP, options, Ctp);
}

}  // namespace NS_KX::NS_KXDU
