#include "cli/description.h"

#include <string_view>

#include <CLI/CLI.hpp>

#include "cli/complaint.h"

namespace NS_KX::NS_KXDU {

namespace {

// "auto|always|never" names all values; a name in capitals, like FILE, names none.
std::vector<std::string> WordsOf(std::string_view value) {
    std::vector<std::string> words;
    if (value.find('|') != std::string_view::npos) {
        for (const std::string& word : CLI::detail::split(std::string(value), '|')) {
            words.push_back(word);
        }
    }
    return words;
}

DescribedOption Describe(const CLI::Option& option) {
    DescribedOption described;
    const bool isArgument = option.get_positional();
    for (const std::string& name : option.get_snames()) {
        described.names.push_back("-" + name);
    }
    for (const std::string& name : option.get_lnames()) {
        described.names.push_back("--" + name);
    }
    if (isArgument) {
        described.names.push_back(option.get_name(true, false));
        described.value = described.names.back();
    } else if (option.get_items_expected_max() != 0) {
        described.value = option.get_type_name();
        described.words = WordsOf(described.value);
    }
    described.variable = option.get_envname();
    described.description = option.get_description();
    described.isRequired = option.get_required();
    described.isRepeated = option.get_expected_max() >= CLI::detail::expected_max_vector_size;
    return described;
}

}  // namespace

DescribedVerb Describe(const CLI::App& app) {
    DescribedVerb described;
    described.name = FullName(app);
    described.description = app.get_description();
    described.help = app.get_footer();
    for (const CLI::Option* const option : app.get_options()) {
        (option->get_positional() ? described.arguments : described.options).push_back(Describe(*option));
    }
    for (const CLI::App* const verb : app.get_subcommands({})) {
        if (!verb->get_group().empty()) {
            described.verbs.push_back(Describe(*verb));
        }
    }
    return described;
}

std::vector<const DescribedVerb*> Flattened(const DescribedVerb& verb) {
    std::vector<const DescribedVerb*> all{&verb};
    for (const DescribedVerb& inner : verb.verbs) {
        const auto below = Flattened(inner);
        all.insert(all.end(), below.begin(), below.end());
    }
    return all;
}

}  // namespace NS_KX::NS_KXDU
