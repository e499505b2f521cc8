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

std::string VerbsOf(const CLI::App& app) {
    std::string names;
    for (const CLI::App* const verb : app.get_subcommands({})) {
        names.append(names.empty() ? "" : ", ").append(verb->get_name());
    }
    return names;
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
    std::string text = arguments.size() == 1 ? "unexpected argument" : "unexpected arguments";
    for (const std::string& argument : arguments) {
        text += " " + Quoted(AsGiven(argument));
    }
    return text;
}

// "jsonl|csv|tsv" as "jsonl, csv or tsv"; the name of any value as it is.
std::string ValueInWords(std::string value) {
    const auto last = value.rfind('|');
    if (last != std::string::npos) {
        value.replace(last, 1, " or ");
    }
    for (auto bar = value.find('|'); bar != std::string::npos; bar = value.find('|')) {
        value.replace(bar, 1, ", ");
    }
    return value;
}

// An option is missing, lacks its value, or is given too often. CLI11 begins its text with the
// name of the option.
std::string WrongCount(const CLI::App& verb, const std::string& text) {
    const std::string name = text.substr(0, text.find_first_of(": "));
    if (text.ends_with(" was given a disallowed flag override")) {  // begins with the name without its dashes
        return (name.size() == 1 ? "-" : "--") + name + " takes no value";
    }
    const CLI::Option* const option = verb.get_option_no_throw(name);
    if (option == nullptr) {
        return text;
    }
    if (option->count() > 1) {
        return name + " is given " + std::to_string(option->count()) + " times: give it once";
    }
    return name + " needs a value: " + ValueInWords(option->get_type_name());
}

// "NUMBER is missing: NE types"
std::string Missing(const CLI::App& verb, const std::string& text) {
    const std::string name = text.substr(0, text.rfind(" is required"));
    const CLI::Option* const option = verb.get_option_no_throw(name);
    if (option == nullptr) {
        return text;
    }
    const std::string& description = option->get_description();
    return name + " is missing: " + description.substr(0, description.find(';'));
}

std::string InOwnWords(const CLI::App& verb, const CLI::Error& error) {
    std::string text = error.what();
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
        return WrongCount(verb, text);
    }
    if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) {
        return Missing(verb, text);
    }
    constexpr std::string_view EXCLUDES = " excludes ";
    if (const auto at = text.find(EXCLUDES);
        at != std::string::npos && dynamic_cast<const CLI::ExcludesError*>(&error) != nullptr) {
        return text.substr(0, at) + " does not go with " + text.substr(at + EXCLUDES.size()) + ": give one of them";
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
    if (nearest.empty() && app.get_parent() != nullptr) {  // it has only a few
        return "unknown verb " + Quoted(verb) + "; choose one of " + VerbsOf(app);
    }
    return "unknown verb " + Quoted(verb) + (nearest.empty() ? "" : "; did you mean " + nearest + "?");
}

// CLI11 has one message for a missing and an unknown verb ("subcommand required"), and another that names no reason for
// options before the verb. This says what is wrong.
std::string UsageText(const CLI::App* app, const CLI::Error& error) {
    const CLI::App& verb = InnermostVerb(*app);
    const auto inFront = app->remaining();
    const auto unexpected = verb.remaining();
    const auto unknownOption = FindOption(unexpected);
    std::string text = InOwnWords(verb, error);
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
