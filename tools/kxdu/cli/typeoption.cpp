#include "cli/typeoption.h"

#include <vector>

#include "catalogue/kinds.h"
#include "cli/verb.h"
#include "cli/wrapping.h"
#include "lines/failure.h"
#include "text/quoting.h"

namespace NS_KX::NS_KXDU {

VerbOption AddTypeOption(Verb& verb, std::string& type, const std::string& help) {
    return verb.AddText("--as", "TYPE", type, help);
}

const Kind* ChosenKind(const std::string& type) {
    return type.empty() ? nullptr : &RequireKind(type, "--as: ");
}

const Kind& RequireKind(const std::string& type, const std::string& source) {
    const Kind* const kind = FindKindByType(type);
    if (kind == nullptr) {
        throw Failure(Cause::INPUT, source + "unknown type " + Quoted(type) + "; choose one of\n" + TypeNames());
    }
    return *kind;
}

std::string TypeNames() {
    std::vector<std::string> names;
    for (const Kind* const kind : AllKinds()) {
        names.emplace_back(kind->type);
    }
    return Wrapped("  ", names);
}

}  // namespace NS_KX::NS_KXDU
