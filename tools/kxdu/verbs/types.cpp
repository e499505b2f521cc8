#include <memory>
#include <string>
#include <vector>

#include "catalogue/fieldvalues.h"
#include "catalogue/kinds.h"
#include "cli/listing.h"
#include "cli/typeoption.h"
#include "cli/verb.h"
#include "cli/verbs.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  kxdu types PortIndex
  kxdu types --format csv -o fields.csv

Lists the types of records with their fields. Columns:
  type     the type, as kxdu decode writes it and kxdu encode takes it
  field    the field; one of a nested record is called like port.neId
  range    the values that it takes
  default  its value in a fresh record; a field that kxdu encode does not find has it
  meaning  what it says, and the level or sub-value that it is read from: PP:2 is the third one of level PP

A type with ":" is a variant of the one before it: the same record, written in another way. PortIndex is written with
the card, "NE=5,FR=1,S=3,CP=-1,PP=16||2|", PortIndex:NEType without it, "NE=5,FR=1,S=3,PP=16||2|", PortIndex:NEType1911
with an absent sub-slot spelt out, "NE=5,FR=1,S=3,SS=-1,SC=-1,PP=16||2|". kxdu decode chooses the variant that writes a
line as it is; --as chooses it for all lines. The case of TYPE does not matter.

Exit code: 0 all types are known; 2 one is not, or other wrong arguments; 3 the output cannot be written.)";

struct Options {
    ListingOptions listing;
    std::vector<std::string> types;
};

std::vector<const Kind*> ChosenKinds(const std::vector<std::string>& types) {
    std::vector<const Kind*> kinds;
    kinds.reserve(types.size());
    for (const std::string& type : types) {
        kinds.push_back(&RequireKind(type));
    }
    if (kinds.empty()) {
        kinds.assign(AllKinds().begin(), AllKinds().end());
    }
    return kinds;
}

ExitCode Types(const Options& options) {
    const std::vector<const Kind*> kinds = ChosenKinds(options.types);
    Listing listing({"type", "field", "range", "default", "meaning"}, options.listing);
    for (const Kind* const kind : kinds) {
        for (const Field& field : kind->layout.fields) {
            listing.AddRow({std::string(kind->type), std::string(field.name), RangeOf(field),
                            ValueOf(field, kind->layout.fresh()), std::string(field.meaning)});
        }
    }
    listing.Complete();
    return ExitCode::OK;
}

}  // namespace

void AddTypes(CLI::App& app, Action& action) {
    Verb verb(app, action, "types", "List the types of records: fields, ranges and meanings");
    const auto options = std::make_shared<Options>();
    verb.AddTexts("TYPE", "", options->types, "Types to list; all by default");
    AddListingOptions(verb, options->listing);
    verb.SetAction(HELP + ("\n\nTypes:\n" + TypeNames()), options, Types);
}

}  // namespace NS_KX::NS_KXDU
