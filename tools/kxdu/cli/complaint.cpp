#include "cli/complaint.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

#include "cli/arguments.h"
#include "cli/nearestword.h"
#include "text/quoting.h"

namespace NS_KX::NS_KXDU {

namespace {

// The nearest verb, with the verb that it belongs to, such as "inventory list". Empty if none is near.
std::string NearestVerb(const CLI::App& app, const std::string& verb) {
    const auto known = app.get_subcommands([](const CLI::App* each) { return !each->get_group().empty(); });
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

std::string UnknownOption(const CLI::App& verb, std::string option) {
    option.resize(std::min(option.find('='), option.size()));
    std::vector<std::string> known;
    for (const CLI::Option* const each : verb.get_options()) {
        const auto& names = each->get_lnames();
        known.insert(known.end(), names.begin(), names.end());
    }
    const std::size_t dashes = std::min(option.find_first_not_of('-'), option.size());
    const std::string name = option.substr(dashes);
    const auto nearest = name.size() > 1 ? NearestWord(name, known) : std::string_view();
    return "unknown option " + Quoted(option) +
           (nearest.empty() ? "" : "; did you mean --" + std::string(nearest) + "?");
}

bool IsOption(const std::string& argument) {
    return argument.size() > 1 && argument.starts_with('-');
}

std::vector<std::string>::const_iterator FindOption(const std::vector<std::string>& arguments) {
    return std::find_if(arguments.begin(), arguments.end(), IsOption);
}

std::string Unexpected(const std::vector<std::string>& arguments) {
    std::string text = arguments.size() == 1 ? "The following argument was not expected:"
                                             : "The following arguments were not expected:";
    for (const std::string& argument : arguments) {
        text += " " + AsGiven(argument);
    }
    return text;
}

// The verb that was chosen last: "list" of "kxdu inventory list".
const CLI::App& InnermostVerb(const CLI::App& app) {
    const auto chosen = app.get_subcommands();
    return chosen.empty() ? app : InnermostVerb(*chosen.front());
}

}  // namespace

std::string FullName(const CLI::App& verb) {
    return verb.get_parent() == nullptr ? verb.get_name() : FullName(*verb.get_parent()) + " " + verb.get_name();
}

std::string HelpHint(const CLI::App& verb) {
    return "\nRun " + FullName(verb) + " --help for usage.";
}

std::string UnknownVerb(const CLI::App& app, const std::string& verb) {
    if (IsOption(verb)) {
        return UnknownOption(app, verb);
    }
    if (app.get_subcommands({}).empty()) {
        return app.get_name() + " has no verbs";
    }
    const std::string nearest = NearestVerb(app, verb);
    return "unknown verb " + Quoted(verb) + (nearest.empty() ? "" : "; did you mean " + nearest + "?");
}

// CLI11 has one message for a missing and an unknown verb ("subcommand required"), and another that names no reason for
// options before the verb. This says what is wrong.
std::string UsageText(const CLI::App* app, const CLI::Error& error) {
    const CLI::App& verb = InnermostVerb(*app);
    const auto inFront = app->remaining();
    const auto unexpected = verb.remaining();
    const auto unknownOption = FindOption(unexpected);
    std::string text = error.what();
    if (const auto option = FindOption(inFront); option != inFront.end() && &verb != app) {
        text = *option + " stands before the verb; options go after it";
    } else if (verb.get_require_subcommand_min() != 0) {
        if (unexpected.empty()) {
            return app->help("", CLI::AppFormatMode::All);
        }
        text = UnknownVerb(verb, AsGiven(unexpected.front()));
    } else if (unknownOption != unexpected.end()) {
        text = UnknownOption(verb, *unknownOption);
    } else if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) {
        text = Unexpected(unexpected);
    }
    return "kxdu: " + text + HelpHint(verb) + "\n";
}

}  // namespace NS_KX::NS_KXDU
