/// The kinds of identifier and the tags of their levels, found by what an identifier says. Any thread.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/kind.h"

namespace NS_KX {

/// All kinds, containers first.
std::span<const Kind* const> AllKinds();

/// The kind of `fdn`; null when its last level means none.
const Kind* FindKind(std::string_view fdn);

/// The kind whose type is called `type`; null when there is none.
const Kind* FindKindByType(std::string_view type);

/// All tags, containers first.
std::span<const Tag* const> AllTags();

/// The tag of this name; null when it is unknown.
const Tag* FindTag(std::string_view name);

/// The field of this name in the records of `kind`; null when there is none.
const Field* FindField(const Kind& kind, std::string_view name);

/// Throws `BadRecord` if an identifier that is written with `value` in `field`, a text, would be cut there or would not
/// be one line.
void RequireWritable(const Field& field, std::string_view value);

/// Reads `fdn` as a `kind` and writes what was read into `canonical`, by way of `record`. Throws as `Kind::read` and
/// `Kind::write` do.
void Rewrite(const Kind& kind, std::string_view fdn, const NS_UTIL::Surroundings& surroundings, AnyRecord& record,
             std::string& canonical);

}  // namespace NS_KX
