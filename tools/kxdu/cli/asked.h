/// What a verb is asked about: its positional arguments, or words on standard input.
#pragma once

#include <string>
#include <vector>

namespace NS_KXDU {

class Verb;

/// Adds the positional arguments to verb, at least one.
void AddAsked(Verb& verb, const std::string& name, std::vector<std::string>& asked, const std::string& help);

/// The arguments, with the words of standard input in the place of "-". Throws `Failure` with `ExitCode::USAGE` when it
/// cannot be read.
std::vector<std::string> AllAsked(const std::vector<std::string>& asked);

}  // namespace NS_KXDU
