#include "catalogue/explanation.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <utility>

#include <kx_domain_util/fbtype.h>
#include <kx_domain_util/fdnscanner.h>
#include <kx_domain_util/processexception.h>
#include <kx_platform/textutil.h>

#include "catalogue/assumed.h"
#include "catalogue/levelcheck.h"
#include "text/number.h"
#include "text/quoting.h"
#include "text/utf8.h"

namespace NS_KX {

using NS_UTIL::NS_FDN::Level;
using NS_UTIL::NS_FDN::LevelScanner;
using NS_UTIL::NS_FDN::SubValueScanner;

namespace {

// The parts of a sub-value's description: "slot number; -1: none" has the name "slot number", and the gloss "none" for
// the special value "-1".
struct Wording {
    std::string_view name;
    std::string_view specialValues;
    std::string_view gloss;

    explicit Wording(std::string_view meaning) : name(meaning.substr(0, meaning.find(';'))) {
        const std::string_view rest = meaning.substr(std::min(name.size() + 2, meaning.size()));
        if (const auto colon = rest.find(": "); colon != std::string_view::npos) {
            specialValues = rest.substr(0, colon);
            gloss = rest.substr(colon + 2);
        }
    }

    [[nodiscard]] std::string_view GlossOf(std::string_view value) const {
        const std::string_view shown = value.empty() ? "empty" : value;
        constexpr std::string_view OR = " or ";
        for (std::string_view rest = specialValues; !rest.empty();) {
            const auto end = std::min(rest.find(OR), rest.size());
            if (rest.substr(0, end) == shown) {
                return gloss;
            }
            rest.remove_prefix(std::min(end + OR.size(), rest.size()));
        }
        return {};
    }
};

std::string Between(std::string_view opening, std::string_view text, std::string_view closing) {
    return std::string(opening).append(text).append(closing);
}

// The text of a number, with its gloss. Quotes anything else, so that blanks can be seen, and says what is read.
std::string NumberText(std::string_view value, std::string_view gloss) {
    const int read = NS_UTIL::Str2Int(value);
    std::string text = IsDecimal(value) ? std::string(value) : Quoted(value);
    if (!gloss.empty()) {
        return text + Between(" (", gloss, ")");
    }
    std::int64_t number = 0;
    const bool isReadAsIs = IsDecimal(value) && ReadWhole(value, number) && number == read;
    return isReadAsIs ? text : text + ", read as " + std::to_string(read);
}

// Explains the levels of one identifier, in turn.
class LevelExplainer {
public:
    LevelExplainer(const std::string& fdn, const DescribeNe& describeNe, std::vector<ExplainedPart>& parts)
        : m_fdn(fdn), m_describeNe(describeNe), m_parts(parts) {}

    void Explain(const Level& level) {
        m_levelBegin = PlaceOf(level.tag);
        const Tag* const tag = FindTag(level.tag);
        if (tag == nullptr) {
            Add(level.tag, "level " + Quoted(level.tag));
        } else if (level.value.empty()) {
            Add(level.value, std::string(tag->meaning));
        } else if (tag->most == 1 && tag->isOpen) {
            Add(level.value, std::string(tag->meaning) + " " + Quoted(level.value));
        } else if (tag->most == 1) {
            ExplainSingle(level, *tag);
        } else {
            ExplainEach(level, *tag);
        }
    }

private:
    [[nodiscard]] std::size_t PlaceOf(std::string_view part) const {
        return static_cast<std::size_t>(part.data() - m_fdn.data());
    }

    void Add(std::string_view place, std::string meaning) {
        m_parts.push_back({m_levelBegin, PlaceOf(place), place.size(), std::move(meaning), {}});
    }

    // A level with one sub-value: "slot 3". The meaning of the level stands before the value, not the sub-value's.
    void ExplainSingle(const Level& level, const Tag& tag) {
        SubValueScanner scanner(level.value);
        std::string_view value;
        scanner.Next(value);
        const Wording wording(tag.subValues[0].meaning);
        // The name "always -1" says what every value means.
        const std::string_view gloss = wording.name.starts_with("always") ? wording.name : wording.GlossOf(value);
        std::string meaning = std::string(tag.meaning) + " " + NumberText(value, gloss);
        if (level.tag == "NE" && m_describeNe) {
            meaning += m_describeNe(NS_UTIL::Str2Int(value));
        }
        Add(value, meaning);
        while (scanner.Next(value)) {  // one that the level does not have
            Add(value, "sub-value " + Quoted(value));
        }
    }

    void ExplainEach(const Level& level, const Tag& tag) {
        std::vector<std::string_view> values;
        SubValueScanner scanner(level.value);
        for (std::string_view value; scanner.Next(value);) {
            values.push_back(value);
        }
        if (tag.isReadWhole && values.size() < tag.least) {
            Add(level.value, std::string(tag.meaning) + ", of which no sub-value is read");
            return;
        }
        Add(level.tag, std::string(tag.meaning));
        for (std::size_t place = 0; place < values.size(); ++place) {
            if (place < tag.most) {
                Add(values[place], Meaning(tag.subValues.at(place), values[place]));
            } else if (place == tag.most && tag.mayEscape && NS_UTIL::NS_FDN::HasEscapedName(level.value)) {
                Add(values[place], "rest of the name, after an escaped |: " + Quoted(values[place]));
            } else {
                Add(values[place], "sub-value " + Quoted(values[place]));
            }
        }
    }

    static std::string Meaning(const SubValue& description, std::string_view value) {
        const Wording wording(description.meaning);
        std::string meaning(wording.name);
        if (description.kind == SubValueKind::TEXT) {
            return meaning.append(value.empty() ? ": none" : Between(" \"", value, "\""));
        }
        const std::string_view gloss = wording.GlossOf(value);
        if (value.empty()) {
            return meaning.append(": ").append(gloss.empty() ? "none" : gloss);
        }
        meaning.append(" ").append(NumberText(value, gloss));
        return wording.name == "FB type" ? meaning.append(FbTypeName(value)) : meaning;
    }

    static std::string FbTypeName(std::string_view value) {
        const int fbType = NS_UTIL::Str2Int(value);
        const std::string name = NS_UTIL::GetFBTypeName(fbType);
        if (name != std::to_string(fbType)) {
            return Between(" (", name, ")");
        }
        return NS_UTIL::IsLogicalPortByType(fbType) ? " (a logical port)" : "";
    }

    const std::string& m_fdn;
    const DescribeNe& m_describeNe;
    std::vector<ExplainedPart>& m_parts;
    std::size_t m_levelBegin = 0;
};

// The part that a problem at `place` is about: the last part of that level that begins at or before `place`, or else
// the level's first part.
ExplainedPart& PartAt(std::vector<ExplainedPart>& parts, std::size_t place) {
    const auto next = std::ranges::upper_bound(parts, place, {}, &ExplainedPart::begin);
    if (next == parts.begin()) {
        return *next;  // exists: the first level begins with the identifier
    }
    const auto previous = std::prev(next);
    const bool isNextInLevel = next != parts.end() && next->levelBegin <= place;
    return isNextInLevel && previous->levelBegin != next->levelBegin ? *next : *previous;
}

void AddProblems(Explanation& explanation) {
    // A shell cuts an identifier at the first "|" outside quotes.
    const bool mayBeCut = explanation.fdn.find('|') == std::string::npos;
    CheckLevels(explanation.fdn, [&](const Problem& problem) {
        std::string& caveat = PartAt(explanation.parts, problem.column - 1).caveat;
        caveat.append(caveat.empty() ? "" : "; ").append(problem.text);
        caveat.append(mayBeCut && problem.lacksSubValues ? " (was it in quotes?)" : "");
    });
}

// ---- Remarks --------------------------------------------------------------------------------------------------------

// The text in this field of `record`; null if it has no such field.
const std::string* TextIn(const Kind& kind, std::string_view name, const void* record) {
    const Field* const field = FindField(kind, name);
    return field != nullptr ? &field->In<std::string>(record) : nullptr;
}

// A port name loses the backslash before an escaped "|".
void RemarkEscape(const Kind& kind, const void* record, Explanation& explanation) {
    for (const char* const name : {"portLabel", "port.portLabel"}) {
        const std::string* const label = TextIn(kind, name, record);
        if (label != nullptr && label->find('|') != std::string::npos) {
            explanation.remarks.push_back("the reader drops the backslash from the port name: " + Quoted(*label));
        }
    }
}

// On a channelled port, the reader makes the text of a channel set by position.
void RemarkChannelSet(const Kind& kind, const void* record, Explanation& explanation) {
    const std::string* const text = TextIn(kind, "fdnText", record);
    if (text != nullptr && !text->empty() && *text != explanation.fdn &&
        explanation.fdn.find("CHANNELSET") != std::string::npos) {
        explanation.remarks.push_back("the reader cuts the text by position and reads the channel set from " +
                                      Quoted(*text));
    }
}

// The reader of end points goes by the order of the levels, and takes a level that is no number for a name, less its
// first character. In "|md1" that is the separator of an absent number, as it should be.
void RemarkEndPoint(const Kind& kind, Explanation& explanation) {
    if (!kind.type.starts_with("MEPIndex")) {
        return;
    }
    explanation.remarks.emplace_back(
        "read by position: the four levels are the NE, the MD, the MA and the end point, whatever their tags");
    LevelScanner scanner(explanation.fdn);
    Level level;
    for (int place = 0; scanner.Next(level) && scanner.HasMore(); ++place) {
        const bool isNamed = place == 1 || place == 2;
        if (isNamed && !level.value.empty() && level.value.front() != '|' && NS_UTIL::Str2Int(level.value) == 0) {
            const bool hasName = level.value.find('|') != std::string_view::npos;
            explanation.remarks.push_back(
                std::string(level.tag) +
                " is read as 0; the library's reader then drops the first character and takes " +
                "the rest as the name, " + Quoted(level.value.substr(1)) +
                (hasName ? "; kxdu takes what follows the \"|\"" : ""));
        }
    }
}

// Shows MD and MA with and without their numbers, if `record` is written with them.
void RemarkOamNumbers(const Kind& kind, const void* record, const NS_UTIL::Surroundings& surroundings,
                      Explanation& explanation) {
    for (const bool isOmitted : {false, true}) {
        const Assumed assumed(surroundings, {.isNeSpecial = isOmitted});
        std::string fdn;
        kind.write(record, fdn, assumed);
        if (assumed.Fact() == NeFact::OAM_NUMBERS) {
            explanation.remarks.push_back((isOmitted ? "on NEs that leave out the numbers of MD and MA: "
                                                     : "on NEs that write the numbers of MD and MA: ") +
                                          fdn);
        }
    }
}

// ---- The record -----------------------------------------------------------------------------------------------------

void CompareWithWriters(const Kind& kind, const void* record, const NS_UTIL::Surroundings& surroundings,
                        Explanation& explanation) {
    std::string canonical;
    try {
        kind.write(record, canonical, surroundings);
    } catch (const NS_UTIL::InterfaceNotExistException&) {
        explanation.notes.emplace_back(NOT_COMPARED);
        return;
    }
    explanation.isCanonical = canonical == explanation.fdn && explanation.notes.empty();
    if (canonical != explanation.fdn) {
        const std::string reason = ReasonForWriting(kind, explanation.fdn, canonical, surroundings);
        explanation.notes.push_back("what was read would be written as " + canonical +
                                    (reason.empty() ? "" : ", since " + reason));
    }
}

void ReadRecord(const Kind& kind, const NS_UTIL::Surroundings& surroundings, Explanation& explanation) {
    explanation.type = kind.type;
    AnyRecord records;
    void* const record = records.Fresh(kind.layout);
    try {
        kind.read(explanation.fdn, record, surroundings);
    } catch (const NS_UTIL::InterfaceNotExistException&) {
        explanation.notes.emplace_back(NOT_READ);
        return;
    }
    explanation.fields = FieldsOf(kind, record);
    if (IsNothingRead(kind, record)) {
        explanation.notes.emplace_back(NOTHING_IS_READ);
        return;
    }
    RemarkEscape(kind, record, explanation);
    RemarkChannelSet(kind, record, explanation);
    RemarkEndPoint(kind, explanation);
    RemarkOamNumbers(kind, record, surroundings, explanation);
    CompareWithWriters(kind, record, surroundings, explanation);
}

}  // namespace

Explanation Explain(std::string_view fdn, const Kind* kind, const NS_UTIL::Surroundings& surroundings,
                    const DescribeNe& describeNe) {
    Explanation explanation;
    explanation.fdn = fdn;
    LevelExplainer explainer(explanation.fdn, describeNe, explanation.parts);
    LevelScanner scanner(explanation.fdn);
    for (Level level; scanner.Next(level);) {
        explainer.Explain(level);
    }
    AddProblems(explanation);
    if (const std::size_t invalid = FindInvalidUtf8(fdn); invalid != fdn.size()) {
        explanation.notes.push_back("byte " + std::to_string(invalid + 1) + " is not UTF-8");
    }
    if (const std::size_t lineEnd = fdn.find('\n'); lineEnd != std::string::npos) {
        explanation.notes.push_back("byte " + std::to_string(lineEnd + 1) +
                                    " is a line end, so that no line of a file can be this identifier");
    }
    if (fdn.empty()) {
        explanation.notes.emplace_back("the identifier is empty");
    } else if (kind != nullptr) {
        ReadRecord(*kind, surroundings, explanation);
    } else {
        explanation.notes.push_back(OfNoKind(fdn));
    }
    return explanation;
}

}  // namespace NS_KX
