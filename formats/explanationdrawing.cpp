#include "formats/explanationdrawing.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "text/displaytext.h"

namespace NS_KX {

namespace {

constexpr std::string_view MARGIN = "  ";
constexpr std::string_view RESET = "\x1b[0m";
constexpr std::string_view BOLD = "\x1b[1m";
constexpr std::string_view DIM = "\x1b[2m";
constexpr std::string_view GOOD = "\x1b[32m";
constexpr std::string_view CAVEAT = "\x1b[33m";

// A part, its line and its meaning have one colour; neighbours have different ones.
constexpr std::array<std::string_view, 5> PART_COLOURS{"\x1b[36m", "\x1b[35m", "\x1b[34m", "\x1b[32m", "\x1b[31m"};

struct Strokes {
    std::string_view stem;
    std::string_view corner;
    std::string_view line;
    std::string_view arrow;
    std::string_view tick;
};
constexpr Strokes UNICODE{"│", "╰", "─", "←", "✓"};
constexpr Strokes ASCII{"|", "+", "-", "<-", "="};

// Each line can be as long as the identifier, so the drawing of all parts would grow with the square of its length.
constexpr std::size_t MOST_PARTS = 200;

class Drawing {
public:
    Drawing(const Explanation& explanation, const DrawingStyle& style)
        : m_explanation(explanation), m_isColoured(style.isColoured), m_strokes(style.isAscii ? ASCII : UNICODE) {
        const std::size_t count = std::min(explanation.parts.size(), MOST_PARTS);
        for (std::size_t place = 0; place < count; ++place) {
            const auto before = std::string_view(explanation.fdn).substr(0, explanation.parts[place].begin);
            m_columns.push_back(DisplayWidth(Printable(before)));
        }
    }

    std::string Text() {
        AddIdentifier();
        AddLines();
        AddRecord();
        AddRemarks();
        AddNotes();
        return std::move(m_text);
    }

private:
    void Add(std::string_view style, std::string_view text) {
        if (m_isColoured && !style.empty()) {
            m_text.append(style).append(text).append(RESET);
        } else {
            m_text.append(text);
        }
    }

    void Blanks(std::size_t count) { m_text.append(count, ' '); }

    static std::string_view ColourOf(std::size_t part) { return PART_COLOURS.at(part % PART_COLOURS.size()); }

    void AddIdentifier() {
        const std::string_view fdn = m_explanation.fdn;
        if (fdn.empty()) {
            return;
        }
        m_text += MARGIN;
        std::size_t at = 0;
        for (std::size_t place = 0; place < m_columns.size(); ++place) {
            const ExplainedPart& part = m_explanation.parts[place];
            Add(BOLD, Printable(fdn.substr(at, part.begin - at)));
            Add(ColourOf(place), Printable(fdn.substr(part.begin, part.size)));
            at = part.begin + part.size;
        }
        Add(BOLD, Printable(fdn.substr(at)));
        m_text += "\n";
    }

    // From the last part to the first, so that no line crosses another.
    void AddLines() {
        if (m_columns.empty()) {
            return;
        }
        AddStems(m_columns.size());
        m_text += "\n";
        for (std::size_t place = m_columns.size(); place > 0; --place) {
            AddStems(place - 1);
            AddMeaning(place - 1);
        }
    }

    // The lines of the first parts, which continue downwards.
    void AddStems(std::size_t count) {
        m_text += MARGIN;
        m_at = 0;
        for (std::size_t place = 0; place < count; ++place) {
            Blanks(m_columns[place] - m_at);
            Add(ColourOf(place), m_strokes.stem);
            m_at = m_columns[place] + 1;
        }
    }

    void AddMeaning(std::size_t place) {
        const ExplainedPart& part = m_explanation.parts[place];
        Blanks(m_columns[place] - m_at);
        std::string line(m_strokes.corner);
        for (std::size_t column = m_columns[place]; column < m_columns.back() + 2; ++column) {
            line += m_strokes.line;
        }
        Add(ColourOf(place), line);
        m_text.append(" ").append(Printable(part.meaning));
        if (!part.caveat.empty()) {
            m_text += "  ";
            Add(CAVEAT, std::string(m_strokes.arrow) + " " + Printable(part.caveat));
        }
        m_text += "\n";
    }

    void AddRecord() {
        if (m_explanation.fields.empty()) {
            return;
        }
        m_text.append("\n").append(MARGIN);
        Add(BOLD, m_explanation.type);
        m_text += "\n";
        std::size_t width = 0;
        for (const FieldValue& field : m_explanation.fields) {
            width = std::max(width, field.name.size());
        }
        for (const FieldValue& field : m_explanation.fields) {
            const std::string name = std::string(field.name) + std::string(width - field.name.size() + 2, ' ');
            m_text.append(MARGIN).append(MARGIN);
            Add(field.isKnown ? "" : DIM, name + Printable(field.value));
            m_text += "\n";
        }
    }

    void AddRemarks() {
        m_text += m_explanation.remarks.empty() ? "" : "\n";
        for (const std::string& remark : m_explanation.remarks) {
            m_text.append(MARGIN).append("- ").append(Printable(remark)).append("\n");
        }
    }

    void AddNotes() {
        const std::size_t undrawn = m_explanation.parts.size() - m_columns.size();
        if (undrawn == 0 && m_explanation.notes.empty() && !m_explanation.isCanonical) {
            return;
        }
        m_text += m_text.empty() ? "" : "\n";
        if (undrawn != 0) {
            AddNote(std::to_string(undrawn) + (undrawn == 1 ? " more part is" : " more parts are") + " not drawn");
        }
        for (const std::string& note : m_explanation.notes) {
            AddNote(note);
        }
        if (m_explanation.isCanonical) {
            m_text += MARGIN;
            Add(GOOD, std::string(m_strokes.tick) + " canonical: what was read is written just so");
            m_text += "\n";
        }
    }

    void AddNote(const std::string& note) {
        m_text += MARGIN;
        Add(CAVEAT, "! " + Printable(note));
        m_text += "\n";
    }

    const Explanation& m_explanation;
    bool m_isColoured;
    const Strokes& m_strokes;
    std::vector<std::size_t> m_columns;  // where each drawn part begins
    std::size_t m_at = 0;                // the column of the line being drawn
    std::string m_text;
};

}  // namespace

std::string Draw(const Explanation& explanation, const DrawingStyle& style) {
    return Drawing(explanation, style).Text();
}

}  // namespace NS_KX
