#include "cli/manual.h"

#include <filesystem>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "cli/completion.h"
#include "cli/verb.h"
#include "cli/verbs.h"
#include "lines/output.h"

namespace NS_KX::NS_KXDU {

namespace {

void Write(const std::filesystem::path& file, const std::string& text) {
    std::filesystem::create_directories(file.parent_path());
    WriteWhole(file, text);
}

ExitCode WriteManual(const CLI::App& app, const std::filesystem::path& folder) {
    const DescribedVerb tool = Describe(app);
    for (const DescribedVerb* const verb : Flattened(tool)) {
        Write(folder / "man/man1" / (ManualName(*verb) + ".1"), ManualPage(*verb, tool, app.version()));
    }
    Write(folder / "bash-completion/completions/kxdu", BashCompletion(tool));
    Write(folder / "zsh/vendor-completions/_kxdu", ZshCompletion(tool));
    Write(folder / "fish/vendor_completions.d/kxdu.fish", FishCompletion(tool));
    return ExitCode::OK;
}

}  // namespace

void AddManual(CLI::App& app, Action& action) {
    Verb verb(app, action, "manual", "Write the manual pages and the completions of shells");
    verb.Hide();
    const auto folder = std::make_shared<std::string>();
    verb.AddText("FOLDER", "", *folder, "Where they are written, as in /usr/share").Required();
    verb.SetAction([&app, folder] { return WriteManual(app, *folder); });
}

}  // namespace NS_KX::NS_KXDU
