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
#include "text/quoting.h"

namespace CLI {
class Option;
}

namespace NS_KX::NS_KXDU {

/// An option of a verb; sets the properties that few options need.
class VerbOption {
public:
    explicit VerbOption(CLI::Option& option) noexcept : m_option(&option) {}

    VerbOption& Required();
    VerbOption& Excludes(const VerbOption& other);
    /// Takes its value from this environment variable if the command line gives none.
    VerbOption& FromEnvironment(const std::string& variable);
    /// For an option that may be repeated: each value needs the option's name before it; the next word is an argument
    /// again.
    VerbOption& OneValueEachTime();

private:
    CLI::Option* m_option;
};

/// Sets up the command line of a verb. Verbs use CLI11 only through this class, for two reasons: few files compile its
/// headers, and none uses its conversions, which clamp large numbers, read octal ones and accept the number of an
/// enumerator in place of its name.
///
/// `names` are those of an option, such as "-o,--output"; a name without a dash makes an argument. `valueName` stands
/// for the value in the help.
class Verb {
public:
    /// Adds the verb to the tool. If the user chooses the verb, `action` is set to what it does.
    Verb(CLI::App& app, Action& action, const std::string& name, const std::string& description);

    /// Adds a verb to this one, which then requires one of its own verbs.
    Verb AddVerb(const std::string& name, const std::string& description);

    /// Leaves the verb out of the list of verbs.
    void Hide();

    void AddFlag(const std::string& name, bool& isGiven, const std::string& help);
    /// Refuses an empty text: it mostly comes from a shell variable that is not set.
    VerbOption AddText(const std::string& names, const std::string& valueName, std::string& text,
                       const std::string& help);
    VerbOption AddTexts(const std::string& names, const std::string& valueName, std::vector<std::string>& texts,
                        const std::string& help);
    /// Passes the value to `take`, which returns what is wrong with it, or an empty text to accept it.
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
                    return Quoted(text) + " is not a number from " + std::to_string(lowest) + " to " +
                           std::to_string(largest);
                }
                number = static_cast<Number>(value);
                return std::string();
            },
            help);
    }

    /// Adds an option that takes one of a few words. The help shows them for the value: auto|always|never. "json" is
    /// taken for "jsonl" if that is one of them: it is what people say.
    template <class Choice>
    void AddChoice(const std::string& name, Choice& chosen, std::vector<std::pair<std::string, Choice>> choices,
                   const std::string& help) {
        std::string valueName;
        for (const auto& [word, choice] : choices) {
            valueName.append(valueName.empty() ? "" : "|").append(word);
        }
        AddChecked(
            name, valueName,
            [&chosen, choices = std::move(choices)](const std::string& text) {
                std::string words;
                for (const auto& [word, choice] : choices) {
                    if (word == (text == "json" ? "jsonl" : text)) {
                        chosen = choice;
                        return std::string();
                    }
                    words.append(words.empty() ? "" : ", ").append(word);
                }
                return Quoted(text) + " is not one of " + words;
            },
            help);
    }

    /// Adds `--output`, for verbs that write one file; the default is standard output.
    void AddOutput(std::string& output);

    /// Sets the text that follows the options in the help.
    void SetHelp(const std::string& help);
    /// Sets what the verb does, and the help.
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
