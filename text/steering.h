/// Characters that would steer a terminal, or break a message into lines.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "text/utf8sequence.h"

namespace NS_KX {

/// Whether `character`, one in UTF-8, is a control character (C0, DEL, C1) or turns the direction of text.
constexpr bool IsSteering(std::string_view character) noexcept {
    const auto last = static_cast<unsigned char>(character.back());
    switch (character.size()) {
        case 1:
            return last < 0x20U || last == 0x7FU;
        case 2:
            return character[0] == '\xC2' && last <= 0x9FU;  // U+0080 to U+009F
        case 3:
            return (character.starts_with("\xE2\x80") && last >= 0xAAU && last <= 0xAEU) ||  // U+202A to U+202E
                   (character.starts_with("\xE2\x81") && last >= 0xA6U && last <= 0xA9U);    // U+2066 to U+2069
        default:
            return false;
    }
}

/// How many bytes `text` begins with that are UTF-8 and steer nothing.
constexpr std::size_t HarmlessSize(std::string_view text) noexcept {
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t size = Utf8SequenceSize(text.substr(at));
        if (size == 0 || IsSteering(text.substr(at, size))) {
            break;
        }
        at += size;
    }
    return at;
}

/// How many bytes the character has that `text`, which is not empty, begins with; 1 if it is not UTF-8.
constexpr std::size_t SizeOfFirst(std::string_view text) noexcept {
    const std::size_t size = Utf8SequenceSize(text);
    return size == 0 ? 1 : size;
}

/// Appends each byte of `bytes` as in "\x1b".
inline void AppendInHex(std::string& target, std::string_view bytes) {
    constexpr std::string_view DIGITS = "0123456789abcdef";
    for (const char each : bytes) {
        const auto byte = static_cast<unsigned char>(each);
        target.append("\\x").append(1, DIGITS[byte >> 4U]).append(1, DIGITS[byte & 0xFU]);
    }
}

}  // namespace NS_KX
