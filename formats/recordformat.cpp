#include "formats/recordformat.h"

#include "formats/columnformat.h"
#include "formats/json.h"
#include "formats/recordshape.h"

namespace NS_KX {

namespace {

// {"reserved":0,"neId":5}; a nested record is an object of its own.
RecordShape MakeJsonShape(const Kind& kind) {
    RecordShape shape;
    std::string before = "{";
    std::string_view nest;
    for (const Field& field : kind.layout.fields) {
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
    shape.after = nest.empty() ? "}" : "}}";
    return shape;
}

class JsonFormat : public RecordFormat {
public:
    explicit JsonFormat(const NS_UTIL::Surroundings& surroundings)
        : RecordFormat(surroundings), m_shapes(AllKinds(), MakeLineShape) {}

private:
    static RecordShape MakeLineShape(const Kind& kind) {
        RecordShape shape = MakeJsonShape(kind);
        shape.parts.front().before.insert(0, R"(,"type":")" + std::string(kind.type) + R"(","record":)");
        shape.after += "}\n";
        return shape;
    }

    void Append(std::string_view fdn, const Kind& kind, const void* record, TextBuffer& out) override {
        NS_KX::Append(out, R"({"fdn":)");
        AppendJsonText(fdn, out);
        AppendRecord(m_shapes.Of(kind), record, out, AppendJsonText);
    }

    RecordShapes m_shapes;
};

}  // namespace

std::string MakeHeader(const Layout& layout) {
    return layout.format == FormatName::JSONL ? std::string() : MakeColumnHeader(layout);
}

std::unique_ptr<RecordFormat> MakeFormat(const Layout& layout, const NS_UTIL::Surroundings& surroundings) {
    if (layout.format == FormatName::JSONL) {
        return std::make_unique<JsonFormat>(surroundings);
    }
    return MakeColumnFormat(layout, surroundings);
}

void AppendJsonRecord(const Kind& kind, const void* record, TextBuffer& out) {
    // One for each thread: a look-up remembers the place of the shape.
    static thread_local RecordShapes shapes(AllKinds(), MakeJsonShape);
    AppendRecord(shapes.Of(kind), record, out, AppendJsonText);
}

}  // namespace NS_KX
