#pragma once

#include <string_view>

namespace NS_STANDALONE {

/// Whether `text` is UTF-8 (RFC 3629: no overlong forms, no surrogates, nothing past U+10FFFF) without NUL.
constexpr bool IsUtf8Text(std::string_view text) noexcept {
    const auto byteAt = [text](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    for (std::size_t at = 0; at < text.size();) {
        const unsigned first = byteAt(at);
        const std::size_t size = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
        if (first == 0 || (first >= 0x80 && first < 0xC2) || first > 0xF4 || size > text.size() - at) {
            return false;
        }
        // The first two bytes of an overlong form, a surrogate, or a code point past U+10FFFF.
        const unsigned second = size > 1 ? byteAt(at + 1) : 0;
        if ((first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) || (first == 0xF0 && second < 0x90) ||
            (first == 0xF4 && second > 0x8F)) {
            return false;
        }
        for (std::size_t next = at + 1; next < at + size; ++next) {
            if ((byteAt(next) & 0xC0U) != 0x80U) {
                return false;
            }
        }
        at += size;
    }
    return true;
}

}  // namespace NS_STANDALONE
