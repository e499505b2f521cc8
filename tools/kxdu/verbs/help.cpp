#include <CLI/CLI.hpp>

#include "cli/nearestword.h"
#include "cli/verb.h"
#include "failure.h"
#include "files/output.h"
#include "text/text.h"

namespace NS_KXDU {

namespace {

// With those that it is a verb of, such as "inventory list"; empty when all are far from verb.
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

ExitCode Help(const CLI::App& app, const std::vector<std::string>& verbs) {
    const CLI::App* shown = &app;
    std::string path;  // as the usage line shows it
    for (const std::string& verb : verbs) {
        path.append(path.empty() ? "" : " ").append(shown->get_name());
        const auto named = shown->get_subcommands([&](const CLI::App* known) { return known->get_name() == verb; });
        if (named.empty()) {
            throw Failure(ExitCode::USAGE, UnknownVerb(*shown, verb) + HELP_HINT);
        }
        shown = named.front();
    }
    WriteWhole({}, shown->help(path));
    return ExitCode::OK;
}

}  // namespace

std::string UnknownVerb(const CLI::App& app, const std::string& verb) {
    if (app.get_subcommands({}).empty()) {
        return app.get_name() + " has no verbs";
    }
    const std::string nearest = NearestVerb(app, verb);
    return "no verb " + Quoted(verb) + (nearest.empty() ? "" : "; did you mean " + nearest + "?");
}

void AddHelp(CLI::App& app, Action& action) {
    Verb verb(app, action, "help", "What kxdu --help tells, or with VERB what kxdu VERB --help does");
    const auto verbs = std::make_shared<std::vector<std::string>>();
    verb.AddTexts("VERB", "", *verbs, "Which verb; of inventory also two, such as inventory list");
    verb.SetAction([&app, verbs] {
        app.clear();  // it would show the help of the verb that was chosen, which is this one
        return Help(app, *verbs);
    });
}

}  // namespace NS_KXDU
