#pragma once

#include <string>
#include <string_view>

namespace NS_KX {
struct Kind;
}

namespace NS_KX::NS_KXDU {

class Verb;
class VerbOption;

/// Adds `--as` to `verb`.
VerbOption AddTypeOption(Verb& verb, std::string& type, const std::string& help);

/// The kind that `--as` names; null if it was not given. Throws as `RequireKind` does.
const Kind* ChosenKind(const std::string& type);

/// The kind of this type, in any case; null if there is none.
const Kind* FindKindInAnyCase(std::string_view type);

/// The same. Throws `Failure` with `Cause::INPUT` for an unknown type; the message begins with `source`, and names the
/// nearest type, or all.
const Kind& RequireKind(const std::string& type, const std::string& source = {});

/// The names of all types, wrapped to the width of the help.
std::string TypeNames();

}  // namespace NS_KX::NS_KXDU
