#pragma once

#include <cstddef>
#include <string_view>

namespace NS_KX {

/// The size in bytes of the character in UTF-8 that `text`, which is not empty, begins with; 0 if it begins with none.
/// As in RFC 3629: no overlong form, no surrogate, nothing past U+10FFFF.
constexpr std::size_t Utf8SequenceSize(std::string_view text) noexcept {
    const auto byteAt = [text](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    const unsigned first = byteAt(0);
    const std::size_t size = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    if ((first >= 0x80 && first < 0xC2) || first > 0xF4 || size > text.size()) {
        return 0;
    }
    // The first two bytes of an overlong form, a surrogate, or a code point past U+10FFFF.
    const unsigned second = size > 1 ? byteAt(1) : 0;
    if ((first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) || (first == 0xF0 && second < 0x90) ||
        (first == 0xF4 && second > 0x8F)) {
        return 0;
    }
    for (std::size_t at = 1; at < size; ++at) {
        if ((byteAt(at) & 0xC0U) != 0x80U) {
            return 0;
        }
    }
    return size;
}

}  // namespace NS_KX
