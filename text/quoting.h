/// Text from outside, quoted in messages.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace NS_KX {

/// Appends `text` in double quotes to a message. Cuts it if it has more than `longest` bytes, and replaces characters
/// that would steer a terminal.
void AppendQuoted(std::string& message, std::string_view text, std::size_t longest = 60);
/// The quoted text by itself.
inline std::string Quoted(std::string_view text, std::size_t longest = 60) {
    std::string quoted;
    AppendQuoted(quoted, text, longest);
    return quoted;
}

/// The same for a text that must not be cut.
inline std::string QuotedWhole(std::string_view text) {
    return Quoted(text, std::string_view::npos);
}

}  // namespace NS_KX
