#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <kx_domain_util/fbtype.h>

#include "catalogue/vocabulary.h"
#include "cli/asked.h"
#include "cli/listing.h"
#include "cli/numberargument.h"
#include "cli/verb.h"
#include "cli/verbs.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  kxdu fb 860
  kxdu fb 122 131 65600 --format jsonl
  kxdu get PP:1 -i network.fdn | sort -u | kxdu fb -

Columns:
  fbType           the number that was asked for
  name             name of the type; three types share the name COM
  level, rate      interface level of FBs of this type, and its client rate
  bidirFbType      bidirectional type that it belongs to; a bidirectional type belongs to itself
  logical          whether it is the type of a logical port: above 65535
  portObject       whether an FB of this type is a port object, of any kind but 3
  portObjectKind3  the same for kind 3
  ptnAid           whether it has a PTN AID
A missing answer is "-" (csv: empty, jsonl: null).

Exit code: 0 each number is known; 1 one is not, and all its answers are "-" and "no"; 2 wrong arguments; 3 the output
cannot be written.)";

struct Options {
    ListingOptions listing;
    std::vector<std::string> numbers;
};

Listing::Row RowOf(int fbType) {
    const std::optional<int> level = LevelOfFbType(fbType);
    constexpr int ANOTHER_KIND = 0;
    constexpr int KIND_3 = 3;
    return {std::int64_t{fbType},
            CellOf(NameOfFbType(fbType)),
            CellOf(level),
            CellOf(level ? RateOfLevel(*level) : std::nullopt),
            CellOf(BidirOfFbType(fbType)),
            NS_UTIL::IsLogicalPortByType(fbType),
            NS_UTIL::IsPortObjByFbType(fbType, ANOTHER_KIND),
            NS_UTIL::IsPortObjByFbType(fbType, KIND_3),
            NS_UTIL::IsPTNAIDFBType(fbType)};
}

ExitCode Fb(const Options& options) {
    Listing listing(
        {"fbType", "name", "level", "rate", "bidirFbType", "logical", "portObject", "portObjectKind3", "ptnAid"},
        options.listing);
    ForEachAsked(options.numbers, [&](const std::string& number) {
        listing.AddRow(RowOf(ParseNumber(number, std::numeric_limits<int>::max(),
                                         "; to find the number of a name, see kxdu tables fb-type-names")));
    });
    return listing.CompleteAnswers();
}

}  // namespace

void AddFb(CLI::App& app, Action& action) {
    Verb verb(app, action, "fb", "Show function-block types: name, level, bidirectional type, ...");
    const auto options = std::make_shared<Options>();
    AddAsked(verb, "NUMBER", options->numbers, "FB types");
    AddListingOptions(verb, options->listing);
    verb.SetAction(HELP, options, Fb);
}

}  // namespace NS_KX::NS_KXDU
