/// What a verb is asked about: its positional arguments, or words on standard input.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace NS_KX::NS_KXDU {

class Verb;

/// The longest word on standard input, far longer than anything that a verb can be asked about. The limit keeps a
/// stream without blanks from filling the memory.
inline constexpr std::size_t LONGEST_WORD = 1024;

/// Whether there must be a positional argument.
enum class Presence { REQUIRED, OPTIONAL };

/// Adds the positional arguments to `verb`.
void AddAsked(Verb& verb, const std::string& name, std::vector<std::string>& asked, const std::string& help,
              Presence presence = Presence::REQUIRED);

/// Throws `Failure` with `Cause::INPUT` if standard input is the file that the answers are written to: an answer would
/// be asked about too.
void RefuseEndlessInput();

/// Calls `take` for each argument; for "-", calls it for each word on standard input as it comes. Throws `Failure` with
/// `Cause::INPUT` if standard input cannot be read or holds a word longer than `LONGEST_WORD`, for a word that is not
/// UTF-8, and as `RefuseEndlessInput` does.
void ForEachAsked(const std::vector<std::string>& asked, const std::function<void(const std::string&)>& take);

}  // namespace NS_KX::NS_KXDU
