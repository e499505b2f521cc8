#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace NS_KX::NS_KXDU {

/// How a run ends, as the shell sees it.
enum class ExitCode : int {
    OK = 0,
    FOUND = 1,      ///< the run went through, but a line could not be converted or a finding was reported
    USAGE = 2,      ///< wrong arguments, or an input, inventory or configuration that cannot be read
    OUTPUT = 3,     ///< output could not be written: disk full, no such folder
    EXHAUSTED = 4,  ///< there was not enough memory
};

/// What a verb does once its arguments are parsed.
using Action = std::function<ExitCode()>;

/// Each adds one verb to `app`, with its options and its help; `action` is set if the user chooses the verb.
void AddDecode(CLI::App& app, Action& action);
void AddEncode(CLI::App& app, Action& action);
void AddCheck(CLI::App& app, Action& action);
void AddExplain(CLI::App& app, Action& action);
void AddSet(CLI::App& app, Action& action);
void AddTypes(CLI::App& app, Action& action);
void AddGet(CLI::App& app, Action& action);
void AddFilter(CLI::App& app, Action& action);
void AddStats(CLI::App& app, Action& action);
void AddReport(CLI::App& app, Action& action);
void AddNeType(CLI::App& app, Action& action);
void AddFb(CLI::App& app, Action& action);
void AddLevel(CLI::App& app, Action& action);
void AddPath(CLI::App& app, Action& action);
void AddCtp(CLI::App& app, Action& action);
void AddTables(CLI::App& app, Action& action);
void AddInventory(CLI::App& app, Action& action);
void AddSample(CLI::App& app, Action& action);
void AddHelp(CLI::App& app, Action& action);
void AddManual(CLI::App& app, Action& action);

}  // namespace NS_KX::NS_KXDU
