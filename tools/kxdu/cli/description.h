/// What the tool says of its own verbs and options, taken from the parser of the command line. Manual pages and
/// completions are made of it, so that they cannot differ from what the tool does.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace NS_KX::NS_KXDU {

/// An option, or an argument: a value without an option's name before it.
struct DescribedOption {
    std::vector<std::string> names;  ///< with their dashes; of an argument: its only name
    std::string value;               ///< what stands for the value in the help; empty for a flag
    std::vector<std::string> words;  ///< the values that it takes, if they are a few words
    std::string variable;            ///< of the environment, which may give the value; or empty
    std::string description;
    bool isRequired = false;
    bool isRepeated = false;
};

struct DescribedVerb {
    std::string name;  ///< as the user types it: "kxdu inventory list"
    std::string description;
    std::string help;  ///< the text after the options
    std::vector<DescribedOption> options;
    std::vector<DescribedOption> arguments;
    std::vector<DescribedVerb> verbs;  ///< in their order, without hidden ones

    /// The last word of its name.
    [[nodiscard]] std::string Word() const { return name.substr(name.rfind(' ') + 1); }
};

/// `app`: the tool, or one of its verbs.
DescribedVerb Describe(const CLI::App& app);

/// The verb and all verbs below it.
std::vector<const DescribedVerb*> Flattened(const DescribedVerb& verb);

}  // namespace NS_KX::NS_KXDU
