/// Options whose value is checked in one way for all verbs, and complained of in one wording. CLI11's own conversions
/// clamp large numbers, read octal ones, and take the number of an enumerator for its name.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "number.h"
#include "text.h"

namespace NS_KXDU {

/// Adds an option that takes a decimal number from lowest to largest.
template <class Number>
CLI::Option* AddNumberOption(CLI::App& verb, const std::string& names, Number& number, const std::string& help,
                             std::uint64_t lowest = 0,
                             std::uint64_t largest = std::uint64_t{std::numeric_limits<Number>::max()}) {
    const auto take = [&number, lowest, largest, names](const std::string& text) {
        std::uint64_t value = 0;
        if (!ReadWhole(text, value) || value < lowest || value > largest) {
            throw CLI::ValidationError(names, Quoted(text) + " is no number from " + std::to_string(lowest) + " to " +
                                                  std::to_string(largest));
        }
        number = static_cast<Number>(value);
    };
    return verb.add_option_function<std::string>(names, take, help)->type_name("N");
}

/// Adds an option that takes one of a few words; typeName stands for them in the help.
template <class Choice>
void AddChoiceOption(CLI::App& verb, const std::string& name, const std::string& typeName, Choice& chosen,
                     std::vector<std::pair<std::string, Choice>> choices, const std::string& help) {
    const auto take = [&chosen, name, choices = std::move(choices)](const std::string& text) {
        std::string words;
        for (const auto& [word, choice] : choices) {
            if (word == text) {
                chosen = choice;
                return;
            }
            words.append(words.empty() ? "" : ", ").append(word);
        }
        throw CLI::ValidationError(name, "no " + Quoted(text) + "; there are " + words);
    };
    verb.add_option_function<std::string>(name, take, help)->type_name(typeName);
}

/// Adds `--output`, for verbs that write one file; standard output when it is not given.
inline void AddOutputOption(CLI::App& verb, std::string& output) {
    verb.add_option("-o,--output", output,
                    "Write to FILE, which appears when it is complete; standard output otherwise")
        ->type_name("FILE");
}

}  // namespace NS_KXDU
