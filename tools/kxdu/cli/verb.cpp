#include "cli/verb.h"

#include <CLI/CLI.hpp>

#include "cli/arguments.h"

namespace NS_KX::NS_KXDU {

namespace {

// Values pass as they are: CLI11's own conversions would read more out of them.
CLI::Option& AddValues(CLI::App& verb, const std::string& names, const std::string& valueName,
                       std::function<void(const std::string&)> take, const std::string& help) {
    const CLI::callback_t takeAll = [take = std::move(take)](const CLI::results_t& given) {
        for (const std::string& value : given) {
            take(AsGiven(value));
        }
        return true;
    };
    return *verb.add_option(names, takeAll, help)->type_name(valueName)->type_size(1);
}

}  // namespace

VerbOption& VerbOption::Required() {
    m_option->required();
    return *this;
}

VerbOption& VerbOption::Excludes(const VerbOption& other) {
    m_option->excludes(other.m_option);
    return *this;
}

VerbOption& VerbOption::FromEnvironment(const std::string& variable) {
    m_option->envname(variable);
    return *this;
}

VerbOption& VerbOption::OneValueEachTime() {
    m_option->allow_extra_args(false);
    return *this;
}

Verb::Verb(CLI::App& app, Action& action, const std::string& name, const std::string& description)
    : m_verb(*app.add_subcommand(name, description)->group("Verbs")), m_action(action) {}

Verb Verb::AddVerb(const std::string& name, const std::string& description) {
    m_verb.require_subcommand(1);
    return {m_verb, m_action, name, description};
}

void Verb::Hide() {
    m_verb.group("");
}

void Verb::AddFlag(const std::string& name, bool& isGiven, const std::string& help) {
    m_verb.add_flag(name, isGiven, help)->disable_flag_override();
}

VerbOption Verb::AddText(const std::string& names, const std::string& valueName, std::string& text,
                         const std::string& help) {
    const auto complaint = [](const std::string& given) { return std::string(given.empty() ? "is empty" : ""); };
    const auto take = [&text](const std::string& given) { text = given; };
    return VerbOption(*AddValues(m_verb, names, valueName, take, help).expected(1)->check(complaint));
}

VerbOption Verb::AddTexts(const std::string& names, const std::string& valueName, std::vector<std::string>& texts,
                          const std::string& help) {
    const auto take = [&texts](const std::string& given) { texts.push_back(given); };
    return VerbOption(*AddValues(m_verb, names, valueName, take, help).expected(CLI::detail::expected_max_vector_size));
}

VerbOption Verb::AddChecked(const std::string& names, const std::string& valueName,
                            std::function<std::string(const std::string&)> take, const std::string& help) {
    const auto check = [names, take = std::move(take)](const std::string& text) {
        if (const std::string complaint = take(text); !complaint.empty()) {
            throw CLI::ValidationError(names.substr(names.rfind(',') + 1), complaint);
        }
    };
    return VerbOption(*AddValues(m_verb, names, valueName, check, help).expected(1));
}

void Verb::AddOutput(std::string& output) {
    AddText("-o,--output", "FILE", output,
            "Write to FILE, which appears once it is complete; by default, to standard output");
}

void Verb::SetHelp(const std::string& help) {
    m_verb.footer(help);
}

void Verb::SetAction(Action action) {
    m_verb.callback([&chosen = m_action, action = std::move(action)] { chosen = action; });
}

}  // namespace NS_KX::NS_KXDU
