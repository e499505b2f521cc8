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
  kxdu level 12313
  kxdu level ODU2 odu0 12342 --format csv

Columns:
  asked        the level or rate that was asked for; the case of a rate does not matter
  level, rate  the interface level, and its client rate
  fbType       its canonical FB type
  fbTypes      all FB types that sit on the level, separated by blanks
A missing answer is "-" (csv: empty, jsonl: null).

Exit code: 0 each level and rate is known; 1 one is not, all its answers are "-", and standard error says so; 2 wrong
arguments; 3 the output cannot be written.)";

struct Options {
    ListingOptions listing;
    std::vector<std::string> asked;
};

std::string Joined(const std::vector<int>& numbers) {
    std::string text;
    for (const int number : numbers) {
        text.append(text.empty() ? "" : " ").append(std::to_string(number));
    }
    return text;
}

Listing::Row RowOf(const std::string& asked) {
    const auto number = ReadNumber(asked);
    const std::optional<int> level = number ? number : LevelOfRate(asked);
    if (!level) {
        return {asked, {}, {}, {}, {}};
    }
    const std::optional<std::string> rate = RateOfLevel(*level);
    const std::optional<int> fbType = FbTypeOfLevel(*level);
    const std::string fbTypes = Joined(FbTypesOfLevel(*level));
    const bool isKnown = rate || fbType || !fbTypes.empty();
    return {asked, CellOf(isKnown ? level : std::nullopt), CellOf(rate), CellOf(fbType),
            CellOf(fbTypes.empty() ? std::nullopt : std::optional(fbTypes))};
}

ExitCode Level(const Options& options) {
    Listing listing({"asked", "level", "rate", "fbType", "fbTypes"}, options.listing);
    UnknownWords unknown(
        "no interface level or client rate; kxdu tables level-fb-types lists the levels, kxdu tables client-rates the "
        "rates");
    ForEachAsked(options.asked, [&](const std::string& asked) { AddAnswer(RowOf(asked), asked, listing, unknown); });
    return CompleteAnswers(listing, unknown);
}

}  // namespace

void AddLevel(CLI::App& app, Action& action) {
    Verb verb(app, action, "level", "Show client rates and FB types of interface levels");
    const auto options = std::make_shared<Options>();
    AddAsked(verb, "NUMBER|RATE", options->asked, "Interface levels, or client rates such as ODU2");
    AddListingOptions(verb, options->listing);
    verb.SetAction(HELP, options, Level);
}

}  // namespace NS_KX::NS_KXDU
