#include <csignal>
#include <cstdio>
#include <exception>

#include <CLI/CLI.hpp>

#include "failure.h"
#include "verbs.h"

namespace NS_KXDU {

namespace {

constexpr auto EXAMPLES = R"(Examples:
  kxdu sample --ne 10 --seed 1 | kxdu decode | head -3
  kxdu check --inventory network.db network.fdn
  kxdu decode --help)";

int AsInt(ExitCode code) {
    return static_cast<int>(code);
}

// The one place where what went wrong becomes an exit code.
int Run(const Action& action) {
    try {
        return AsInt(action());
    } catch (const ClosedPipe&) {
        return AsInt(ExitCode::OK);
    } catch (const Failure& failure) {
        std::fprintf(stderr, "kxdu: %s\n", failure.what());
        return AsInt(failure.Code());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "kxdu: %s\n", error.what());
        return AsInt(ExitCode::USAGE);
    }
}

int Main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN);  // write tells us, and we end quietly
    CLI::App app("Reads, writes, checks and explains the identifiers of a telecom network", "kxdu");
    app.set_version_flag("--version", "kxdu " KX_VERSION);
    app.footer(EXAMPLES);
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
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? AsInt(ExitCode::OK) : AsInt(ExitCode::USAGE);
    }
    return Run(action);
}

}  // namespace

}  // namespace NS_KXDU

int main(int argc, char** argv) {
    return NS_KXDU::Main(argc, argv);
}
