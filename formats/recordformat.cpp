#include "formats/recordformat.h"

#include <algorithm>

#include "formats/columnformat.h"
#include "formats/json.h"
#include "formats/recordshape.h"

namespace NS_KX {

namespace {

// {"reserved":0,"neId":5}; a nested record is an object of its own.
RecordShape MakeJsonShape(const Kind& kind, const FormatOptions& options) {
    RecordShape shape;
    std::string before = "{";
    std::string_view nest;
    for (const Field& field : kind.layout.fields) {
        if (!options.Writes(field)) {
            continue;
        }
        if (field.Nest() != nest) {
            before.append(nest.empty() ? "" : "}");
            before.append(shape.parts.empty() ? "" : ",");
            nest = field.Nest();
            before.append(nest.empty() ? "" : "\"" + std::string(nest) + "\":{");
        } else if (!shape.parts.empty()) {
            before.append(",");
        }
        shape.parts.push_back({before.append("\"").append(field.Member()).append("\":"), &field});
        before.clear();
    }
    shape.after = before.append(nest.empty() ? "}" : "}}");
    return shape;
}

class JsonFormat : public RecordFormat {
public:
    JsonFormat(const FormatOptions& options, const NS_UTIL::Surroundings& surroundings)
        : RecordFormat(surroundings),
          m_hasFdn(!options.AreFieldsChosen() || options.IsChosen("fdn")),
          m_shapes(AllKinds(), [&](const Kind& kind) { return MakeLineShape(kind, options); }) {}

private:
    // All of the line but the identifier and what stands before it.
    RecordShape MakeLineShape(const Kind& kind, const FormatOptions& options) const {
        std::string head;
        head.append(m_hasFdn ? "," : "{").append(R"("type":")").append(kind.type).append("\"");
        if (options.IsChosen("kind")) {
            head.append(R"(,"kind":")").append(kind.word).append("\"");
        }
        RecordShape shape;
        if (HasRecord(options)) {
            head.append(R"(,"record":)");
            shape = MakeJsonShape(kind, options);
        }
        (shape.parts.empty() ? shape.after : shape.parts.front().before).insert(0, head);
        shape.after += "}\n";
        return shape;
    }

    static bool HasRecord(const FormatOptions& options) {
        return !options.AreFieldsChosen() ||
               std::any_of(options.fields.begin(), options.fields.end(),
                           [](const auto& name) { return name != "fdn" && name != "type" && name != "kind"; });
    }

    void AppendLine(std::string_view fdn, const Kind& kind, const void* record, TextBuffer& out) override {
        if (m_hasFdn) {
            Append(out, R"({"fdn":)");
            AppendJsonText(fdn, out);
        }
        AppendRecord(m_shapes.Of(kind), record, out, AppendJsonText);
    }

    bool m_hasFdn;
    RecordShapes m_shapes;
};

}  // namespace

bool FormatOptions::IsChosen(std::string_view name) const {
    return std::find(fields.begin(), fields.end(), name) != fields.end();
}

std::string MakeHeader(const FormatOptions& options) {
    return options.format == OutputFormat::JSONL ? std::string() : MakeColumnHeader(options);
}

std::unique_ptr<RecordFormat> MakeFormat(const FormatOptions& options, const NS_UTIL::Surroundings& surroundings) {
    if (options.format == OutputFormat::JSONL) {
        return std::make_unique<JsonFormat>(options, surroundings);
    }
    return MakeColumnFormat(options, surroundings);
}

void AppendJsonRecord(const Kind& kind, const void* record, TextBuffer& out) {
    // One for each thread: a look-up remembers the place of the shape.
    static thread_local RecordShapes shapes(AllKinds(), [](const Kind& each) { return MakeJsonShape(each, {}); });
    AppendRecord(shapes.Of(kind), record, out, AppendJsonText);
}

}  // namespace NS_KX
