#pragma once

#include <string>

namespace NS_KX::NS_KXDU {

class Verb;

/// When the user wants colours.
enum class Colour { AUTO, ALWAYS, NEVER };

/// Adds `--color` to `verb`.
void AddColourOption(Verb& verb, Colour& colour);

/// Whether to colour what goes to `output`, the name of a file; empty: standard output. With `Colour::AUTO` the first
/// of these decides:
///  1. NO_COLOR is set: no
///  2. FORCE_COLOR or CLICOLOR_FORCE is set, and not to 0: yes
///  3. yes on a terminal, unless TERM is "dumb"
bool IsColoured(Colour colour, const std::string& output = {});

}  // namespace NS_KX::NS_KXDU
