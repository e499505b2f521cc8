#include "formats/columnformat.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/readfields.h"
#include "formats/csv.h"
#include "formats/recordshape.h"
#include "formats/tsv.h"
#include "text/displaytext.h"

namespace NS_KX {

namespace {

std::vector<std::string_view> ColumnNames(const Layout& layout) {
    std::vector<std::string_view> names{"fdn", "type"};
    for (const Kind* const kind : layout.kinds) {
        for (const Field& field : kind->layout.fields) {
            if (std::find(names.begin(), names.end(), field.name) == names.end()) {
                names.push_back(field.name);
            }
        }
    }
    return names;
}

// ---- CSV and TSV ----------------------------------------------------------------------------------------------------

struct Csv {
    static constexpr char SEPARATOR = ',';
    static void AppendText(std::string_view text, TextBuffer& out) { AppendCsvField(text, out); }
};

struct Tsv {
    static constexpr char SEPARATOR = '\t';
    static void AppendText(std::string_view text, TextBuffer& out) { AppendTsvField(text, out); }
};

// Every field has a column, which stays empty for a record without that field.
template <class Style>
class RowFormat : public RecordFormat {
public:
    RowFormat(const Layout& layout, const NS_UTIL::Surroundings& surroundings)
        : RecordFormat(surroundings),
          m_shapes(layout.kinds, [names = ColumnNames(layout)](const Kind& kind) { return MakeShape(kind, names); }) {}

    static std::string Header(const Layout& layout) {
        TextBuffer header;
        for (const std::string_view name : ColumnNames(layout)) {
            if (header.GetSize() != 0) {
                header.Put(Style::SEPARATOR);
            }
            Style::AppendText(name, header);
        }
        header.Put('\n');
        return std::string(header.View());
    }

private:
    // After the identifier: the type, and the fields in their columns.
    static RecordShape MakeShape(const Kind& kind, const std::vector<std::string_view>& names) {
        RecordShape shape;
        std::string before = Style::SEPARATOR + std::string(kind.type);
        for (auto name = names.begin() + 2; name != names.end(); ++name) {
            before += Style::SEPARATOR;
            if (const Field* const field = FindField(kind, *name)) {
                shape.parts.push_back({before, field});
                before.clear();
            }
        }
        shape.after = before + "\n";
        return shape;
    }

    void Append(std::string_view fdn, const Kind& kind, const void* record, TextBuffer& out) override {
        Style::AppendText(fdn, out);
        AppendRecord(m_shapes.Of(kind), record, out, Style::AppendText);
    }

    RecordShapes m_shapes;
};

// ---- The table ------------------------------------------------------------------------------------------------------

// Wide enough for all types, and for most identifiers.
constexpr std::size_t TYPE_WIDTH = 20;
constexpr std::size_t FDN_WIDTH = 48;

void AppendPadded(std::string_view printable, std::size_t width, TextBuffer& out) {
    Append(out, printable);
    for (std::size_t size = DisplayWidth(printable); size < width; ++size) {
        out.Put(' ');
    }
    Append(out, "  ");
}

// Text as it can stand between blanks.
std::string Word(std::string_view text) {
    std::string printable = Printable(text);
    if (printable.find_first_of(" \"") == std::string::npos) {
        return printable;
    }
    std::string quoted = "\"";
    for (const char character : printable) {
        quoted.append(character == '"' || character == '\\' ? "\\" : "").append(1, character);
    }
    return quoted + "\"";
}

// For people: type and identifier in columns, then only the fields that differ from a fresh record.
class TableFormat : public RecordFormat {
public:
    explicit TableFormat(const NS_UTIL::Surroundings& surroundings) : RecordFormat(surroundings) {}

private:
    void Append(std::string_view fdn, const Kind& kind, const void* record, TextBuffer& out) override {
        AppendPadded(kind.type, TYPE_WIDTH, out);
        AppendPadded(Word(fdn), FDN_WIDTH, out);
        const char* separator = "";
        for (const Field& field : kind.layout.fields) {
            if (IsKnown(kind, field, record)) {
                NS_KX::Append(out, separator);
                NS_KX::Append(out, field.name);
                out.Put('=');
                VisitField(field, record, [&](const auto& value) { AppendValue(value, out, AppendWord); });
                separator = " ";
            }
        }
        out.Put('\n');
    }

    static void AppendWord(std::string_view text, TextBuffer& out) { NS_KX::Append(out, Word(text)); }
};

}  // namespace

std::string MakeColumnHeader(const Layout& layout) {
    if (layout.format == FormatName::CSV) {
        return RowFormat<Csv>::Header(layout);
    }
    if (layout.format == FormatName::TSV) {
        return RowFormat<Tsv>::Header(layout);
    }
    TextBuffer header;
    AppendPadded("TYPE", TYPE_WIDTH, header);
    AppendPadded("FDN", FDN_WIDTH, header);
    Append(header, "RECORD\n");
    return std::string(header.View());
}

std::unique_ptr<RecordFormat> MakeColumnFormat(const Layout& layout, const NS_UTIL::Surroundings& surroundings) {
    if (layout.format == FormatName::CSV) {
        return std::make_unique<RowFormat<Csv>>(layout, surroundings);
    }
    if (layout.format == FormatName::TSV) {
        return std::make_unique<RowFormat<Tsv>>(layout, surroundings);
    }
    return std::make_unique<TableFormat>(surroundings);
}

}  // namespace NS_KX
