#include "cli/typeoption.h"

#include <algorithm>
#include <vector>

#include "catalogue/kinds.h"
#include "cli/nearestword.h"
#include "cli/verb.h"
#include "cli/wrapping.h"
#include "lines/failure.h"
#include "text/quoting.h"

namespace NS_KX::NS_KXDU {

namespace {

std::vector<std::string> Types() {
    std::vector<std::string> names;
    for (const Kind* const kind : AllKinds()) {
        names.emplace_back(kind->type);
    }
    return names;
}

}  // namespace

VerbOption AddTypeOption(Verb& verb, std::string& type, const std::string& help) {
    return verb.AddText("--as", "TYPE", type, help);
}

const Kind* FindKindInAnyCase(std::string_view type) {
    const auto kinds = AllKinds();
    const auto found =
        std::find_if(kinds.begin(), kinds.end(), [type](const Kind* kind) { return IsSameWord(kind->type, type); });
    return found != kinds.end() ? *found : nullptr;
}

const Kind* ChosenKind(const std::string& type) {
    return type.empty() ? nullptr : &RequireKind(type, "--as: ");
}

const Kind& RequireKind(const std::string& type, const std::string& source) {
    if (const Kind* const kind = FindKindInAnyCase(type)) {
        return *kind;
    }
    const std::vector<std::string> names = Types();
    const std::string_view nearest = NearestWord(type, names);
    throw Failure(Cause::INPUT, source + "unknown type " + Quoted(type) +
                                    (nearest.empty() ? "; choose one of\n" + TypeNames()
                                                     : "; did you mean " + std::string(nearest) + "?"));
}

std::string TypeNames() {
    return Wrapped("  ", Types());
}

}  // namespace NS_KX::NS_KXDU
