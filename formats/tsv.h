/// Tab-separated values. Nothing is quoted: tab, carriage return and backslash are written \t, \r and \\.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "text/textbuffer.h"

namespace NS_KX {

/// Splits one row, a line without its end, into `fields`. These are views of `line`, or of `room` if a backslash was
/// taken out; they stay valid as long as both do. Throws std::runtime_error for a backslash before another character.
void SplitTsvLine(std::string_view line, std::vector<std::string_view>& fields, std::string& room);

/// Appends `field` to `out`.
void AppendTsvField(std::string_view field, TextBuffer& out);

}  // namespace NS_KX
