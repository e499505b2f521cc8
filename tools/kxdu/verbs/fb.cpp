#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <kx_domain_util/fbtype.h>

#include "catalogue/vocabulary.h"
#include "cli/asked.h"
#include "cli/listing.h"
#include "cli/numberargument.h"
#include "cli/unknownwords.h"
#include "cli/verb.h"
#include "cli/verbs.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  kxdu fb 860
  kxdu fb 122 131 65600 --format jsonl
  kxdu fb com
  kxdu get PP:1 network.fdn | sort -u | kxdu fb -

Columns:
  asked            the number or name that was asked for; the case of a name does not matter
  fbType           FB type; a row for each type of the name
  name             name of the type; three types share the name COM
  level, rate      interface level of FBs of this type, and its client rate
  bidirFbType      bidirectional type that it belongs to; a bidirectional type belongs to itself
  logical          whether it is the type of a logical port: above 65535
  portObject       whether an FB of this type is a port object, of any kind but 3
  portObjectKind3  the same for kind 3
  ptnAid           whether it has a PTN AID
A missing answer is "-" (csv: empty, jsonl: null).

Exit code: 0 each number and name is known; 1 one is not, all its answers are "-" and "no", and standard error says so;
2 wrong arguments; 3 the output cannot be written.)";

struct Options {
    ListingOptions listing;
    std::vector<std::string> asked;
};

Listing::Row RowOf(const std::string& asked, int fbType) {
    const std::optional<int> level = LevelOfFbType(fbType);
    constexpr int ANOTHER_KIND = 0;
    constexpr int KIND_3 = 3;
    Listing::Row row{asked,
                     Listing::Cell(),
                     CellOf(NameOfFbType(fbType)),
                     CellOf(level),
                     CellOf(level ? RateOfLevel(*level) : std::nullopt),
                     CellOf(BidirOfFbType(fbType)),
                     NS_UTIL::IsLogicalPortByType(fbType),
                     NS_UTIL::IsPortObjByFbType(fbType, ANOTHER_KIND),
                     NS_UTIL::IsPortObjByFbType(fbType, KIND_3),
                     NS_UTIL::IsPTNAIDFBType(fbType)};
    if (!Listing::IsSilent(row)) {
        row[1] = std::int64_t{fbType};
    }
    return row;
}

std::vector<Listing::Row> RowsOf(const std::string& asked) {
    if (asked.find_first_not_of("0123456789-.,") == std::string::npos) {
        return {RowOf(asked, ParseNumber(asked))};
    }
    std::vector<Listing::Row> rows;
    for (const int fbType : FbTypesOfName(asked)) {
        rows.push_back(RowOf(asked, fbType));
    }
    if (rows.empty()) {
        rows.push_back({asked, {}, {}, {}, {}, {}, false, false, false, false});
    }
    return rows;
}

ExitCode Fb(const Options& options) {
    Listing listing({"asked", "fbType", "name", "level", "rate", "bidirFbType", "logical", "portObject",
                     "portObjectKind3", "ptnAid"},
                    options.listing);
    UnknownWords unknown("nothing is known of such an FB type; kxdu tables fb-type-names lists the names");
    ForEachAsked(options.asked, [&](const std::string& asked) {
        for (Listing::Row& row : RowsOf(asked)) {
            AddAnswer(std::move(row), asked, listing, unknown);
        }
    });
    return CompleteAnswers(listing, unknown);
}

}  // namespace

void AddFb(CLI::App& app, Action& action) {
    Verb verb(app, action, "fb", "Show function-block types: name, level, bidirectional type, ...");
    const auto options = std::make_shared<Options>();
    AddAsked(verb, "NUMBER|NAME", options->asked, "FB types, or their names such as TUNNEL");
    AddListingOptions(verb, options->listing);
    verb.SetAction(HELP, options, Fb);
}

}  // namespace NS_KX::NS_KXDU
