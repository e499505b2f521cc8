#include "cli/asked.h"
#include "cli/verb.h"
#include "cli/verbs.h"
#include "formats/listing.h"
#include "identifiers/vocabulary.h"
#include "text/number.h"

namespace NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  kxdu level 12313
  kxdu level ODU2 odu0 12342 --format csv

Columns: what was asked for, the interface level, its client rate, and its canonical FB type. Rates are known in upper
and lower case. Where there is no answer stands "-" (csv: nothing, jsonl: null).

Exit code: 0 each level or rate means something; 1 one does not: all its answers are "-"; 2 wrong arguments; 3 output
that cannot be written.)";

struct Options {
    ListingOptions listing;
    std::vector<std::string> asked;
};

Listing::Row RowOf(const std::string& asked) {
    const auto number = ReadNumber(asked);
    const Listing::Cell level = number ? Listing::Cell(std::int64_t{*number}) : LevelOfRate(asked);
    const auto* const levelNumber = std::get_if<std::int64_t>(&level);
    if (levelNumber == nullptr) {
        return {asked, {}, {}, {}};
    }
    Listing::Cell rate = RateOfLevel(static_cast<int>(*levelNumber));
    Listing::Cell fbType = FbTypeOfLevel(static_cast<int>(*levelNumber));
    const bool isKnown = !std::holds_alternative<Listing::None>(rate) || !std::holds_alternative<Listing::None>(fbType);
    return {asked, isKnown ? level : Listing::Cell(), std::move(rate), std::move(fbType)};
}

ExitCode Level(const Options& options) {
    Listing listing({"asked", "level", "rate", "fbType"});
    for (const std::string& asked : AllAsked(options.asked)) {
        listing.AddRow(RowOf(asked));
    }
    return PrintAnswers(listing, options.listing);
}

}  // namespace

void AddLevel(CLI::App& app, Action& action) {
    Verb verb(app, action, "level", "The client rate and canonical FB type of interface levels");
    const auto options = std::make_shared<Options>();
    AddAsked(verb, "NUMBER|RATE", options->asked, "Interface levels, or client rates such as ODU2");
    AddListingOptions(verb, options->listing);
    verb.SetAction(HELP, options, Level);
}

}  // namespace NS_KXDU
