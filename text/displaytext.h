/// Text as a terminal shows it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace NS_KX {

/// `text` made harmless for a terminal: each control character, and each byte that is not UTF-8, becomes U+FFFD.
std::string Printable(std::string_view text);

/// How many columns a terminal needs for printable `text`. Wide characters take two, combining marks none.
std::size_t DisplayWidth(std::string_view text);

}  // namespace NS_KX
