#include "cli/help.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>

#include <CLI/CLI.hpp>
#include <unistd.h>

#include "cli/helptext.h"
#include "cli/wrapping.h"
#include "lines/terminal.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr std::size_t LEAST_WIDTH = 50;
constexpr std::size_t VERB_COLUMN = 14;

// Of the terminal on standard error if the help goes into a pipe: most likely to a pager there.
std::size_t HelpWidth() {
    return std::clamp(ColumnsOf(STDOUT_FILENO, ColumnsOf(STDERR_FILENO, HELP_WIDTH)), LEAST_WIDTH, HELP_WIDTH);
}

class HelpFormatter : public CLI::Formatter {
public:
    HelpFormatter() {
        label("SUBCOMMAND", "VERB");
        label("Positionals", "Arguments");
    }

private:
    // The mode for "all" is the short help.
    std::string make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const override {
        std::string text = Filled(app->get_description(), 0) + "\n" + make_usage(app, name) + make_positionals(app) +
                           make_groups(app, CLI::AppFormatMode::Normal) +
                           make_subcommands(app, CLI::AppFormatMode::Normal) + "\n";
        if (mode != CLI::AppFormatMode::All) {
            return text + WrapHelp(app->get_footer(), m_width) + "\n";
        }
        const bool hasVerbs = !app->get_subcommands({}).empty();
        return text + "For more: " + name + (hasVerbs ? " --help, " + name + " VERB --help\n" : " --help\n");
    }

    std::string make_subcommand(const CLI::App* verb) const override {
        std::ostringstream out;
        CLI::detail::format_help(out, verb->get_name(), Filled(verb->get_description(), VERB_COLUMN), VERB_COLUMN);
        return out.str();
    }

    std::string make_option_desc(const CLI::Option* option) const override {
        return Filled(option->get_description(), get_column_width());
    }

    // Wraps a text that stands to the right of `column`.
    [[nodiscard]] std::string Filled(const std::string& text, std::size_t column) const {
        std::istringstream words(text);
        return Wrapped("", {std::istream_iterator<std::string>(words), {}}, m_width - column);
    }

    std::size_t m_width = HelpWidth();
};

}  // namespace

void SetUpHelp(CLI::App& app) {
    app.set_help_flag("--help", "Print this help: options, details, examples and exit codes");
    app.set_help_all_flag("-h", "Print the short help: options only");
    app.formatter(std::make_shared<HelpFormatter>());
}

}  // namespace NS_KX::NS_KXDU
