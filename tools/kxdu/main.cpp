#include <algorithm>
#include <csignal>
#include <exception>
#include <filesystem>
#include <iterator>
#include <memory>
#include <new>
#include <sstream>
#include <string>
#include <utility>

#include <CLI/CLI.hpp>
#include <fcntl.h>
#include <unistd.h>

#include "cli/arguments.h"
#include "cli/verbs.h"
#include "lines/descriptor.h"
#include "lines/failure.h"
#include "lines/output.h"
#include "text/text.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  kxdu sample --ne 10 --seed 1 | kxdu decode | head -3
  kxdu check --inventory network.db network.fdn
  kxdu help decode

Each verb lists its exit codes. Every verb ends with 4 when the memory is exhausted.)";

// Wraps the descriptions of options, which CLI11 prints in one line each.
class HelpFormatter : public CLI::Formatter {
public:
    HelpFormatter() { label("SUBCOMMAND", "VERB"); }

private:
    std::string make_option_desc(const CLI::Option* option) const override {
        std::istringstream words(CLI::Formatter::make_option_desc(option));
        return Wrapped("", {std::istream_iterator<std::string>(words), {}}, HELP_WIDTH - get_column_width());
    }
};

int AsInt(ExitCode code) {
    return static_cast<int>(code);
}

// The one place that turns a failure into an exit code.
int Run(const Action& action) {
    try {
        return AsInt(action());
    } catch (const ClosedPipe&) {
        return AsInt(ExitCode::OK);
    } catch (const Failure& failure) {
        WriteMessage(std::string("kxdu: ") + failure.what() + "\n");
        return AsInt(failure.GetCause() == Cause::OUTPUT ? ExitCode::OUTPUT : ExitCode::USAGE);
    } catch (const std::bad_alloc&) {
        WriteMessage("kxdu: the memory is exhausted\n");
        return AsInt(ExitCode::EXHAUSTED);
    } catch (const std::filesystem::filesystem_error& error) {
        const std::string file = error.path1().empty() ? "the current folder" : error.path1().string();
        WriteMessage("kxdu: " + file + ": " + error.code().message() + "\n");
        return AsInt(ExitCode::USAGE);
    } catch (const std::exception& error) {
        WriteMessage(std::string("kxdu: ") + error.what() + "\n");
        return AsInt(ExitCode::USAGE);
    }
}

// CLI11 has one message for a missing and an unknown verb ("subcommand required"), and another that names no reason for
// options before the verb. This says what is wrong.
std::string UsageText(const CLI::App* app, const CLI::Error& error) {
    const auto inFront = app->remaining();
    const auto option = std::find_if(inFront.begin(), inFront.end(),
                                     [](const std::string& argument) { return argument.starts_with('-'); });
    const bool isOptionInFront = option != inFront.end() && !app->get_subcommands().empty();
    while (!app->get_subcommands().empty()) {
        app = app->get_subcommands().front();
    }
    std::string text = error.what();
    if (isOptionInFront) {
        text = *option + " stands before the verb; options go after it";
    } else if (app->get_require_subcommand_min() != 0) {
        const auto unknown = app->remaining();
        text = unknown.empty() ? "a verb is missing" : UnknownVerb(*app, AsGiven(unknown.front()));
    } else if (const auto unexpected = app->remaining(); dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) {
        text = unexpected.size() == 1 ? "The following argument was not expected:"
                                      : "The following arguments were not expected:";
        for (const std::string& argument : unexpected) {
            text += " " + AsGiven(argument);
        }
    }
    return "kxdu: " + text + HELP_HINT + "\n";
}

// If the caller closed a standard stream, the next file that we open would take its number, and messages would go into
// that file. /dev/null takes the number instead, opened so that using the stream is still an error.
void HoldStandardStreams() {
    for (const auto& [stream, mode] :
         {std::pair(STDIN_FILENO, O_WRONLY), std::pair(STDOUT_FILENO, O_RDONLY), std::pair(STDERR_FILENO, O_RDONLY)}) {
        if (fcntl(stream, F_GETFD) == -1) {
            static_cast<void>(open("/dev/null", mode));  // takes the lowest number that is free
        }
    }
}

int Main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN);  // write() fails instead, and the run ends quietly
    std::signal(SIGXFSZ, SIG_IGN);  // write() fails instead if a file must not grow
    HoldStandardStreams();
    CLI::App app("Reads, writes, checks and explains the identifiers of a telecom network", "kxdu");
    app.set_version_flag("--version", "kxdu " KX_VERSION);
    app.formatter(std::make_shared<HelpFormatter>());
    app.footer(HELP);
    app.failure_message(UsageText);
    app.require_subcommand(1);
    Action action;
    AddDecode(app, action);
    AddEncode(app, action);
    AddCheck(app, action);
    AddExplain(app, action);
    AddGet(app, action);
    AddFilter(app, action);
    AddNeType(app, action);
    AddFb(app, action);
    AddLevel(app, action);
    AddPath(app, action);
    AddCtp(app, action);
    AddTables(app, action);
    AddInventory(app, action);
    AddSample(app, action);
    AddHelp(app, action);
    try {
        app.parse(HiddenArguments(argc, argv));
    } catch (const CLI::ParseError& error) {
        std::ostringstream answer;
        if (app.exit(error, answer) != 0) {
            return AsInt(ExitCode::USAGE);
        }
        action = [text = answer.str()] {
            WriteWhole({}, text);
            return ExitCode::OK;
        };
    }
    return Run(action);
}

}  // namespace

}  // namespace NS_KX::NS_KXDU

int main(int argc, char** argv) {
    return NS_KX::NS_KXDU::Main(argc, argv);
}
