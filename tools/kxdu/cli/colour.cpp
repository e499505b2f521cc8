#include "cli/colour.h"

#include <cstdlib>
#include <string_view>

#include <unistd.h>

#include "cli/verb.h"
#include "lines/terminal.h"

namespace NS_KX::NS_KXDU {

namespace {

bool IsSet(const char* variable) {
    const char* const value = std::getenv(variable);  // NOLINT(concurrency-mt-unsafe): no other thread runs
    return value != nullptr && *value != '\0';
}

bool IsSetAndNotZero(const char* variable) {
    return IsSet(variable) && std::string_view(std::getenv(variable)) != "0";  // NOLINT(concurrency-mt-unsafe)
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
    if (IsSet("NO_COLOR")) {
        return false;
    }
    if (IsSetAndNotZero("FORCE_COLOR") || IsSetAndNotZero("CLICOLOR_FORCE")) {
        return true;
    }
    return (output.empty() || output == "-") && IsCapableTerminal(STDOUT_FILENO);
}

}  // namespace NS_KX::NS_KXDU
