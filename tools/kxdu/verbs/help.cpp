#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "cli/complaint.h"
#include "cli/verb.h"
#include "cli/verbs.h"
#include "lines/failure.h"
#include "lines/output.h"

namespace NS_KX::NS_KXDU {

namespace {

ExitCode Help(const CLI::App& app, const std::vector<std::string>& verbs) {
    const CLI::App* shown = &app;
    std::string path;  // as the usage line shows it
    for (const std::string& verb : verbs) {
        path.append(path.empty() ? "" : " ").append(shown->get_name());
        const auto named = shown->get_subcommands([&](const CLI::App* known) { return known->get_name() == verb; });
        if (named.empty()) {
            throw Failure(Cause::INPUT, UnknownVerb(*shown, verb) + HelpHint(*shown));
        }
        shown = named.front();
    }
    WriteWhole({}, shown->help(path));
    return ExitCode::OK;
}

}  // namespace

void AddHelp(CLI::App& app, Action& action) {
    Verb verb(app, action, "help", "Show the help of kxdu, or of a verb");
    const auto verbs = std::make_shared<std::vector<std::string>>();
    verb.AddTexts("VERB", "", *verbs, "The verb; two words for a verb of inventory, such as inventory list");
    verb.SetAction([&app, verbs] {
        app.clear();  // otherwise CLI11 shows the help of the chosen verb, which is this one
        return Help(app, *verbs);
    });
}

}  // namespace NS_KX::NS_KXDU
