#include "text/displaytext.h"

#include <algorithm>
#include <array>

#include "text/utf8.h"

namespace NS_KX {

namespace {

constexpr std::string_view REPLACEMENT = "\xEF\xBF\xBD";

bool IsContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

// A code point, and its length in UTF-8 in bytes.
struct CodePoint {
    char32_t value;
    std::size_t size;
};

CodePoint FirstCodePoint(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text.front());
    std::size_t size = 1;
    while (size < text.size() && IsContinuation(text[size])) {
        ++size;
    }
    // The bits of the lead byte without those that count the length.
    char32_t value = size == 1 ? lead : lead & (0x7FU >> size);
    for (std::size_t at = 1; at < size; ++at) {
        value = value << 6U | (static_cast<unsigned char>(text[at]) & 0x3FU);
    }
    return {value, size};
}

bool IsControl(char32_t character) {
    const bool steersDirection =
        (character >= 0x202A && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069);
    return character < 0x20 || (character >= 0x7F && character < 0xA0) || steersDirection;
}

struct Range {
    char32_t first;
    char32_t last;
};

// Whole Unicode blocks: precise enough for names.
constexpr std::array<Range, 4> COMBINING{{{0x0300, 0x036F}, {0x200B, 0x200F}, {0x20D0, 0x20F0}, {0xFE00, 0xFE0F}}};
constexpr std::array<Range, 9> WIDE{{{0x1100, 0x115F},
                                     {0x2E80, 0x303E},
                                     {0x3041, 0xA4CF},
                                     {0xAC00, 0xD7A3},
                                     {0xF900, 0xFAFF},
                                     {0xFE30, 0xFE6F},
                                     {0xFF00, 0xFF60},
                                     {0x1F300, 0x1FAFF},
                                     {0x20000, 0x3FFFD}}};

template <class Ranges>
bool IsIn(const Ranges& ranges, char32_t character) {
    return std::any_of(ranges.begin(), ranges.end(),
                       [&](const Range& range) { return character >= range.first && character <= range.last; });
}

}  // namespace

std::string Printable(std::string_view text) {
    std::string printable;
    while (!text.empty()) {
        const std::size_t valid = FindInvalidUtf8(text);
        for (std::string_view rest = text.substr(0, valid); !rest.empty();) {
            const CodePoint point = FirstCodePoint(rest);
            printable += IsControl(point.value) ? REPLACEMENT : rest.substr(0, point.size);
            rest.remove_prefix(point.size);
        }
        text.remove_prefix(valid);
        if (!text.empty()) {
            printable += REPLACEMENT;
            text.remove_prefix(1);
        }
    }
    return printable;
}

std::size_t DisplayWidth(std::string_view text) {
    std::size_t width = 0;
    while (!text.empty()) {
        const CodePoint point = FirstCodePoint(text);
        if (!IsIn(COMBINING, point.value)) {
            width += IsIn(WIDE, point.value) ? 2 : 1;
        }
        text.remove_prefix(point.size);
    }
    return width;
}

}  // namespace NS_KX
