/// Splitting of text, and numbers from and to text.
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include <kx_platform/export.h>

namespace NS_UTIL {

/// Splits texts at a separator that is itself a text. Any thread.
class KX_PLATFORM_API Parser {
public:
    /// Appends the pieces of text between separators to out. Empty pieces between, before and behind separators are
    /// kept ("16||0|" gives 16, empty, 0, empty); an empty text appends nothing. An empty separator splits nothing.
    static void SplitStrByTag(const std::string& text, const std::string& separator, std::vector<std::string>& out);

    /// Cuts item at the first separator into name and value. Without a separator the whole item is the name, the value
    /// is empty, and the answer is false.
    static bool ParseItemNVByTag(const std::string& item, std::string& name, std::string& value,
                                 const std::string& separator);
};

/// Option of `SplitStringByTag`, a bit's position: empty tokens are kept, not dropped.
inline constexpr std::size_t KEEP_EMPTY_TOKENS = 0;

/// Appends the tokens of text between separators to out; empty tokens are dropped unless `KEEP_EMPTY_TOKENS` is set.
/// The other options are reserved. False when it produced no token. Any thread.
KX_PLATFORM_API bool SplitStringByTag(const std::string& text, std::vector<std::string>& out, char separator,
                                      std::bitset<8> options);

/// The number at the start of text as strtol reads it in base 10: leading blanks and one sign are accepted, reading
/// stops at the first character that is no digit, and text without digits gives 0. A number beyond 64 bits becomes the
/// nearest 64-bit one; then the low 32 bits are the answer, so 4294967295 gives -1. Throws nothing. Any thread.
constexpr int Str2Int(std::string_view text) noexcept {
    const char* at = text.data();
    const char* const end = at + text.size();
    while (at != end && (*at == ' ' || (*at >= '\t' && *at <= '\r'))) {
        ++at;
    }
    const bool negative = at != end && *at == '-';
    if (negative || (at != end && *at == '+')) {
        ++at;
    }
    const auto digitAt = [](const char* place) {
        return static_cast<unsigned>(static_cast<unsigned char>(*place)) - unsigned{'0'};
    };
    constexpr std::ptrdiff_t SAFE_DIGITS = std::numeric_limits<std::int64_t>::digits10;  // cannot overflow
    const char* const safeEnd = end - at > SAFE_DIGITS ? at + SAFE_DIGITS : end;
    std::uint64_t number = 0;
    for (; at != safeEnd && digitAt(at) <= 9; ++at) {
        number = number * 10 + digitAt(at);
    }
    constexpr std::uint64_t LARGEST = std::numeric_limits<std::int64_t>::max();
    const std::uint64_t largest = negative ? LARGEST + 1 : LARGEST;
    for (; at != end && digitAt(at) <= 9; ++at) {
        if (number > (largest - digitAt(at)) / 10) {
            number = largest;
            break;
        }
        number = number * 10 + digitAt(at);
    }
    return static_cast<int>(static_cast<std::uint32_t>(negative ? 0 - number : number));
}

/// The same into out, which is always written.
constexpr void Str2Int(std::string_view text, int& out) noexcept {
    out = Str2Int(text);
}

/// The decimal text of number, with a "-" when it is negative. Any thread.
KX_PLATFORM_API std::string Int2Str(int number);

}  // namespace NS_UTIL
