/// Finding separators in text: 64 characters at a time become a word with one bit for each, so that going from one
/// separator to the next costs a few steps however many characters lie between them.
///
/// Nothing here reads a byte outside of the text, allocates or throws.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace NS_UTIL::NS_FDN {

/// Where the two characters stand among the characters of a block: bit i for the character at place i.
struct SeparatorBits {
    std::uint64_t stops = 0;
    std::uint64_t marks = 0;
};

inline constexpr std::size_t BLOCK_SIZE = 64;

/// Up to seven characters as the low bytes of a word, the first lowest; the other bytes are 0.
constexpr std::uint64_t LoadFewCharacters(const char* text, std::size_t size) noexcept {
    std::uint64_t word = 0;
    for (std::size_t place = size; place > 0; --place) {
        word = word << 8U | static_cast<unsigned char>(text[place - 1]);
    }
    return word;
}

/// `SeparatorBits` of the first size characters of text, at most `BLOCK_SIZE`: in plain C++, one character at a time.
template <char Stop, char Mark>
SeparatorBits FindInBlockPlainly(const char* text, std::size_t size) noexcept {
    SeparatorBits bits;
    for (std::size_t place = 0; place < size; ++place) {
        bits.stops |= std::uint64_t{text[place] == Stop} << place;
        bits.marks |= std::uint64_t{text[place] == Mark} << place;
    }
    return bits;
}

#ifdef __SSE2__

/// The same 16 characters at a time, which every x86-64 processor can do.
template <char Stop, char Mark>
SeparatorBits FindInBlock(const char* text, std::size_t size) noexcept {
    constexpr std::size_t VECTOR = sizeof(__m128i);
    constexpr std::size_t HALF = VECTOR / 2;
    SeparatorBits bits;
    const auto add = [&bits](__m128i characters, std::size_t shiftLeft, std::size_t shiftRight) {
        const auto matches = [&](char wanted) {
            const int found = _mm_movemask_epi8(_mm_cmpeq_epi8(characters, _mm_set1_epi8(wanted)));
            return std::uint64_t{static_cast<unsigned>(found) >> shiftRight} << shiftLeft;
        };
        bits.stops |= matches(Stop);
        bits.marks |= matches(Mark);
    };
    const auto load = [text](std::size_t place) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + place));
    };
    std::size_t place = 0;
    for (; place + VECTOR <= size; place += VECTOR) {
        add(load(place), place, 0);
    }
    const std::size_t rest = size - place;
    if (rest == 0) {
        return bits;
    }
    if (size >= VECTOR) {  // the last 16 characters, of which those that are new count
        add(load(size - VECTOR), place, VECTOR - rest);
        return bits;
    }
    std::uint64_t low = 0;
    std::uint64_t high = 0;
    if (rest < HALF) {
        low = LoadFewCharacters(text, rest);
    } else {
        std::memcpy(&low, text, HALF);
        high = LoadFewCharacters(text + HALF, rest - HALF);
    }
    add(_mm_set_epi64x(static_cast<long long>(high), static_cast<long long>(low)), 0, 0);
    return bits;
}

#else

template <char Stop, char Mark>
SeparatorBits FindInBlock(const char* text, std::size_t size) noexcept {
    return FindInBlockPlainly<Stop, Mark>(text, size);
}

#endif

/// Walks a text from Stop to Stop, and tells the first Mark before each. Neither may be the character NUL.
template <char Stop, char Mark = Stop>
class SeparatorFinder {
    static_assert(Stop != '\0' && Mark != '\0');

public:
    explicit SeparatorFinder(std::string_view text) noexcept : m_text(text.data()), m_size(text.size()) {
        LoadBlock(0);
    }

    struct Found {
        std::size_t stop;  ///< where the next Stop is; the size of the text when there is none
        std::size_t mark;  ///< where the first Mark behind the last Stop is; not below `stop` when there is none
    };

    /// Goes on to the next Stop. Not to be called again when there was none.
    Found Next() noexcept {
        std::size_t earlierMark = m_size;
        while (m_bits.stops == 0) {
            if (m_bits.marks != 0) {
                earlierMark = std::min(earlierMark, PlaceOf(m_bits.marks));
            }
            LoadBlock(m_base + BLOCK_SIZE);
        }
        // Without a mark in this block the place is that of the block's end, which is behind the stop.
        const Found found{PlaceOf(m_bits.stops), std::min(earlierMark, PlaceOf(m_bits.marks))};
        m_bits.marks &= ~(m_bits.stops ^ (m_bits.stops - 1));
        m_bits.stops &= m_bits.stops - 1;
        return found;
    }

    [[nodiscard]] std::string_view Between(std::size_t begin, std::size_t end) const noexcept {
        return {m_text + begin, end - begin};
    }
    [[nodiscard]] std::size_t Size() const noexcept { return m_size; }
    [[nodiscard]] const char* End() const noexcept { return m_text + m_size; }

private:
    // The end of the text counts as a Stop: in the block that it is in, or in an empty one behind the last.
    void LoadBlock(std::size_t base) noexcept {
        m_base = base;
        const std::size_t size = m_size - base;
        m_bits = FindInBlock<Stop, Mark>(m_text + base, std::min(size, BLOCK_SIZE));
        if (size < BLOCK_SIZE) {
            m_bits.stops |= std::uint64_t{1} << size;
        }
    }

    [[nodiscard]] std::size_t PlaceOf(std::uint64_t bits) const noexcept {
        return m_base + static_cast<std::size_t>(std::countr_zero(bits));
    }

    const char* m_text;
    std::size_t m_size;
    std::size_t m_base = 0;
    SeparatorBits m_bits;
};

}  // namespace NS_UTIL::NS_FDN
