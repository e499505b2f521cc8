#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "catalogue/vocabulary.h"
#include "cli/asked.h"
#include "cli/listing.h"
#include "cli/verb.h"
#include "cli/verbs.h"
#include "text/number.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  kxdu level 12313
  kxdu level ODU2 odu0 12342 --format csv

Columns: what was asked for, the interface level, its client rate, and its canonical FB type. The case of a rate
does not matter. A missing answer is "-" (csv: empty, jsonl: null).

Exit code: 0 each level and rate is known; 1 one is not, and all its answers are "-"; 2 wrong arguments; 3 the output
cannot be written.)";

struct Options {
    ListingOptions listing;
    std::vector<std::string> asked;
};

Listing::Row RowOf(const std::string& asked) {
    const auto number = ReadNumber(asked);
    const std::optional<int> level = number ? number : LevelOfRate(asked);
    if (!level) {
        return {asked, {}, {}, {}};
    }
    const std::optional<std::string> rate = RateOfLevel(*level);
    const std::optional<int> fbType = FbTypeOfLevel(*level);
    return {asked, CellOf(rate || fbType ? level : std::nullopt), CellOf(rate), CellOf(fbType)};
}

ExitCode Level(const Options& options) {
    Listing listing({"asked", "level", "rate", "fbType"}, options.listing);
    ForEachAsked(options.asked, [&](const std::string& asked) { listing.AddRow(RowOf(asked)); });
    return listing.CompleteAnswers();
}

}  // namespace

void AddLevel(CLI::App& app, Action& action) {
    Verb verb(app, action, "level", "Show the client rate and canonical FB type of interface levels");
    const auto options = std::make_shared<Options>();
    AddAsked(verb, "NUMBER|RATE", options->asked, "Interface levels, or client rates such as ODU2");
    AddListingOptions(verb, options->listing);
    verb.SetAction(HELP, options, Level);
}

}  // namespace NS_KX::NS_KXDU
