#include "cli/verb.h"

#include <CLI/CLI.hpp>

namespace NS_KX::NS_KXDU {

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

void Verb::AddFlag(const std::string& name, bool& isGiven, const std::string& help) {
    m_verb.add_flag(name, isGiven, help);
}

VerbOption Verb::AddText(const std::string& names, const std::string& valueName, std::string& text,
                         const std::string& help) {
    const auto complaint = [](const std::string& given) { return std::string(given.empty() ? "is empty" : ""); };
    return VerbOption(*m_verb.add_option(names, text, help)->check(complaint)->type_name(valueName));
}

VerbOption Verb::AddTexts(const std::string& names, const std::string& valueName, std::vector<std::string>& texts,
                          const std::string& help) {
    return VerbOption(*m_verb.add_option(names, texts, help)->type_name(valueName));
}

VerbOption Verb::AddChecked(const std::string& names, const std::string& valueName,
                            std::function<std::string(const std::string&)> take, const std::string& help) {
    const auto check = [names, take = std::move(take)](const std::string& text) {
        if (const std::string complaint = take(text); !complaint.empty()) {
            throw CLI::ValidationError(names, complaint);
        }
    };
    return VerbOption(*m_verb.add_option_function<std::string>(names, check, help)->type_name(valueName));
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
