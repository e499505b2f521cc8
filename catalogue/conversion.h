/// What all conversions share, whatever the kind. Any thread.
#pragma once

#include <string>
#include <string_view>

#include "catalogue/kind.h"

namespace NS_KX {

/// Surroundings for reading an identifier by its text alone: no service of the process is asked, so what an index or a
/// file holds never changes its meaning.
inline constinit const NS_UTIL::Surroundings NO_SURROUNDINGS;

/// Throws `BadRecord` if the text `value` in `field` would cut the identifier there or break it into several lines.
void RequireWritable(const Field& field, std::string_view value);

/// Reads `fdn` as a `kind` into `record`, and writes that into `canonical`. Throws as `Kind::read` and `Kind::write`
/// do.
void Rewrite(const Kind& kind, std::string_view fdn, const NS_UTIL::Surroundings& surroundings, AnyRecord& record,
             std::string& canonical);

}  // namespace NS_KX
