/// The text between the values of a record, which is the same for all records of a kind and is prepared once.
#pragma once

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "catalogue/kind.h"
#include "text/textbuffer.h"

namespace NS_KX {

/// The records of one kind: the text before each value, and the text after the last.
struct RecordShape {
    struct Part {
        std::string before;
        const Field* field;
    };

    std::vector<Part> parts;
    std::string after;
};

/// Appends a value: a number in decimal, a flag as true or false, a text by `appendText(text, out)`.
template <class Value, class AppendText>
void AppendValue(const Value& value, TextBuffer& out, AppendText appendText) {
    if constexpr (std::is_same_v<Value, bool>) {
        Append(out, value ? "true" : "false");
    } else if constexpr (std::is_integral_v<Value>) {
        AppendNumber(out, value);
    } else {
        appendText(value, out);
    }
}

/// Appends `record`, whose shape this is.
template <class AppendText>
void AppendRecord(const RecordShape& shape, const void* record, TextBuffer& out, AppendText appendText) {
    for (const auto& [before, field] : shape.parts) {
        Append(out, before);
        VisitField(*field, record, [&](const auto& value) { AppendValue(value, out, appendText); });
    }
    Append(out, shape.after);
}

/// The shapes of all kinds, each found by its kind.
class RecordShapes {
public:
    /// Prepares the shape of each of `kinds` by `make(kind)`.
    template <class Kinds, class Make>
    RecordShapes(const Kinds& kinds, Make make) {
        m_shapes.reserve(kinds.size());
        for (const Kind* const kind : kinds) {
            m_shapes.emplace_back(kind, make(*kind));
        }
    }

    /// The shape of `kind`, which must be one of those prepared.
    [[nodiscard]] const RecordShape& Of(const Kind& kind) {
        for (std::size_t tried = 0; tried < m_shapes.size() && m_shapes[m_last].first != &kind; ++tried) {
            m_last = (m_last + 1) % m_shapes.size();
        }
        return m_shapes[m_last].second;
    }

private:
    std::vector<std::pair<const Kind*, RecordShape>> m_shapes;
    std::size_t m_last = 0;  // searches start here: the next record is mostly of the same kind, or of the next
};

}  // namespace NS_KX
