/// Finding the levels of an FDN that a reader wants: in one pass, without looking at the others' values.
///
/// Threads: any, a finder is not shared. Nothing allocates or throws.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

#include <kx_domain_util/separatorfinder.h>
#include <kx_platform/textutil.h>

namespace NS_UTIL::NS_FDN {

/// The tag of a level that a finder looks for, one to seven characters; an argument of templates.
struct Tag {
    static constexpr std::size_t LONGEST = 7;

    std::array<char, LONGEST> characters{};
    std::size_t size;

    template <std::size_t Size>
    consteval Tag(const char (&text)[Size]) : size(Size - 1) {
        static_assert(Size > 1 && Size - 1 <= LONGEST, "a tag of one to seven characters");
        for (std::size_t place = 0; place < size; ++place) {
            characters[place] = text[place];
        }
    }

    /// The tag as text, without "=".
    [[nodiscard]] constexpr std::string_view Text() const noexcept { return {characters.data(), size}; }

    friend bool operator==(const Tag&, const Tag&) = default;
};

// ---- How a tag is recognised: not for users
// --------------------------------------------------------------------------

namespace NS_DETAIL {

/// Up to eight characters as a number, the first lowest, so that they compare in one step.
constexpr std::uint64_t PackCharacters(std::string_view characters) noexcept {
    std::uint64_t packed = 0;
    for (std::size_t place = characters.size(); place > 0; --place) {
        packed = packed << 8U | static_cast<unsigned char>(characters[place - 1]);
    }
    return packed;
}

/// The first eight characters of `text` from `begin` on, packed. Bytes past the end of the text read as zero.
inline std::uint64_t PackHead(std::string_view text, const char* begin) noexcept {
    std::uint64_t packed = 0;
    const char* const end = text.data() + text.size();
    const auto size = static_cast<std::size_t>(end - begin);
    if constexpr (std::endian::native == std::endian::little) {
        if (size >= sizeof(packed)) [[likely]] {
            std::memcpy(&packed, begin, sizeof(packed));
            return packed;
        }
    }
    return PackCharacters({begin, std::min(size, sizeof(packed))});
}

/// Whether a level begins with this tag. `head` holds the level's first eight characters, packed.
template <Tag Wanted>
constexpr bool Begins(std::uint64_t head) noexcept {
    constexpr std::uint64_t MASK = ~std::uint64_t{} >> 8 * (sizeof(head) - Wanted.size);
    return (head & MASK) == PackCharacters(Wanted.Text());
}

/// The same for the tag and its "=".
template <Tag Wanted>
constexpr bool BeginsWithEquals(std::uint64_t head) noexcept {
    constexpr std::uint64_t MASK = ~std::uint64_t{} >> 8 * (sizeof(head) - Wanted.size - 1);
    constexpr std::uint64_t EXPECTED = PackCharacters(Wanted.Text()) | std::uint64_t{'='} << 8 * Wanted.size;
    return (head & MASK) == EXPECTED;
}

}  // namespace NS_DETAIL

// ---- What users need ------------------------------------------------------------------------------------------------

/// The levels of an FDN that a reader wants, found in one pass. The first of several levels with the same tag counts.
template <Tag... Tags>
class LevelFinder {
public:
    /// Searches `fdn`, which must outlive the finder.
    explicit LevelFinder(std::string_view fdn) noexcept {
        if (fdn.empty()) {
            return;
        }
        SeparatorFinder<','> levels(fdn);
        SeparatorFinder<','>::Piece level;
        do {
            level = levels.Next();
            KeepWanted(NS_DETAIL::PackHead(fdn, level.begin), level, std::index_sequence_for<decltype(Tags)...>());
        } while (!levels.IsLast(level) && m_missing != 0);
    }

    /// Whether there is a level of this tag, with or without sub-values.
    template <Tag Wanted>
    [[nodiscard]] bool Has() const noexcept {
        return (m_missing & 1U << IndexOf<Wanted>()) == 0;
    }

    /// Whether one of the tags may be there more than once. True does not prove it: a finder that has found all tags
    /// stops looking.
    [[nodiscard]] bool MayRepeat() const noexcept { return m_isRepeated || m_missing == 0; }

    /// The value of the level; empty if there is no such level.
    template <Tag Wanted>
    [[nodiscard]] std::string_view Value() const noexcept {
        return Has<Wanted>() ? std::string_view(m_begins[IndexOf<Wanted>()], m_ends[IndexOf<Wanted>()])
                             : std::string_view();
    }

    /// Reads the first sub-value as a number into `field`. False, and `field` untouched, if there is no such level or
    /// it has an empty value.
    template <Tag Wanted>
    bool ReadNumber(std::int32_t& field) const noexcept {
        const std::string_view value = Value<Wanted>();
        if (value.empty()) {
            return false;
        }
        field = Str2Int(value);  // stops at the "|" by itself
        return true;
    }

private:
    static constexpr std::size_t COUNT = sizeof...(Tags);

    template <Tag Wanted>
    static consteval std::size_t IndexOf() {
        constexpr std::array<Tag, COUNT> TAGS{Tags...};
        constexpr auto INDEX = static_cast<std::size_t>(std::find(TAGS.begin(), TAGS.end(), Wanted) - TAGS.begin());
        static_assert(INDEX < COUNT, "this finder does not look for that tag");
        return INDEX;
    }

    // Keeps `level` if it has one of the tags. `head` holds its first eight characters, packed.
    template <std::size_t... Indices>
    void KeepWanted(std::uint64_t head, SeparatorFinder<','>::Piece level, std::index_sequence<Indices...>) noexcept {
        const auto size = static_cast<std::size_t>(level.end - level.begin);
        // A level that is a tag and nothing more, without "=", is there and has an empty value.
        static_cast<void>(
            ((NS_DETAIL::BeginsWithEquals<Tags>(head) &&
              (Keep(Indices, level.begin + Tags.size + 1, level.end), true)) ||
             ...) ||
            ((size == Tags.size && NS_DETAIL::Begins<Tags>(head) && (Keep(Indices, level.end, level.end), true)) ||
             ...));
    }

    void Keep(std::size_t index, const char* begin, const char* end) noexcept {
        const unsigned bit = 1U << index;
        if ((m_missing & bit) == 0) {
            m_isRepeated = true;
            return;
        }
        m_begins[index] = begin;
        m_ends[index] = end;
        m_missing ^= bit;
    }

    std::array<const char*, COUNT> m_begins;  // only those of levels that are there are set
    std::array<const char*, COUNT> m_ends;
    unsigned m_missing = (1U << COUNT) - 1;  // a bit for each tag
    bool m_isRepeated = false;
};

}  // namespace NS_UTIL::NS_FDN
