/// Reading of FDN text: the one place that knows where a level, a tag and a sub-value begin and end. Nothing here
/// allocates; all answers are views of the text, so that a place in the text can be told from them.
///
/// For those who look at the text itself; whoever wants records takes `resIDUtil.h`. Threads: any, scanners are not
/// shared. Nothing throws.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include <kx_domain_util/export.h>
#include <kx_domain_util/separatorfinder.h>
#include <kx_platform/textutil.h>

namespace NS_UTIL::NS_FDN {

/// One level: "tag=value". Without "=" all of it is the tag, and the value is empty.
struct Level {
    std::string_view tag;
    std::string_view value;

    /// Whether there is an "=". Without one the value begins where the tag ends.
    [[nodiscard]] bool HasEquals() const noexcept { return value.data() != tag.data() + tag.size(); }
};

/// Splits one level at its first "=".
KX_DOMAIN_UTIL_API Level SplitLevel(std::string_view text) noexcept;

/// Walks the sub-values of a level's value, "a|b|c". An empty value has none; otherwise empty sub-values count.
class SubValueScanner {
public:
    explicit SubValueScanner(std::string_view value) noexcept : m_bars(value), m_more(!value.empty()) {}

    /// Gives the next sub-value; false when there is none.
    bool Next(std::string_view& subValue) noexcept {
        if (!m_more) {
            return false;
        }
        const std::size_t end = m_bars.Next().stop;
        subValue = m_bars.Between(m_begin, end);
        m_more = end != m_bars.Size();
        m_begin = end + 1;
        return true;
    }

private:
    SeparatorFinder<'|'> m_bars;
    std::size_t m_begin = 0;
    bool m_more;
};

/// The first sub-values of a level, as many as the array has places; the rest is not looked at.
template <std::size_t Places>
struct SubValues {
    std::array<std::string_view, Places> texts;
    std::size_t count = 0;

    explicit SubValues(std::string_view value) noexcept {
        SubValueScanner scanner(value);
        while (count < Places && scanner.Next(texts[count])) {
            ++count;
        }
    }
};

/// A tag as a number, so that it compares in one step: its characters, at most seven, the first lowest, and its length
/// on top. Longer tags, which no reader asks for, and the empty one are 0.
constexpr std::uint64_t PackTag(std::string_view tag) noexcept {
    constexpr std::size_t LONGEST = 7;
    return tag.size() > LONGEST ? 0 : LoadFewCharacters(tag.data(), tag.size()) | std::uint64_t{tag.size()} << 56U;
}

/// The tag that `PackTag` made a number of; empty for 0. Allocates, unlike everything else here.
inline std::string UnpackTag(std::uint64_t packed) {
    std::string tag(packed >> 56U, '\0');
    for (char& character : tag) {
        character = static_cast<char>(packed & 0xFFU);
        packed >>= 8U;
    }
    return tag;
}

/// Walks the levels of an FDN in one pass. An empty FDN has none; otherwise an empty piece between commas is a level
/// with an empty tag.
class LevelScanner {
public:
    explicit LevelScanner(std::string_view fdn) noexcept : m_separators(fdn), m_more(!fdn.empty()) {}

    /// Gives the next level; false behind the last.
    bool Next(Level& level) noexcept {
        if (!m_more) {
            return false;
        }
        const auto [comma, equals] = m_separators.Next();
        const bool hasEquals = equals < comma;
        level.tag = m_separators.Between(m_begin, hasEquals ? equals : comma);
        level.value = m_separators.Between(hasEquals ? equals + 1 : comma, comma);
        m_more = comma != m_separators.Size();
        m_begin = comma + 1;
        return true;
    }

    /// Whether `Next` has another level to give.
    [[nodiscard]] bool HasMore() const noexcept { return m_more; }

    /// `PackTag` of a tag that this scanner gave: in one load, unless the text ends right behind it.
    [[nodiscard]] std::uint64_t Pack(std::string_view tag) const noexcept {
        const std::uint64_t size = tag.size();
        std::uint64_t packed = 0;
        if (std::endian::native != std::endian::little || size >= sizeof(packed) ||
            m_separators.End() - tag.data() < static_cast<std::ptrdiff_t>(sizeof(packed))) {
            return PackTag(tag);
        }
        std::memcpy(&packed, tag.data(), sizeof(packed));
        return (packed & ((std::uint64_t{1} << 8 * size) - 1)) | size << 56U;
    }

private:
    SeparatorFinder<',', '='> m_separators;
    std::size_t m_begin = 0;
    bool m_more;
};

/// Tells in one step which of a few packed tags a tag is: each has a place of its own in a small table, found by a
/// multiplication that is searched for when the program is compiled.
template <std::size_t Tags>
class TagTable {
public:
    consteval explicit TagTable(const std::array<std::uint64_t, Tags>& tags) : m_multiplier(FindMultiplier(tags)) {
        for (unsigned index = 0; index < Tags; ++index) {
            m_places[PlaceOf(tags[index], m_multiplier)] = {tags[index], index};
        }
    }

    /// The index of tag; the number of tags when it is none of them.
    [[nodiscard]] constexpr unsigned IndexOf(std::uint64_t tag) const noexcept {
        const Place& place = m_places[PlaceOf(tag, m_multiplier)];
        return place.tag == tag ? place.index : Tags;
    }

private:
    struct Place {
        std::uint64_t tag = 0;
        unsigned index = Tags;
    };

    static constexpr unsigned PLACE_BITS = 4;
    static_assert(Tags <= (1U << PLACE_BITS) / 2);

    static constexpr std::size_t PlaceOf(std::uint64_t tag, std::uint64_t multiplier) noexcept {
        return (tag * multiplier) >> (64 - PLACE_BITS);
    }

    static constexpr std::uint64_t FindMultiplier(const std::array<std::uint64_t, Tags>& tags) {
        std::uint64_t multiplier = 0x9E3779B97F4A7C15;
        while (true) {
            unsigned taken = 0;
            for (const std::uint64_t tag : tags) {
                taken |= 1U << PlaceOf(tag, multiplier);
            }
            if (std::popcount(taken) == static_cast<int>(Tags)) {
                return multiplier;
            }
            multiplier = multiplier * 6364136223846793005U + 1442695040888963406U;
        }
    }

    std::uint64_t m_multiplier;
    std::array<Place, 1U << PLACE_BITS> m_places{};
};

/// The levels of an FDN that a reader wants, found in one pass. Of a repeated tag the first counts.
template <std::uint64_t... Tags>
class LevelFinder {
    static_assert(((Tags != 0) && ...), "a tag of one to seven characters");

public:
    explicit LevelFinder(std::string_view fdn) noexcept {
        LevelScanner scanner(fdn);
        Level level;
        unsigned found = 0;
        while (found != ALL && scanner.Next(level)) {
            const unsigned index = TABLE.IndexOf(scanner.Pack(level.tag));
            const unsigned bit = 1U << index & ALL;
            if ((bit & ~found) != 0) {
                found |= bit;
                m_values[index] = {level.value.data(), level.value.size()};
            }
        }
        m_found = found;
    }

    /// Whether there is a level of this tag, with or without sub-values.
    template <std::uint64_t Tag>
    [[nodiscard]] bool Has() const noexcept {
        return (m_found >> IndexOf<Tag>() & 1U) != 0;
    }

    /// The value of the level; empty when there is no such level.
    template <std::uint64_t Tag>
    [[nodiscard]] std::string_view Value() const noexcept {
        if (!Has<Tag>()) {
            return {};
        }
        const Text& text = m_values[IndexOf<Tag>()];
        return {text.data, text.size};
    }

    /// Reads the first sub-value as a number into field. False, and field untouched, when there is no such level or it
    /// has an empty value.
    template <std::uint64_t Tag>
    bool ReadNumber(std::int32_t& field) const noexcept {
        const std::string_view value = Value<Tag>();
        if (value.empty()) {
            return false;
        }
        field = Str2Int(value);  // stops at the "|" by itself
        return true;
    }

private:
    static constexpr TagTable<sizeof...(Tags)> TABLE{std::array<std::uint64_t, sizeof...(Tags)>{Tags...}};
    static constexpr unsigned ALL = (1U << sizeof...(Tags)) - 1;

    template <std::uint64_t Tag>
    static consteval unsigned IndexOf() {
        constexpr unsigned index = TABLE.IndexOf(Tag);
        static_assert(index < sizeof...(Tags), "this finder does not look for that tag");
        return index;
    }

    struct Text {
        const char* data;
        std::size_t size;
    };

    unsigned m_found;
    std::array<Text, sizeof...(Tags)> m_values;  // of the found ones only: the others are not initialised
};

/// The tags that readers ask for.
namespace TAG {
inline constexpr std::uint64_t OS = PackTag("OS");
inline constexpr std::uint64_t ONE = PackTag("ONE");
inline constexpr std::uint64_t NE = PackTag("NE");
inline constexpr std::uint64_t FR = PackTag("FR");
inline constexpr std::uint64_t S = PackTag("S");
inline constexpr std::uint64_t SS = PackTag("SS");
inline constexpr std::uint64_t PP = PackTag("PP");
inline constexpr std::uint64_t LP = PackTag("LP");
inline constexpr std::uint64_t SUBIF = PackTag("SUBIF");
inline constexpr std::uint64_t VR = PackTag("VR");
inline constexpr std::uint64_t AP = PackTag("AP");
inline constexpr std::uint64_t VEGROUP = PackTag("VEGROUP");
inline constexpr std::uint64_t PWE3 = PackTag("PWE3");
inline constexpr std::uint64_t NETH = PackTag("NETH");
inline constexpr std::uint64_t VSI = PackTag("VSI");
inline constexpr std::uint64_t VRF = PackTag("VRF");
inline constexpr std::uint64_t TUNNEL = PackTag("TUNNEL");
inline constexpr std::uint64_t ATMTD = PackTag("ATMTD");
inline constexpr std::uint64_t MD = PackTag("MD");
inline constexpr std::uint64_t MA = PackTag("MA");
inline constexpr std::uint64_t MIP = PackTag("MIP");
}  // namespace TAG

}  // namespace NS_UTIL::NS_FDN
