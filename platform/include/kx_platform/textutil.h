/// Splitting of text, and numbers from and to text. Exceptions: std::bad_alloc, which leaves what is written to as it
/// was.
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
    /// Appends the pieces of `text` between separators to `out`. Empty pieces between, before and after separators are
    /// kept ("16||0|" gives 16, empty, 0, empty); an empty `text` appends nothing. An empty `separator` splits nothing.
    static void SplitStrByTag(const std::string& text, const std::string& separator, std::vector<std::string>& out);

    /// Cuts `item` at the first `separator` into `name` and `value`. False if there is none, or `separator` is empty:
    /// the whole `item` is the name then, and the value is empty.
    static bool ParseItemNVByTag(const std::string& item, std::string& name, std::string& value,
                                 const std::string& separator);
};

/// Option of `SplitStringByTag`, a bit's position: empty tokens are kept, not dropped.
inline constexpr std::size_t KEEP_EMPTY_TOKENS = 0;

/// Appends the tokens of `text` between separators to `out`; empty tokens are dropped unless `KEEP_EMPTY_TOKENS` is set
/// in `options`, whose other bits are reserved. False if `text` has no token. Any thread.
KX_PLATFORM_API bool SplitStringByTag(const std::string& text, std::vector<std::string>& out, char separator,
                                      std::bitset<8> options);

/// The number at the start of `text` as strtol reads it in base 10: leading blanks and one sign are accepted, reading
/// stops at the first character that is no digit, and a text without digits gives 0. A number beyond 64 bits becomes
/// the nearest 64-bit one; then the low 32 bits are the answer, so 4294967295 gives -1. Throws nothing. Any thread.
constexpr int Str2Int(std::string_view text) noexcept;

/// The same into `out`, which is always written.
constexpr void Str2Int(std::string_view text, int& out) noexcept {
    out = Str2Int(text);
}

/// The decimal text of `number`, with a "-" if it is negative. Any thread.
KX_PLATFORM_API std::string Int2Str(int number);

// ---- How Str2Int reads ----------------------------------------------------------------------------------------------

namespace NS_DETAIL {

constexpr unsigned DigitOf(char character) noexcept {
    return static_cast<unsigned>(static_cast<unsigned char>(character)) - unsigned{'0'};  // above 9: no digit
}

constexpr int Low32Bits(std::uint64_t number, bool isNegative) noexcept {
    return static_cast<int>(static_cast<std::uint32_t>(isNegative ? 0 - number : number));
}

/// `Str2Int` of any `text`. Not inlined: it is rarely called, and its size keeps the common path from being inlined.
[[gnu::noinline]] constexpr int ReadAnyNumber(std::string_view text) noexcept {
    const char* at = text.data();
    const char* const end = at + text.size();
    while (at != end && (*at == ' ' || (*at >= '\t' && *at <= '\r'))) {
        ++at;
    }
    const bool isNegative = at != end && *at == '-';
    if (isNegative || (at != end && *at == '+')) {
        ++at;
    }
    constexpr std::uint64_t LARGEST = std::numeric_limits<std::int64_t>::max();
    const std::uint64_t largest = isNegative ? LARGEST + 1 : LARGEST;
    std::uint64_t number = 0;
    for (; at != end && DigitOf(*at) <= 9; ++at) {
        if (number > (largest - DigitOf(*at)) / 10) {
            number = largest;
            break;
        }
        number = number * 10 + DigitOf(*at);
    }
    return Low32Bits(number, isNegative);
}

}  // namespace NS_DETAIL

// Nearly every number is a few digits: those are read here, and only the rest takes the long way.
constexpr int Str2Int(std::string_view text) noexcept {
    constexpr std::size_t SAFE_SIZE = std::numeric_limits<std::int64_t>::digits10;  // cannot overflow
    if (text.empty() || text.size() > SAFE_SIZE || NS_DETAIL::DigitOf(text.front()) > 9) {
        return NS_DETAIL::ReadAnyNumber(text);
    }
    const char* at = text.data();
    const char* const end = at + text.size();
    std::uint64_t number = NS_DETAIL::DigitOf(*at);
    while (++at != end && NS_DETAIL::DigitOf(*at) <= 9) {
        number = number * 10 + NS_DETAIL::DigitOf(*at);
    }
    return NS_DETAIL::Low32Bits(number, false);
}

}  // namespace NS_UTIL
