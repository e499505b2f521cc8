#pragma once

namespace CLI {
class App;
}

namespace NS_KX::NS_KXDU {

/// Gives `app`, and the verbs that are added to it later, their help: -h, the short one, and --help. Both are wrapped
/// to the width of the terminal, at most `HELP_WIDTH`.
void SetUpHelp(CLI::App& app);

}  // namespace NS_KX::NS_KXDU
