#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <kx_domain_util/separatorfinder.h>
#include <kx_domain_util/utilcommon.h>

#include "catalogue/vocabulary.h"
#include "cli/asked.h"
#include "cli/listing.h"
#include "cli/unknownwords.h"
#include "cli/verb.h"
#include "cli/verbs.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  kxdu path ODU2:1-ODU0:8
  kxdu path odu4:1-odu3:2 OCH:1 --format jsonl

A path has a row for each of its rates, in the order of the interface levels. Columns: the path, the level, its client
rate, and the number. A path without any rate has one row of "-" (csv: empty, jsonl: null).

The case of a rate does not matter. Empty items are skipped; so are items without ":" or with an unknown
rate, which standard error names.
The last of several items with the same rate counts. A number ends at the first character that is not a digit; without
digits it is 0, and a number above 2147483647 keeps its low 32 bits.

Exit code: 0 each path has rates, and no other items; 1 an item was skipped; 2 wrong arguments; 3 the output cannot be
written.)";

struct Options {
    ListingOptions listing;
    std::vector<std::string> paths;
};

// Notes what the library skips. Empty items say nothing.
void NoteSkipped(std::string_view path, UnknownWords& skipped) {
    NS_UTIL::NS_FDN::SeparatorFinder<'-'> items(path);
    NS_UTIL::NS_FDN::SeparatorFinder<'-'>::Piece piece{};
    do {
        piece = items.Next();
        const std::string_view item(piece.begin, piece.end);
        const auto colon = item.find(':');
        if (!item.empty() && (colon == std::string_view::npos || !LevelOfRate(std::string(item.substr(0, colon))))) {
            skipped.Note(std::string(item));
        }
    } while (!items.IsLast(piece));
}

void AddPathRows(const std::string& path, Listing& listing) {
    std::map<int, int> numbers;
    NS_UTIL::UtilCommon::Instance()->GetSplitePATHDataByLine(numbers, path);
    for (const auto& [level, number] : numbers) {
        listing.AddRow({path, std::int64_t{level}, CellOf(RateOfLevel(level)), std::int64_t{number}});
    }
    if (numbers.empty()) {
        listing.AddRow({path, {}, {}, {}});
    }
}

ExitCode Path(const Options& options) {
    Listing listing({"path", "level", "rate", "number"}, options.listing);
    UnknownWords skipped(
        "skipped, since an item is a client rate and a number, such as ODU2:1; kxdu tables client-rates lists the "
        "rates");
    ForEachAsked(options.paths, [&](const std::string& path) {
        AddPathRows(path, listing);
        NoteSkipped(path, skipped);
    });
    const ExitCode code = CompleteAnswers(listing, skipped);
    return skipped.Text().empty() ? code : ExitCode::FOUND;
}

}  // namespace

void AddPath(CLI::App& app, Action& action) {
    Verb verb(app, action, "path", "Show the rates and numbers of paths such as ODU2:1-ODU0:8");
    const auto options = std::make_shared<Options>();
    AddAsked(verb, "TEXT", options->paths, "Paths");
    AddListingOptions(verb, options->listing);
    verb.SetAction(HELP, options, Path);
}

}  // namespace NS_KX::NS_KXDU
