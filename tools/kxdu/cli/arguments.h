/// CLI11 gives some arguments a meaning of their own: "[a,b]" is two values, "[]" and "{}" are none, "++" ends a verb
/// and "%%" a list; "--" ends the verb if it has an argument already. The first two functions hide such arguments from
/// it: each begins with a NUL byte, which no argument holds.
#pragma once

#include <string>
#include <vector>

namespace NS_KX::NS_KXDU {

/// The arguments of the command line as CLI11 gets them: without the program's name and the first "--", after which no
/// argument is an option; the last one first.
std::vector<std::string> HiddenArguments(int argc, const char* const* argv);

/// `argument` as it was given.
std::string AsGiven(const std::string& argument);

/// The parts of a list such as "NE,FR,PP:2"; an empty text between commas is a part too.
std::vector<std::string> SplitAtCommas(const std::string& list);

}  // namespace NS_KX::NS_KXDU
