#include "cli/colour.h"

#include <string_view>

#include <unistd.h>

#include "cli/verb.h"
#include "lines/terminal.h"

namespace NS_KX::NS_KXDU {

namespace {

bool IsForced(const char* variable) {
    const std::string_view value = FromEnvironment(variable);
    return !value.empty() && value != "0";
}

}  // namespace

void AddColourOption(Verb& verb, Colour& colour) {
    verb.AddChoice("--color", colour, {{"auto", Colour::AUTO}, {"always", Colour::ALWAYS}, {"never", Colour::NEVER}},
                   "When to use colours; by default auto: on a terminal, if TERM is not \"dumb\" and "
                   "NO_COLOR is not set; everywhere if FORCE_COLOR or CLICOLOR_FORCE is set, and NO_COLOR is not");
}

bool IsColoured(Colour colour, const std::string& output) {
    if (colour != Colour::AUTO) {
        return colour == Colour::ALWAYS;
    }
    if (!FromEnvironment("NO_COLOR").empty()) {
        return false;
    }
    if (IsForced("FORCE_COLOR") || IsForced("CLICOLOR_FORCE")) {
        return true;
    }
    return (output.empty() || output == "-") && IsCapableTerminal(STDOUT_FILENO);
}

}  // namespace NS_KX::NS_KXDU
