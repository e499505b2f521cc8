#include <csignal>
#include <exception>
#include <filesystem>
#include <new>
#include <sstream>
#include <string>
#include <utility>

#include <CLI/CLI.hpp>
#include <fcntl.h>
#include <unistd.h>

#include "cli/arguments.h"
#include "cli/complaint.h"
#include "cli/help.h"
#include "cli/verbs.h"
#include "lines/descriptor.h"
#include "lines/failure.h"
#include "lines/output.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  kxdu sample --ne 10 --seed 1 | kxdu decode | head -3
  kxdu check --inventory network.db network.fdn
  kxdu help decode

Each verb lists its exit codes. Every verb ends with 4 when the memory is exhausted.)";

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
    SetUpHelp(app);
    app.set_version_flag("-V,--version", "kxdu " KX_VERSION, "Print the version");
    app.footer(HELP);
    app.failure_message(UsageText);
    app.require_subcommand(1);
    Action action;
    AddDecode(app, action);
    AddEncode(app, action);
    AddCheck(app, action);
    AddExplain(app, action);
    AddGet(app, action);
    AddSet(app, action);
    AddFilter(app, action);
    AddStats(app, action);
    AddReport(app, action);
    AddNeType(app, action);
    AddFb(app, action);
    AddLevel(app, action);
    AddPath(app, action);
    AddCtp(app, action);
    AddTypes(app, action);
    AddTables(app, action);
    AddInventory(app, action);
    AddSample(app, action);
    AddHelp(app, action);
    AddManual(app, action);
    try {
        app.parse(HiddenArguments(argc, argv));
    } catch (const CLI::ParseError& error) {
        std::ostringstream answer;
        std::ostringstream complaint;
        if (app.exit(error, answer, complaint) != 0) {
            WriteMessage(complaint.str());
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
