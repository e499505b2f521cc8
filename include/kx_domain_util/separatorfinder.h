/// Finding separators in text. Blocks of 64 characters become a word with one bit for each character, so that going
/// from one separator to the next takes a few steps, however many characters lie between them.
///
/// Nothing here reads a byte outside the text, allocates or throws. Any thread.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

// KX_DOMAIN_UTIL_PLAIN is for tests only: it selects the way of processors without SSE2 and NEON. Every file of a
// program that includes this header must be compiled with the same setting.
#if defined(__SSE2__) && !defined(KX_DOMAIN_UTIL_PLAIN)
#define KX_DOMAIN_UTIL_SSE2
#include <emmintrin.h>
#elif defined(__AARCH64EL__) && !defined(KX_DOMAIN_UTIL_PLAIN)
#define KX_DOMAIN_UTIL_NEON
#include <arm_neon.h>
#endif

// ---- How separators are found: not for users -----------------------------------------------------------------------

namespace NS_UTIL::NS_FDN::NS_DETAIL {

/// Characters per block: as many as the largest word has bits.
inline constexpr std::size_t BLOCK_SIZE = 64;

/// Returns where `separator` stands among the first `size` characters of `text`: bit i for the character at place i.
/// `size` is at most `BLOCK_SIZE`; `separator` is not NUL. In plain C++, one character at a time.
inline std::uint64_t FindPlainly(const char* text, std::size_t size, char separator) noexcept {
    std::uint64_t found = 0;
    for (std::size_t place = 0; place < size; ++place) {
        found |= std::uint64_t{text[place] == separator ? 1U : 0U} << place;
    }
    return found;
}

#if defined(KX_DOMAIN_UTIL_SSE2)

/// The same for 16 characters at once, which every x86-64 processor can do.
inline std::uint64_t Find16(const char* text, char separator) noexcept {
    const __m128i characters = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(characters, _mm_set1_epi8(separator))));
}

/// The same for eight characters.
inline std::uint64_t Find8(const char* text, char separator) noexcept {
    const __m128i characters = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(text));
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(characters, _mm_set1_epi8(separator))));
}

#elif defined(KX_DOMAIN_UTIL_NEON)

/// The same for 16 characters at once, which every 64-bit ARM processor can do.
inline std::uint64_t Find16(const char* text, char separator) noexcept {
    const uint8x16_t characters = vld1q_u8(reinterpret_cast<const std::uint8_t*>(text));
    const uint8x16_t matches = vceqq_u8(characters, vdupq_n_u8(static_cast<std::uint8_t>(separator)));
    // Each match keeps the bit of its place in its half; adding neighbours three times gathers the bits of a half.
    uint8x16_t bits = vandq_u8(matches, vreinterpretq_u8_u64(vdupq_n_u64(0x8040201008040201)));
    for (int round = 0; round < 3; ++round) {
        bits = vpaddq_u8(bits, bits);
    }
    return vgetq_lane_u16(vreinterpretq_u16_u8(bits), 0);
}

/// The same for eight characters.
inline std::uint64_t Find8(const char* text, char separator) noexcept {
    const uint8x8_t characters = vld1_u8(reinterpret_cast<const std::uint8_t*>(text));
    const uint8x8_t matches = vceq_u8(characters, vdup_n_u8(static_cast<std::uint8_t>(separator)));
    return vaddv_u8(vand_u8(matches, vcreate_u8(0x8040201008040201)));
}

#endif

#if defined(KX_DOMAIN_UTIL_SSE2) || defined(KX_DOMAIN_UTIL_NEON)

/// The same by the quickest way of the processor.
inline std::uint64_t FindSeparators(const char* text, std::size_t size, char separator) noexcept {
    // The last load reaches back over characters that were seen already: that sets the same bits once more.
    if (size >= 16) {
        std::uint64_t found = Find16(text + (size - 16), separator) << (size - 16);
        for (std::size_t place = 0; place < size - 16; place += 16) {
            found |= Find16(text + place, separator) << place;
        }
        return found;
    }
    return size >= 8 ? Find8(text, separator) | Find8(text + (size - 8), separator) << (size - 8)
                     : FindPlainly(text, size, separator);
}

#else

inline std::uint64_t FindSeparators(const char* text, std::size_t size, char separator) noexcept {
    return FindPlainly(text, size, separator);
}

#endif

}  // namespace NS_UTIL::NS_FDN::NS_DETAIL

// ---- What users need ------------------------------------------------------------------------------------------------

namespace NS_UTIL::NS_FDN {

/// Walks the pieces of a text between separators; a text has at least one piece. The separator is not NUL.
///
/// Do not pass a finder to functions that are not inlined: the compiler then keeps it in memory instead of registers.
template <char Separator>
class SeparatorFinder {
    static_assert(Separator != '\0');

public:
    /// Begins at the first piece of `text`, which must outlive the finder.
    explicit SeparatorFinder(std::string_view text) noexcept
        : m_begin(text.data() != nullptr ? text.data() : ""), m_end(m_begin + text.size()) {
        LoadBlock();
    }

    /// What stands between two separators, or between one and an end of the text.
    struct Piece {
        const char* begin;
        const char* end;  ///< the separator after the piece; the end of the text after the last
    };

    /// Returns the next piece. Must not be called again after the last.
    Piece Next() noexcept {
        if (m_found == 0) [[unlikely]] {
            LoadBlock();
        }
        const Piece piece{m_begin,
                          m_found != 0 ? m_block + static_cast<unsigned>(std::countr_zero(m_found)) : FindAfterBlock()};
        m_found &= m_found - 1;
        m_begin = piece.end + 1;
        return piece;
    }

    /// Whether `piece`, which the latest `Next` returned, is the last one of the text.
    [[nodiscard]] bool IsLast(const Piece& piece) const noexcept { return piece.end == m_end; }

private:
    // Looks at the text from the next piece on. The end of the text counts as a separator.
    void LoadBlock() noexcept {
        const auto size = static_cast<std::size_t>(m_end - m_begin);
        m_block = m_begin;
        m_found = size >= NS_DETAIL::BLOCK_SIZE
                      ? NS_DETAIL::FindSeparators(m_block, NS_DETAIL::BLOCK_SIZE, Separator)
                      : NS_DETAIL::FindSeparators(m_block, size, Separator) | std::uint64_t{1} << size;
    }

    // The end of a piece that is longer than a block.
    [[nodiscard]] const char* FindAfterBlock() const noexcept {
        const std::string_view rest(m_begin + NS_DETAIL::BLOCK_SIZE, m_end);
        const std::size_t found = rest.find(Separator);
        return found != std::string_view::npos ? rest.data() + found : m_end;
    }

    const char* m_begin;
    const char* m_end;
    const char* m_block;
    std::uint64_t m_found;
};

}  // namespace NS_UTIL::NS_FDN
