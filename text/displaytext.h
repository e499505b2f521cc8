/// Text as a terminal shows it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace NS_KX {

/// `text` without what would steer the terminal: control characters, and bytes that are not UTF-8, become U+FFFD each.
std::string Printable(std::string_view text);

/// How many columns a terminal needs for `text`, which is printable: wide characters take two, combining marks none.
std::size_t DisplayWidth(std::string_view text);

}  // namespace NS_KX
