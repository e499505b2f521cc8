#include "formats/recordformat.h"

#include <algorithm>
#include <string_view>

#include <rapidjson/writer.h>

#include "formats/columnformat.h"

namespace NS_KX {

namespace {

class JsonFormat : public RecordFormat, private RecordSink {
public:
    void Write(const std::string& fdn, const Kind& kind, TextBuffer& out) override {
        const std::size_t before = out.GetSize();
        try {
            WriteLine(fdn, kind, out);
        } catch (...) {
            out.Pop(out.GetSize() - before);
            throw;
        }
    }

private:
    void WriteLine(const std::string& fdn, const Kind& kind, TextBuffer& out) {
        m_writer.Reset(out);
        m_writer.StartObject();
        Text("fdn", fdn);
        Text("type", kind.Type());
        BeginNested("record");
        kind.Decode(fdn, *this);
        EndNested();
        m_writer.EndObject();
        out.Put('\n');
    }

    void Number(std::string_view name, std::int64_t number) override {
        Key(name);
        m_writer.Int64(number);
    }

    void Flag(std::string_view name, bool flag) override {
        Key(name);
        m_writer.Bool(flag);
    }

    void Text(std::string_view name, std::string_view text) override {
        Key(name);
        m_writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
    }

    void BeginNested(std::string_view name) override {
        Key(name);
        m_writer.StartObject();
    }

    void EndNested() override { m_writer.EndObject(); }

    void Key(std::string_view name) { m_writer.Key(name.data(), static_cast<rapidjson::SizeType>(name.size())); }

    rapidjson::Writer<TextBuffer> m_writer;
};

}  // namespace

std::string MakeHeader(const Layout& layout) {
    return layout.format == FormatName::JSONL ? std::string() : MakeColumnHeader(layout);
}

std::unique_ptr<RecordFormat> MakeFormat(const Layout& layout) {
    if (layout.format == FormatName::JSONL) {
        return std::make_unique<JsonFormat>();
    }
    return MakeColumnFormat(layout);
}

}  // namespace NS_KX
