/// Splits a text the plainest way; tests compare scanners and finders with it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace NS_TEST {

/// Returns the pieces between separators; a text has at least one.
inline std::vector<std::string> PiecesOneByOne(std::string_view text, char separator) {
    std::vector<std::string> pieces(1);
    for (const char character : text) {
        if (character == separator) {
            pieces.emplace_back();
        } else {
            pieces.back() += character;
        }
    }
    return pieces;
}

}  // namespace NS_TEST
