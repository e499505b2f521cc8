#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace NS_KXDU {

/// Whether text holds nothing but ASCII.
bool IsAscii(std::string_view text) noexcept;

/// Where the first byte sequence begins that is not UTF-8; text.size() when all of it is.
std::size_t FindInvalidUtf8(std::string_view text);

/// Text in double quotes for a message: cut when it has more than longest bytes, and without characters that would
/// steer a terminal.
std::string Quoted(std::string_view text, std::size_t longest = 60);
/// The same for a text that is of no use unless it is whole.
inline std::string QuotedWhole(std::string_view text) {
    return Quoted(text, std::string_view::npos);
}

}  // namespace NS_KXDU
