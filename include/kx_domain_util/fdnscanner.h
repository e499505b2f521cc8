/// Reading of FDN text: where a level, a tag, a sub-value and an escape begin and end. All answers are views of the
/// text, so they also show where in the text something stands.
///
/// To read records, use `fdn.h`. Threads: any, scanners are not shared. Nothing allocates or throws.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include <kx_domain_util/portrules.h>
#include <kx_domain_util/separatorfinder.h>
#include <kx_platform/textutil.h>

namespace NS_UTIL::NS_FDN {

/// One level: "tag=value". Without "=" all of it is the tag, and the value is empty.
struct Level {
    std::string_view tag;
    std::string_view value;

    /// Whether the level has an "=". Without one, the value begins where the tag ends.
    [[nodiscard]] bool HasEquals() const noexcept { return value.data() != tag.data() + tag.size(); }
};

/// Splits one level at its first "=".
inline Level SplitLevel(std::string_view text) noexcept {
    // memchr is slower here: tags are short.
    const char* const end = text.data() + text.size();
    const char* equals = text.data();
    while (equals != end && *equals != '=') {
        ++equals;
    }
    return {{text.data(), equals}, {equals + (equals != end ? 1 : 0), end}};
}

/// The last level of `fdn`, as text; empty for an empty `fdn`.
inline std::string_view LastLevel(std::string_view fdn) noexcept {
    const auto comma = fdn.rfind(',');
    return comma == std::string_view::npos ? fdn : fdn.substr(comma + 1);
}

/// The tag of the last level of `fdn`. `ResIDUtil::GetMOCFromFDN` differs where that level's value holds another "=".
inline std::string_view LastTag(std::string_view fdn) noexcept {
    return SplitLevel(LastLevel(fdn)).tag;
}

/// Walks the levels of an FDN in one pass. An empty FDN has none; otherwise an empty piece between commas is a level
/// with an empty tag.
class LevelScanner {
public:
    /// Begins at the first level of `fdn`, which must outlive the scanner.
    explicit LevelScanner(std::string_view fdn) noexcept : m_levels(fdn), m_more(!fdn.empty()) {}

    /// Puts the next level into `level`. Returns false and leaves `level` alone after the last.
    bool Next(Level& level) noexcept {
        if (!m_more) {
            return false;
        }
        const auto piece = m_levels.Next();
        level = SplitLevel({piece.begin, piece.end});
        m_more = !m_levels.IsLast(piece);
        return true;
    }

    /// Whether there is another level for `Next`.
    [[nodiscard]] bool HasMore() const noexcept { return m_more; }

private:
    SeparatorFinder<','> m_levels;
    bool m_more;
};

/// Walks the sub-values of a level's value, "a|b|c". An empty value has none; otherwise empty sub-values count.
class SubValueScanner {
public:
    /// Begins at the first sub-value of `value`, which must outlive the scanner.
    explicit SubValueScanner(std::string_view value) noexcept : m_subValues(value), m_more(!value.empty()) {}

    /// Puts the next sub-value into `subValue`. Returns false and leaves `subValue` alone after the last.
    bool Next(std::string_view& subValue) noexcept {
        if (!m_more) {
            return false;
        }
        const auto piece = m_subValues.Next();
        subValue = {piece.begin, piece.end};
        m_more = !m_subValues.IsLast(piece);
        return true;
    }

private:
    SeparatorFinder<'|'> m_subValues;
    bool m_more;
};

/// The first sub-values of a level, at most `Places`. Does not look at the rest.
template <std::size_t Places>
class SubValues {
public:
    /// Reads `value`, which must outlive the answers.
    explicit SubValues(std::string_view value) noexcept {
        if (value.empty()) {
            return;
        }
        SeparatorFinder<'|'> subValues(value);
        SeparatorFinder<'|'>::Piece piece{};
        m_begins[0] = value.data();
        do {
            piece = subValues.Next();
            m_begins[++m_count] = piece.end + 1;
        } while (m_count < Places && !subValues.IsLast(piece));
    }

    /// Returns how many there are, but at most `Places`.
    [[nodiscard]] std::size_t Count() const noexcept { return m_count; }

    /// The sub-value at `place`, from 0; empty if there is none.
    std::string_view operator[](std::size_t place) const noexcept {
        return place < m_count ? std::string_view(m_begins[place], m_begins[place + 1] - 1) : std::string_view();
    }

private:
    std::size_t m_count = 0;
    std::array<const char*, Places + 1> m_begins;  // only those up to m_count are set
};

/// The position in a port's name, the fourth sub-value, of the backslash that escapes the "|" after it; npos if there
/// is none. The name then goes on with the fifth sub-value.
inline std::size_t FindNameEscape(int fbType, std::string_view name) noexcept {
    return PortRulesOf(fbType).hasEscapedName ? name.find('\\') : std::string_view::npos;
}

/// Whether the name in `value`, the value of a port's level ("PP" or "LP"), escapes a "|".
inline bool HasEscapedName(std::string_view value) noexcept {
    const SubValues<4> port(value);
    return FindNameEscape(Str2Int(port[1]), port[3]) != std::string_view::npos;
}

}  // namespace NS_UTIL::NS_FDN
