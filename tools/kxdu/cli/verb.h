#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "cli/verbs.h"
#include "text/number.h"
#include "text/text.h"

namespace CLI {
class Option;
}

namespace NS_KX::NS_KXDU {

/// What an option of a verb has besides its name, its value and its help.
class VerbOption {
public:
    explicit VerbOption(CLI::Option& option) noexcept : m_option(&option) {}

    VerbOption& Required();
    VerbOption& Excludes(const VerbOption& other);
    /// Has the value of a variable of the environment when the command line does not give one.
    VerbOption& FromEnvironment(const std::string& variable);
    /// For a list: the option's name stands before each value, so that what follows a value is an argument again.
    VerbOption& OneValueEachTime();

private:
    CLI::Option* m_option;
};

/// A verb while its command line is set up, which is all that verbs know of CLI11: few files compile its headers, and
/// its own conversions, which clamp large numbers, read octal ones and take the number of an enumerator for its name,
/// are not used.
///
/// The names of an option are as in "-o,--output"; one without a dash is that of an argument. The name of its value
/// stands for it in the help.
class Verb {
public:
    /// Adds the verb to the tool. What it does is put into action when it was chosen.
    Verb(CLI::App& app, Action& action, const std::string& name, const std::string& description);

    /// Adds a verb to this one, which then wants one of those that it has.
    Verb AddVerb(const std::string& name, const std::string& description);

    void AddFlag(const std::string& name, bool& isGiven, const std::string& help);
    /// An empty text is refused: it is that of a variable which is not set.
    VerbOption AddText(const std::string& names, const std::string& valueName, std::string& text,
                       const std::string& help);
    VerbOption AddTexts(const std::string& names, const std::string& valueName, std::vector<std::string>& texts,
                        const std::string& help);
    /// Passes the value to `take`, which returns what is wrong with it, or an empty text when it is accepted.
    VerbOption AddChecked(const std::string& names, const std::string& valueName,
                          std::function<std::string(const std::string&)> take, const std::string& help);

    /// Adds an option that takes a decimal number from `lowest` to `largest`.
    template <class Number>
    VerbOption AddNumber(const std::string& names, Number& number, const std::string& help, std::uint64_t lowest = 0,
                         std::uint64_t largest = std::uint64_t{std::numeric_limits<Number>::max()}) {
        return AddChecked(
            names, "N",
            [&number, lowest, largest](const std::string& text) {
                std::uint64_t value = 0;
                if (!ReadWhole(text, value) || value < lowest || value > largest) {
                    return Quoted(text) + " is no number from " + std::to_string(lowest) + " to " +
                           std::to_string(largest);
                }
                number = static_cast<Number>(value);
                return std::string();
            },
            help);
    }

    /// Adds an option that takes one of a few words.
    template <class Choice>
    void AddChoice(const std::string& name, const std::string& valueName, Choice& chosen,
                   std::vector<std::pair<std::string, Choice>> choices, const std::string& help) {
        AddChecked(
            name, valueName,
            [&chosen, choices = std::move(choices)](const std::string& text) {
                std::string words;
                for (const auto& [word, choice] : choices) {
                    if (word == text) {
                        chosen = choice;
                        return std::string();
                    }
                    words.append(words.empty() ? "" : ", ").append(word);
                }
                return "no " + Quoted(text) + "; there are " + words;
            },
            help);
    }

    /// Adds `--output`, for verbs that write one file; standard output when it is not given.
    void AddOutput(std::string& output);

    /// Sets the text that follows the options in the help.
    void SetHelp(const std::string& help);
    /// What the verb does, and the help.
    template <class Options>
    void SetAction(const std::string& help, std::shared_ptr<Options> options, ExitCode (*run)(const Options&)) {
        SetHelp(help);
        SetAction([run, options = std::move(options)] { return run(*options); });
    }
    void SetAction(Action action);

private:
    Verb(CLI::App& verb, Action& action) noexcept : m_verb(verb), m_action(action) {}

    CLI::App& m_verb;
    Action& m_action;
};

}  // namespace NS_KX::NS_KXDU
