#include "catalogue/levelcheck.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include <kx_domain_util/fdnscanner.h>

#include "catalogue/kinds.h"
#include "text/line.h"
#include "text/number.h"
#include "text/quoting.h"
#include "text/steering.h"

namespace NS_KX {

using NS_UTIL::NS_FDN::HasEscapedName;
using NS_UTIL::NS_FDN::Level;
using NS_UTIL::NS_FDN::LevelScanner;
using NS_UTIL::NS_FDN::SubValueScanner;

namespace {

constexpr std::size_t MOST_PROBLEMS = 8;

constexpr const char* PORT_NUMBER_RANGE = "from -2147483648 to 4294967295";

// A few decimal digits, which are in range for every kind; most numbers are.
bool IsPlainNumber(std::string_view text) {
    constexpr std::size_t MOST_DIGITS = 9;
    return !text.empty() && text.size() <= MOST_DIGITS &&
           text.find_first_not_of("0123456789") == std::string_view::npos;
}

bool IsInRange(std::string_view decimal, SubValueKind kind) {
    std::int64_t number = 0;
    const auto error = std::from_chars(decimal.data(), decimal.data() + decimal.size(), number).ec;
    const std::int64_t largest = kind == SubValueKind::PORT_NUMBER
                                     ? std::int64_t{std::numeric_limits<std::uint32_t>::max()}
                                     : std::numeric_limits<std::int32_t>::max();
    return error == std::errc() && number >= std::numeric_limits<std::int32_t>::min() && number <= largest;
}

// Characters that are easily overlooked, or come from quoting.
struct OddCharacter {
    std::string_view bytes;
    std::string_view name;
};

constexpr std::array ODD_CHARACTERS{OddCharacter{"\"", "quote"},
                                    OddCharacter{"'", "quote"},
                                    OddCharacter{"\xE2\x80\x9C", "quote"},
                                    OddCharacter{"\xE2\x80\x9D", "quote"},
                                    OddCharacter{"\xC2\xA0", "no-break space"},
                                    OddCharacter{"\xE2\x80\xAF", "no-break space"},
                                    OddCharacter{"\xE2\x80\x8B", "zero-width space"},
                                    OddCharacter{"\xEF\xBB\xBF", "byte-order mark"}};

// The name of the first odd character in `text`; empty if it holds none.
std::string_view FindOddCharacter(std::string_view text) {
    for (const auto& [bytes, name] : ODD_CHARACTERS) {
        if (text.find(bytes) != std::string_view::npos) {
            return name;
        }
    }
    return {};
}

class LevelCheck {
public:
    enum class Extent { ALL, TAGS };

    LevelCheck(std::string_view fdn, const std::function<void(const Problem&)>& report, Extent extent = Extent::ALL)
        : m_fdn(fdn), m_report(report), m_extent(extent) {}

    void CheckPiece(const Tag& tag, std::optional<unsigned> index) {
        if (!index) {
            CheckValue(tag, m_fdn);
        } else if (*index < tag.most) {
            CheckSubValue(tag, *index, m_fdn);
        }
    }

    void Run() {
        m_seen.reserve(16);
        LevelScanner scanner(m_fdn);
        Level level;
        while (m_problems < MOST_PROBLEMS && scanner.Next(level)) {
            CheckLevel(level);
        }
    }

private:
    // Without a `text`, the reason says it all.
    void Report(std::string_view place, std::string_view reason, std::string text = {}, bool lacksSubValues = false) {
        const std::size_t column = static_cast<std::size_t>(place.data() - m_fdn.data()) + 1;
        if (++m_problems < MOST_PROBLEMS) {
            m_report({column, text.empty() ? std::string(reason) : std::move(text), reason, lacksSubValues});
        } else if (m_problems == MOST_PROBLEMS) {
            m_report({column, "and more", "more problems in one identifier"});
        }
    }

    void CheckLevel(const Level& level) {
        if (level.tag.empty()) {
            Report(level.tag, level.HasEquals() ? "level without a tag" : "empty level");
            return;
        }
        if (!CheckTag(level.tag)) {
            return;
        }
        if (!level.HasEquals() && m_extent == Extent::ALL) {
            Report(level.tag, "no \"=\" after a tag", "no \"=\" after " + Quoted(level.tag));
            return;
        }
        if (std::find(m_seen.begin(), m_seen.end(), level.tag) != m_seen.end()) {
            Report(level.tag, "repeated level", "level " + Quoted(level.tag) + " occurs before; the first one counts");
            return;
        }
        m_seen.push_back(level.tag);
        const Tag* const tag = FindTag(level.tag);
        if (tag == nullptr) {
            Report(level.tag, "unknown tag", "unknown tag " + Quoted(level.tag));
            return;
        }
        CheckPlace(*tag, level.tag);
        if (m_extent == Extent::ALL) {
            CheckValue(*tag, level.value);
        }
    }

    // Levels go from the container inward.
    void CheckPlace(const Tag& tag, std::string_view place) {
        if (m_deepest != nullptr && tag.depth < m_deepest->depth) {
            Report(
                place, "level out of place",
                "level " + Quoted(tag.name) + " stands after " + Quoted(m_deepest->name) + ", but belongs before it");
        } else {
            m_deepest = &tag;
        }
    }

    bool CheckTag(std::string_view tag) {
        const auto* const wrong = std::find_if_not(tag.begin(), tag.end(), IsTagCharacter);
        if (wrong == tag.end()) {
            return true;
        }
        const std::string_view rest = tag.substr(static_cast<std::size_t>(wrong - tag.begin()));
        const std::string_view place = rest.substr(0, SizeOfFirst(rest));
        if (*wrong == ' ' || *wrong == '\t') {
            Report(place, "blank in a tag", "blank in the tag " + Quoted(tag));
        } else if (*wrong >= 'a' && *wrong <= 'z') {
            Report(place, "lower-case letter in a tag", "lower-case letter in the tag " + Quoted(tag));
        } else if (const std::string_view name = FindOddCharacter(place); !name.empty()) {
            Report(place, "other character in a tag", std::string(name) + " in the tag " + Quoted(tag));
        } else {
            Report(place, "other character in a tag", "character " + Quoted(place) + " in the tag " + Quoted(tag));
        }
        return false;
    }

    void CheckValue(const Tag& tag, std::string_view value) {
        if (value.empty()) {
            Report(value, "no value", std::string(tag.name) + " has no value", tag.least > 1);
            return;
        }
        const std::size_t most = tag.most + (tag.mayEscape && HasEscapedName(value) ? 1 : 0);
        std::size_t count = 0;
        SubValueScanner scanner(value);
        std::string_view subValue;
        while (scanner.Next(subValue)) {
            if (count < tag.most) {
                CheckSubValue(tag, count, subValue);
            } else if (count >= most && !tag.isOpen) {
                Report(subValue, "too many sub-values", std::string(tag.name) + " has more than " + Counted(most));
                return;
            }
            ++count;
        }
        if (count < tag.least) {
            Report(value.substr(value.size()), "too few sub-values",
                   std::string(tag.name) + " has " + Counted(count) + ", not " + std::to_string(tag.least), true);
        }
    }

    static std::string Counted(std::size_t count) {
        return std::to_string(count) + (count == 1 ? " sub-value" : " sub-values");
    }

    void CheckSubValue(const Tag& tag, std::size_t index, std::string_view text) {
        const SubValue& expected = tag.subValues.at(index);
        if (expected.kind == SubValueKind::TEXT || (text.empty() && expected.kind == SubValueKind::OPTIONAL_NUMBER)) {
            return;
        }
        if (IsPlainNumber(text)) {
            return;
        }
        const auto place = [&] {
            return std::string(tag.name).append(tag.most > 1 ? ":" + std::to_string(index) : "");
        };
        if (text.empty()) {
            Report(text, "empty number", place() + " is empty, not a number");
        } else if (!IsDecimal(text)) {
            const std::string_view odd = FindOddCharacter(text);
            Report(text, "not a decimal number",
                   place() + " is not a decimal number: " + Quoted(text) +
                       (odd.empty() ? "" : ", which holds a " + std::string(odd)));
        } else if (!IsInRange(text, expected.kind)) {
            const bool isPort = expected.kind == SubValueKind::PORT_NUMBER;
            Report(text, "number out of range",
                   place() + " is not " + (isPort ? PORT_NUMBER_RANGE : RANGE_OF_32_BITS) + ": " + Quoted(text));
        }
    }

    std::string_view m_fdn;
    const std::function<void(const Problem&)>& m_report;
    Extent m_extent;
    std::vector<std::string_view> m_seen;
    const Tag* m_deepest = nullptr;
    std::size_t m_problems = 0;
};

}  // namespace

void CheckLevels(std::string_view fdn, const std::function<void(const Problem&)>& report) {
    LevelCheck(fdn, report).Run();
}

const Kind* CheckIdentifier(std::string_view fdn, const std::function<void(const Problem&)>& report) {
    bool isGood = true;
    CheckLevels(fdn, [&](const Problem& problem) {
        isGood = false;
        report(problem);
    });
    const Kind* const kind = isGood ? FindKind(fdn) : nullptr;
    if (isGood && kind == nullptr) {
        const std::string_view tag = NS_UTIL::NS_FDN::LastTag(fdn);
        report({static_cast<std::size_t>(tag.data() - fdn.data()) + 1, OfNoKind(fdn), "last level of no kind"});
    }
    return kind;
}

namespace {

std::optional<Problem> FirstOf(const std::function<void(const std::function<void(const Problem&)>&)>& check) {
    std::optional<Problem> first;
    check([&](const Problem& problem) {
        if (!first) {
            first = problem;
        }
    });
    return first;
}

}  // namespace

std::optional<Problem> FindValueProblem(const PieceName& piece, std::string_view value) {
    return FirstOf([&](const auto& report) { LevelCheck(value, report).CheckPiece(*piece.FindTag(), piece.index); });
}

std::optional<Problem> FindTagProblem(std::string_view fdn) {
    return FirstOf([&](const auto& report) { LevelCheck(fdn, report, LevelCheck::Extent::TAGS).Run(); });
}

void FindProblems(std::string_view text, const std::function<void(const Problem&)>& report) {
    if (const auto flaw = FindFlaw(text)) {
        report({std::max<std::size_t>(flaw->column, 1), flaw->reason, flaw->reason});
    } else {
        CheckIdentifier(text, report);
    }
}

std::optional<Problem> FindFirstProblem(std::string_view text) {
    std::optional<Problem> first;
    FindProblems(text, [&](const Problem& problem) {
        if (!first) {
            first = problem;
        }
    });
    return first;
}

}  // namespace NS_KX
