#include "cli/verbs.h"

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "cli/nearestword.h"
#include "text/text.h"

namespace NS_KX::NS_KXDU {

namespace {

// The nearest verb, with the verb that it belongs to, such as "inventory list". Empty if none is near.
std::string NearestVerb(const CLI::App& app, const std::string& verb) {
    const auto known = app.get_subcommands({});
    std::vector<std::string> names;
    names.reserve(known.size());
    for (const CLI::App* const each : known) {
        names.push_back(each->get_name());
    }
    if (const auto nearest = NearestWord(verb, names); !nearest.empty()) {
        return std::string(nearest);
    }
    for (const CLI::App* const each : known) {
        if (const std::string inner = NearestVerb(*each, verb); !inner.empty()) {
            return each->get_name() + " " + inner;
        }
    }
    return {};
}

}  // namespace

std::string UnknownVerb(const CLI::App& app, const std::string& verb) {
    if (verb.starts_with('-')) {
        return "unknown option " + Quoted(verb);
    }
    if (app.get_subcommands({}).empty()) {
        return app.get_name() + " has no verbs";
    }
    const std::string nearest = NearestVerb(app, verb);
    return "unknown verb " + Quoted(verb) + (nearest.empty() ? "" : "; did you mean " + nearest + "?");
}

}  // namespace NS_KX::NS_KXDU
