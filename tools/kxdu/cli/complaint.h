/// What the tool answers to a command line that it does not understand.
#pragma once

#include <string>

namespace CLI {
class App;
class Error;
}  // namespace CLI

namespace NS_KX::NS_KXDU {

/// The name of a verb as the user types it: "kxdu inventory list".
std::string FullName(const CLI::App& verb);

/// Ends every complaint about the command line of `verb`, without a line end: the command that explains it.
std::string HelpHint(const CLI::App& verb);

/// The complaint that `app` has no verb named `verb`, with the nearest one that it has.
std::string UnknownVerb(const CLI::App& app, const std::string& verb);

/// The whole answer to `error`, which the parser threw. If only a verb is missing, it is the list of verbs.
std::string UsageText(const CLI::App* app, const CLI::Error& error);

}  // namespace NS_KX::NS_KXDU
