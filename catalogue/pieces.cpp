#include "catalogue/pieces.h"

#include <algorithm>
#include <map>
#include <utility>

#include <kx_domain_util/fdnscanner.h>
#include <kx_domain_util/levelfinder.h>
#include <kx_platform/textutil.h>

#include "catalogue/kinds.h"
#include "text/number.h"
#include "text/quoting.h"

namespace NS_KX {

using NS_UTIL::NS_FDN::Level;
using NS_UTIL::NS_FDN::LevelScanner;
using NS_UTIL::NS_FDN::SeparatorFinder;
using NS_UTIL::NS_FDN::SplitLevel;
using NS_UTIL::NS_FDN::SubValueScanner;
using NS_UTIL::NS_FDN::NS_DETAIL::PackCharacters;
using NS_UTIL::NS_FDN::NS_DETAIL::PackHead;

namespace {

// A view without data if there is no such sub-value.
std::string_view SubValueAt(std::string_view value, unsigned index) {
    SubValueScanner scanner(value);
    std::string_view subValue;
    for (unsigned at = 0; scanner.Next(subValue); ++at) {
        if (at == index) {
            return subValue;
        }
    }
    return {};
}

// Like ==, but calls no function for tags that differ in size or first character, as most do.
bool IsTag(std::string_view level, std::string_view tag) {
    return level.size() == tag.size() && !tag.empty() && level.front() == tag.front() && level == tag;
}

// Whether a piece of this tag is in a level with the tag `level`.
bool IsIn(std::string_view level, std::string_view tag) {
    return tag == PORT_TAG ? level == "PP" || level == "LP" : IsTag(level, tag);
}

// The first level of `fdn` whose tag `isWanted` accepts; its value has no data if there is none.
template <class IsWanted>
Level FirstLevel(std::string_view fdn, IsWanted isWanted) {
    LevelScanner scanner(fdn);
    Level level;
    while (scanner.Next(level)) {
        if (isWanted(level.tag)) {
            return level;
        }
    }
    return {};
}

Level LevelOf(std::string_view fdn, const PieceName& name) {
    return FirstLevel(fdn, [&](std::string_view tag) { return IsIn(tag, name.tag); });
}

// The levels of `fdn` by their tags; the first of several levels with the same tag counts.
std::map<std::string_view, Level> LevelsByTag(std::string_view fdn) {
    std::map<std::string_view, Level> levels;
    LevelScanner scanner(fdn);
    for (Level level; scanner.Next(level);) {
        levels.try_emplace(level.tag, level);
    }
    return levels;
}

bool IsNumberAt(const Tag* tag, unsigned index) {
    return tag != nullptr && index < tag->most && tag->subValues.at(index).kind != SubValueKind::TEXT;
}

bool AreEqualValues(std::string_view tag, std::string_view one, std::string_view other) {
    if (one == other) {
        return true;
    }
    const Tag* const known = FindTag(tag);
    SubValueScanner ones(one);
    SubValueScanner others(other);
    std::string_view left;
    std::string_view right;
    for (unsigned index = 0;; ++index) {
        const bool hasLeft = ones.Next(left);
        if (hasLeft != others.Next(right)) {
            return false;
        }
        if (!hasLeft) {
            return true;
        }
        const bool areEqual = IsNumberAt(known, index) && left.empty() == right.empty()
                                  ? NS_UTIL::Str2Int(left) == NS_UTIL::Str2Int(right)
                                  : left == right;
        if (!areEqual) {
            return false;
        }
    }
}

}  // namespace

std::optional<PieceName> PieceName::Parse(std::string_view text) {
    const auto colon = text.find(':');
    PieceName name{std::string(text.substr(0, colon)), std::nullopt};
    if (name.tag.empty() || !std::all_of(name.tag.begin(), name.tag.end(), IsTagCharacter)) {
        return std::nullopt;
    }
    if (colon != std::string_view::npos && !ReadWhole(text.substr(colon + 1), name.index.emplace())) {
        return std::nullopt;
    }
    return name;
}

std::optional<PieceName> PieceName::ParseKnown(std::string_view text) {
    auto name = Parse(text);
    return name && name->IsKnown() ? name : std::nullopt;
}

std::string PieceName::WhyNone(std::string_view text) {
    return "unknown piece " + Quoted(text) +
           "; a piece is a level or one of its sub-values, from 0, such as NE or PP:2";
}

const Tag* PieceName::FindTag() const {
    return NS_KX::FindTag(tag == PORT_TAG ? "PP" : std::string_view(tag));
}

bool PieceName::IsKnown() const {
    const Tag* const known = FindTag();
    if (known == nullptr) {
        return false;
    }
    return !index || known->isOpen || *index < known->most + (known->mayEscape ? 1 : 0);
}

bool PieceName::IsNumber() const {
    return IsNumberAt(FindTag(), index.value_or(0));
}

PieceFinder::PieceFinder(std::vector<PieceName> names) : m_names(std::move(names)) {
    for (std::size_t place = 0; place < m_names.size(); ++place) {
        const std::string& tag = m_names[place].tag;
        const auto first =
            std::find_if(m_names.begin(), m_names.end(), [&](const PieceName& name) { return name.tag == tag; });
        m_firstOfTag.push_back(static_cast<std::size_t>(first - m_names.begin()));
        if (m_firstOfTag.back() != place) {
            continue;
        }
        ++m_tagCount;
        if (tag == PORT_TAG) {
            Want("PP", place);
            Want("LP", place);
        } else {
            Want(tag, place);
        }
    }
}

void PieceFinder::Want(std::string_view tag, std::size_t place) {
    const std::string_view head = tag.substr(0, sizeof(WantedTag::head));
    const std::uint64_t mask = ~std::uint64_t{} >> 8 * (sizeof(WantedTag::head) - head.size());
    m_wanted.push_back({std::string(tag), PackCharacters(head), mask, place});
}

// Puts the value of each wanted level where the first name with its tag is. Asks `accepts` about the levels, with their
// first eight characters, packed, until it returns false. Returns whether it never does.
template <class AcceptsLevel>
bool PieceFinder::FindLevels(std::string_view fdn, std::span<std::string_view> found, AcceptsLevel accepts) const {
    std::fill(found.begin(), found.end(), std::string_view());
    if (fdn.empty()) {
        return true;
    }
    std::size_t missing = m_tagCount;
    bool isKept = true;
    SeparatorFinder<','> levels(fdn);
    SeparatorFinder<','>::Piece level{};
    do {
        level = levels.Next();
        const std::uint64_t head = PackHead(fdn, level.begin);
        isKept = isKept && accepts(std::string_view(level.begin, level.end), head);
        for (const WantedTag& wanted : m_wanted) {
            if ((head & wanted.mask) != wanted.head || found[wanted.place].data() != nullptr) {
                continue;
            }
            if (const Level whole = SplitLevel({level.begin, level.end}); whole.tag == wanted.tag) {
                found[wanted.place] = whole.value;
                --missing;
            }
        }
    } while ((missing != 0 || isKept) && !levels.IsLast(level));
    return isKept;
}

// Replaces the values of levels by what is wanted of them.
void PieceFinder::FindSubValues(std::span<std::string_view> found) const {
    // Backwards: names that share a level find its value at the first of them, which must be overwritten last.
    for (std::size_t place = m_names.size(); place-- > 0;) {
        const std::string_view value = found[m_firstOfTag[place]];
        const auto index = m_names[place].index;
        found[place] = index ? SubValueAt(value, *index) : value;
    }
}

void PieceFinder::Find(std::string_view fdn, std::span<std::string_view> found) const {
    FindLevels(fdn, found, [](std::string_view, std::uint64_t) { return false; });
    FindSubValues(found);
}

bool PieceFinder::Find(std::string_view fdn, std::span<std::string_view> found, TagOrder& order) const {
    order.Begin();
    const bool isKept = FindLevels(
        fdn, found, [&order](std::string_view level, std::uint64_t head) { return order.Accepts(level, head); });
    FindSubValues(found);
    return isKept;
}

std::string_view FindPiece(std::string_view fdn, const PieceName& name) {
    const std::string_view value = LevelOf(fdn, name).value;
    return name.index ? SubValueAt(value, *name.index) : value;
}

std::optional<std::int32_t> NumberOf(std::string_view piece) {
    constexpr std::int32_t NONE = -1;
    const std::int32_t number = piece.empty() ? NONE : NS_UTIL::Str2Int(piece);
    return number != NONE ? std::optional(number) : std::nullopt;
}

bool SaysNone(std::string_view piece, bool isNumber) {
    return piece.data() == nullptr || (isNumber && !piece.empty() && !NumberOf(piece));
}

std::optional<std::string> WhyNoValue(const PieceName& name, std::string_view value) {
    using namespace std::string_view_literals;
    const Tag* const tag = name.FindTag();
    const bool endsAtBar = name.index && tag != nullptr && !tag->isOpen;
    const auto wrong = value.find_first_of(endsAtBar ? ",\r\n\0|"sv : ",\r\n\0"sv);
    if (wrong == std::string_view::npos) {
        return std::nullopt;
    }
    return "the value " + Quoted(value) + " holds " + Quoted(value.substr(wrong, 1)) + ", which would end the piece";
}

std::string ReplacePiece(std::string_view fdn, const PieceName& name, std::string_view value) {
    const std::string_view piece = FindPiece(fdn, name);
    std::string replaced(fdn);
    if (piece.data() == nullptr) {
        return replaced;
    }
    const auto at = static_cast<std::size_t>(piece.data() - fdn.data());
    replaced.replace(at, piece.size(), value);
    if (!LevelOf(fdn, name).HasEquals()) {
        replaced.insert(at, 1, '=');
    }
    return replaced;
}

bool LiesIn(std::string_view fdn, std::string_view container) {
    // `find` returns the level of `fdn` with the same tag.
    const auto hasAll = [container](auto find) {
        LevelScanner scanner(container);
        for (Level wanted; scanner.Next(wanted);) {
            const Level level = find(wanted.tag);
            if (level.value.data() == nullptr || !AreEqualValues(wanted.tag, level.value, wanted.value)) {
                return false;
            }
        }
        return true;
    };
    // Searching is quickest for the few levels of an identifier. A text with very many would take minutes.
    constexpr auto MOST_SEARCHED = 64;
    if (std::count(container.begin(), container.end(), ',') < MOST_SEARCHED) {
        return hasAll([fdn](std::string_view wanted) {
            return FirstLevel(fdn, [wanted](std::string_view level) { return IsTag(level, wanted); });
        });
    }
    return hasAll([levels = LevelsByTag(fdn)](std::string_view tag) {
        const auto level = levels.find(tag);
        return level != levels.end() ? level->second : Level();
    });
}

bool AreSame(std::string_view one, std::string_view other, const NS_UTIL::Surroundings& surroundings, AnyRecord& first,
             AnyRecord& second) {
    const Kind* const kind = FindKind(one);
    const Kind* const otherKind = FindKind(other);
    if (kind == nullptr || otherKind == nullptr || kind->word != otherKind->word ||
        &kind->layout != &otherKind->layout) {
        return false;
    }
    void* const record = first.Fresh(kind->layout);
    void* const otherRecord = second.Fresh(kind->layout);
    kind->read(one, record, surroundings);
    otherKind->read(other, otherRecord, surroundings);
    return std::all_of(kind->layout.fields.begin(), kind->layout.fields.end(), [&](const Field& field) {
        return VisitField(field, record,
                          [&]<class Value>(const Value& value) { return value == field.In<Value>(otherRecord); });
    });
}

}  // namespace NS_KX
