/// Reading of FDN text: the one place that knows where a level, a tag and a sub-value begin and end. Nothing here
/// allocates; all answers are views of the text, so that a place in the text can be told from them.
///
/// For those who look at the text itself; whoever wants records takes `resIDUtil.h`. Threads: any, scanners are not
/// shared. Nothing throws.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <kx_domain_util/export.h>
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
    explicit SubValueScanner(std::string_view value) noexcept : m_rest(value), m_more(!value.empty()) {}

    /// Gives the next sub-value; false when there is none.
    bool Next(std::string_view& subValue) noexcept {
        if (!m_more) {
            return false;
        }
        const auto end = m_rest.find('|');
        subValue = m_rest.substr(0, end);
        m_more = end != std::string_view::npos;
        m_rest.remove_prefix(m_more ? end + 1 : m_rest.size());
        return true;
    }

private:
    std::string_view m_rest;
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

/// Walks the levels of an FDN in one pass. An empty FDN has none; otherwise an empty piece between commas is a level
/// with an empty tag.
class LevelScanner {
public:
    explicit LevelScanner(std::string_view fdn) noexcept
        : m_at(fdn.data()), m_end(m_at + fdn.size()), m_more(!fdn.empty()) {}

    /// Gives the next level; false behind the last.
    bool Next(Level& level) noexcept {
        if (!m_more) {
            return false;
        }
        const char* const begin = m_at;
        const char* equals = nullptr;
        const char* at = begin;
        for (; at != m_end && *at != ','; ++at) {
            if (*at == '=' && equals == nullptr) {
                equals = at;
            }
        }
        const char* const tagEnd = equals != nullptr ? equals : at;
        const char* const valueBegin = equals != nullptr ? equals + 1 : at;
        level.tag = {begin, static_cast<std::size_t>(tagEnd - begin)};
        level.value = {valueBegin, static_cast<std::size_t>(at - valueBegin)};
        m_more = at != m_end;
        m_at = m_more ? at + 1 : at;
        return true;
    }

    /// Whether `Next` has another level to give.
    [[nodiscard]] bool HasMore() const noexcept { return m_more; }

private:
    const char* m_at;
    const char* m_end;
    bool m_more;
};

/// A tag as a number, so that it compares in one step: its characters, at most seven, the first lowest, and its length
/// on top. Longer tags, which no reader asks for, are 0.
constexpr std::uint64_t PackTag(std::string_view tag) noexcept {
    constexpr std::size_t LONGEST = 7;
    if (tag.size() > LONGEST) {
        return 0;
    }
    std::uint64_t packed = tag.size();
    for (std::size_t at = LONGEST; at > 0; --at) {
        packed = packed << 8U | (at <= tag.size() ? static_cast<unsigned char>(tag[at - 1]) : 0U);
    }
    return packed;
}

/// The tag that `PackTag` made a number of.
inline std::string UnpackTag(std::uint64_t packed) {
    std::string tag(packed >> 56U, '\0');
    for (char& character : tag) {
        character = static_cast<char>(packed & 0xFFU);
        packed >>= 8U;
    }
    return tag;
}

/// The levels of an FDN that a reader wants, found in one pass. Of a repeated tag the first counts.
template <std::uint64_t... Tags>
class LevelFinder {
public:
    explicit LevelFinder(std::string_view fdn) noexcept {
        LevelScanner scanner(fdn);
        Level level;
        while (m_found != ALL && scanner.Next(level)) {
            Keep(PackTag(level.tag), level.value);
        }
    }

    /// Whether there is a level of this tag, with or without sub-values.
    template <std::uint64_t Tag>
    [[nodiscard]] bool Has() const noexcept {
        return (m_found >> IndexOf<Tag>() & 1U) != 0;
    }

    /// The value of the level; empty when there is no such level.
    template <std::uint64_t Tag>
    [[nodiscard]] std::string_view Value() const noexcept {
        return m_values[IndexOf<Tag>()];
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
    static constexpr unsigned ALL = (1U << sizeof...(Tags)) - 1;

    template <std::uint64_t Tag>
    static consteval unsigned IndexOf() {
        constexpr std::array<std::uint64_t, sizeof...(Tags)> tags{Tags...};
        unsigned index = 0;
        while (tags.at(index) != Tag) {
            ++index;
        }
        return index;
    }

    void Keep(std::uint64_t tag, std::string_view value) noexcept {
        unsigned index = 0;
        const auto keepIf = [&](std::uint64_t wanted) {
            const unsigned bit = 1U << index;
            if (tag == wanted && (m_found & bit) == 0) {
                m_found |= bit;
                m_values[index] = value;
            }
            ++index;
        };
        (keepIf(Tags), ...);
    }

    unsigned m_found = 0;
    std::array<std::string_view, sizeof...(Tags)> m_values;
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
