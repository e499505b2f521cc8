#include "cli/completion.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "catalogue/kinds.h"
#include "catalogue/tables.h"

namespace NS_KX::NS_KXDU {

namespace {

std::string Joined(const std::vector<std::string>& words, std::string_view separator = " ") {
    std::string text;
    for (const std::string& word : words) {
        text.append(text.empty() ? "" : separator).append(word);
    }
    return text;
}

bool IsFile(const DescribedOption& option) {
    return option.value == "FILE";
}

bool IsFolder(const DescribedOption& option) {
    return option.value == "DIR" || option.value == "FOLDER";
}

std::vector<std::string> WordsOfVerbs(const DescribedVerb& verb) {
    std::vector<std::string> words;
    for (const DescribedVerb& inner : verb.verbs) {
        words.push_back(inner.Word());
    }
    return words;
}

// The words that the value of an option can be, as far as they are known.
std::vector<std::string> SuggestedWords(const DescribedOption& option, const DescribedVerb& tool) {
    std::vector<std::string> words = option.words;
    if (option.value == "VERB") {
        words = WordsOfVerbs(tool);
    } else if (option.value == "TYPE") {
        std::transform(AllKinds().begin(), AllKinds().end(), std::back_inserter(words),
                       [](const Kind* kind) { return std::string(kind->type); });
    } else if (option.value == "TABLE") {
        for (const ConstantTable& table : AllConstantTables()) {
            words.emplace_back(table.name);
        }
    }
    return words;
}

std::vector<std::string> NamesOfOptions(const DescribedVerb& verb) {
    std::vector<std::string> names;
    for (const DescribedOption& option : verb.options) {
        names.insert(names.end(), option.names.begin(), option.names.end());
    }
    return names;
}

// The verb as the scripts know it, without the name of the tool: "inventory list".
std::string PathOf(const DescribedVerb& verb) {
    const std::size_t blank = verb.name.find(' ');
    return blank == std::string::npos ? "" : verb.name.substr(blank + 1);
}

// A description for a narrow column: its first clause.
std::string Brief(const std::string& description) {
    return description.substr(0, std::min({description.find(';'), description.find(". "), description.find(": ")}));
}

std::string InSingleQuotes(std::string_view text) {
    std::string quoted = "'";
    for (const char character : text) {
        quoted += character == '\'' ? "'\\''" : std::string(1, character);
    }
    return quoted + "'";
}

// ---- bash -----------------------------------------------------------------------------------------------------------

constexpr auto BASH_HEAD = R"(# Completes the command lines of kxdu in bash. Made by kxdu from its own verbs.
_kxdu() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    if [[ $current == = ]]; then
        current=
    elif [[ $previous == = ]]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    local word verb=
    for word in "${COMP_WORDS[@]:1:COMP_CWORD - 1}"; do
        case "$verb/$word" in
)";

constexpr auto BASH_TAIL = R"(    if [[ $current == -* ]]; then
        words=$options
        kind=
    fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
    if [[ $kind ]]; then
        local files
        mapfile -t files < <(compgen "$kind" -- "$current")
        COMPREPLY+=("${files[@]}")
        compopt -o filenames
    fi
}
complete -F _kxdu kxdu
)";

std::string BashKind(const DescribedOption& option) {
    return IsFile(option) ? "-f" : IsFolder(option) ? "-d" : "";
}

std::string BashValueCases(const DescribedVerb& verb, const DescribedVerb& tool) {
    std::string text;
    for (const DescribedOption& option : verb.options) {
        if (option.value.empty()) {
            continue;
        }
        std::string patterns;
        for (const std::string& name : option.names) {
            patterns.append(patterns.empty() ? "" : " | ").append("\"" + PathOf(verb) + "/" + name + "\"");
        }
        text += "        " + patterns + ") words=\"" + Joined(SuggestedWords(option, tool)) +
                "\" kind=" + BashKind(option) + " options= ;;\n";
    }
    return text;
}

std::string BashVerbCase(const DescribedVerb& verb, const DescribedVerb& tool) {
    std::vector<std::string> words = WordsOfVerbs(verb);
    std::string kind;
    for (const DescribedOption& argument : verb.arguments) {
        const std::vector<std::string> suggested = SuggestedWords(argument, tool);
        words.insert(words.end(), suggested.begin(), suggested.end());
        kind = kind.empty() ? BashKind(argument) : "-f";
    }
    return "        \"" + PathOf(verb) + "/\"*) words=\"" + Joined(words) + "\" kind=" + kind + " options=\"" +
           Joined(NamesOfOptions(verb)) + "\" ;;\n";
}

}  // namespace

std::string BashCompletion(const DescribedVerb& tool) {
    std::string text = BASH_HEAD;
    std::vector<std::string> steps;
    std::string cases;
    for (const DescribedVerb* const verb : Flattened(tool)) {
        for (const DescribedVerb& inner : verb->verbs) {
            steps.push_back("\"" + PathOf(*verb) + "/" + inner.Word() + "\"");
        }
        cases += BashValueCases(*verb, tool) + BashVerbCase(*verb, tool);
    }
    text += "            " + Joined(steps, " | ") + ") verb=\"${verb:+$verb }$word\" ;;\n        esac\n    done\n";
    text += "    local words kind options\n    case \"$verb/$previous\" in\n" + cases + "    esac\n";
    return text + BASH_TAIL;
}

// ---- zsh ------------------------------------------------------------------------------------------------------------

namespace {

std::string ZshEscaped(std::string_view text) {
    std::string escaped;
    for (const char character : text) {
        escaped += std::string_view("[]:\\").find(character) == std::string_view::npos ? "" : "\\";
        escaped += character;
    }
    return escaped;
}

std::string ZshAction(const DescribedOption& option, const DescribedVerb& tool) {
    if (IsFile(option) || IsFolder(option)) {
        return IsFile(option) ? "_files" : "_files -/";
    }
    std::vector<std::string> words = SuggestedWords(option, tool);
    std::transform(words.begin(), words.end(), words.begin(), ZshEscaped);
    return words.empty() ? " " : "(" + Joined(words) + ")";
}

std::string ZshArguments(const DescribedVerb& verb, const DescribedVerb& tool) {
    std::string text = "    _arguments -s";
    for (const DescribedOption& option : verb.options) {
        const std::string times = option.isRepeated ? "*" : "(" + Joined(option.names) + ")";
        std::string about = "[" + ZshEscaped(Brief(option.description)) + "]";
        if (!option.value.empty()) {
            about.append(":").append(ZshEscaped(option.value)).append(":").append(ZshAction(option, tool));
        }
        for (const std::string& name : option.names) {
            text.append(" \\\n        ").append(InSingleQuotes(std::string(times).append(name).append(about)));
        }
    }
    for (const DescribedOption& argument : verb.arguments) {
        text += " \\\n        " + InSingleQuotes((argument.isRepeated ? "*:" : ":") + ZshEscaped(argument.value) + ":" +
                                                 ZshAction(argument, tool));
    }
    return text + "\n";
}

std::string ZshVerbs(const DescribedVerb& verb, const std::string& function) {
    std::string text = "    if (( CURRENT > 2 )) && (( $+functions[" + function +
                       "_$words[2]] )); then\n        local verb=" +
                       "$words[2]\n        shift words\n        (( CURRENT-- ))\n        " + function +
                       "_$verb\n        return\n    fi\n    local -a verbs=(\n";
    for (const DescribedVerb& inner : verb.verbs) {
        text += "        " + InSingleQuotes(ZshEscaped(inner.Word()) + ":" + ZshEscaped(inner.description)) + "\n";
    }
    return text + "    )\n    _describe -t verbs verb verbs\n";
}

std::string ZshFunctionName(const DescribedVerb& verb) {
    std::string name = "_" + verb.name;
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
}

}  // namespace

std::string ZshCompletion(const DescribedVerb& tool) {
    std::string text =
        "#compdef kxdu\n# Completes the command lines of kxdu in zsh. Made by kxdu from its own verbs.\n";
    for (const DescribedVerb* const verb : Flattened(tool)) {
        const std::string name = ZshFunctionName(*verb);
        text += "\n" + name + "() {\n" + (verb->verbs.empty() ? "" : ZshVerbs(*verb, name)) +
                ZshArguments(*verb, tool) + "}\n";
    }
    return text + "\n_kxdu \"$@\"\n";
}

// ---- fish -----------------------------------------------------------------------------------------------------------

namespace {

std::string FishQuoted(std::string_view text) {
    std::string quoted = "'";
    for (const char character : text) {
        quoted += character == '\'' || character == '\\' ? "\\" : "";
        quoted += character;
    }
    return quoted + "'";
}

// The condition under which this verb is the one that is typed.
std::string FishCondition(const DescribedVerb& verb) {
    std::string condition;
    const std::string path = PathOf(verb);
    for (std::size_t begin = 0; begin < path.size();) {
        const std::size_t end = std::min(path.find(' ', begin), path.size());
        condition +=
            (condition.empty() ? "" : "; and ") + ("__fish_seen_subcommand_from " + path.substr(begin, end - begin));
        begin = end + 1;
    }
    if (!verb.verbs.empty()) {
        condition +=
            (condition.empty() ? "" : "; and ") + ("not __fish_seen_subcommand_from " + Joined(WordsOfVerbs(verb)));
    }
    return condition;
}

// How fish completes the value of an option or argument.
std::string FishValue(const DescribedOption& option, const DescribedVerb& tool) {
    if (IsFile(option)) {
        return " -r -F";
    }
    if (IsFolder(option)) {
        return " -x -a '(__fish_complete_directories)'";
    }
    const std::vector<std::string> words = SuggestedWords(option, tool);
    return words.empty() ? " -x" : " -x -a " + FishQuoted(Joined(words));
}

std::string FishOption(const DescribedOption& option, const DescribedVerb& tool) {
    std::string text;
    for (const std::string& name : option.names) {
        text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    }
    return text + (option.value.empty() ? "" : FishValue(option, tool)) + " -d " +
           FishQuoted(Brief(option.description));
}

std::string FishArgument(const DescribedOption& argument, const DescribedVerb& tool) {
    if (IsFile(argument)) {
        return " -F";
    }
    const std::string value = FishValue(argument, tool);
    return value == " -x" ? "" : value.substr(value.find("-a") - 1);
}

}  // namespace

std::string FishCompletion(const DescribedVerb& tool) {
    std::string text =
        "# Completes the command lines of kxdu in fish. Made by kxdu from its own verbs.\n"
        "complete -c kxdu -f\n";
    for (const DescribedVerb* const verb : Flattened(tool)) {
        const std::string head = "complete -c kxdu -n " + FishQuoted(FishCondition(*verb));
        for (const DescribedVerb& inner : verb->verbs) {
            text += head + " -a " + inner.Word() + " -d " + FishQuoted(inner.description) + "\n";
        }
        for (const DescribedOption& option : verb->options) {
            text += head + FishOption(option, tool) + "\n";
        }
        for (const DescribedOption& argument : verb->arguments) {
            if (const std::string value = FishArgument(argument, tool); !value.empty()) {
                text += head + value + "\n";
            }
        }
    }
    return text;
}

}  // namespace NS_KX::NS_KXDU
