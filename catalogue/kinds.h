/// Finds the kinds of identifiers and the tags of their levels. Any thread.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "catalogue/kind.h"

namespace NS_KX {

/// All kinds, containers first.
std::span<const Kind* const> AllKinds();

/// The kind of `fdn`; null if no kind ends in its last level.
const Kind* FindKind(std::string_view fdn);

/// Why `FindKind` finds none, for a message: the quoted tag of the last level follows.
inline constexpr std::string_view NO_KIND_ENDS_IN = "no kind of identifier ends in the level ";
/// The whole message.
std::string OfNoKind(std::string_view fdn);

/// The kind whose type is called `type`; null if there is none.
const Kind* FindKindByType(std::string_view type);

/// All tags, containers first.
std::span<const Tag* const> AllTags();

/// Tags consist of upper-case letters and digits.
constexpr bool IsTagCharacter(char character) noexcept {
    return (character >= 'A' && character <= 'Z') || (character >= '0' && character <= '9');
}

/// The tag of this name; null if it is unknown.
const Tag* FindTag(std::string_view name);

/// The field of this name in the records of `kind`; null if there is none.
const Field* FindField(const Kind& kind, std::string_view name);

/// Whether the records of some kind have a field of this name.
bool IsFieldOfSomeKind(std::string_view name);

}  // namespace NS_KX
