#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace NS_KX::NS_KXDU {

/// The greatest width of a line of help, in columns.
inline constexpr std::size_t HELP_WIDTH = 120;

/// Puts the words on lines of at most `width` columns, separated by blanks. The first line begins with `head`, the
/// others with as many blanks. The last line has no line end.
std::string Wrapped(const std::string& head, const std::vector<std::string>& words, std::size_t width = HELP_WIDTH);

}  // namespace NS_KX::NS_KXDU
