#include <map>
#include <memory>
#include <string>
#include <vector>

#include <kx_domain_util/utilcommon.h>

#include "catalogue/vocabulary.h"
#include "cli/asked.h"
#include "cli/listing.h"
#include "cli/verb.h"
#include "cli/verbs.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  kxdu path ODU2:1-ODU0:8
  kxdu path odu4:1-odu3:2 OCH:1 --format jsonl

A row for each rate of a path, in the order of the interface levels: the path, the level, its client rate and the
number. Rates are known in upper and lower case; items without ":" or of no known rate are skipped; the last of a
repeated rate counts; what is no number is 0. What follows the digits is passed over, and of a number above 2147483647
the low 32 bits count. A path without any rate gives one row with "-" (csv: nothing, jsonl: null).

Exit code: 0 each path has a rate; 1 one has none; 2 wrong arguments; 3 output that cannot be written.)";

struct Options {
    ListingOptions listing;
    std::vector<std::string> paths;
};

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
    ForEachAsked(options.paths, [&](const std::string& path) { AddPathRows(path, listing); });
    return listing.CompleteAnswers();
}

}  // namespace

void AddPath(CLI::App& app, Action& action) {
    Verb verb(app, action, "path", "The rates and numbers of paths such as ODU2:1-ODU0:8");
    const auto options = std::make_shared<Options>();
    AddAsked(verb, "TEXT", options->paths, "Paths");
    AddListingOptions(verb, options->listing);
    verb.SetAction(HELP, options, Path);
}

}  // namespace NS_KX::NS_KXDU
