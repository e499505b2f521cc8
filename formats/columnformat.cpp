#include "formats/columnformat.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/readfields.h"
#include "formats/columns.h"
#include "formats/csv.h"
#include "formats/recordshape.h"
#include "formats/tablecell.h"
#include "formats/tsv.h"

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

std::vector<Column> ChosenColumns(const Layout& layout) {
    std::vector<Column> columns;
    for (const std::string& name : layout.fields) {
        columns.push_back(Column::Parse(name).value());
    }
    return columns;
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

// Chosen columns.
class ChosenFormat : public RecordFormat {
public:
    ChosenFormat(const Layout& layout, const NS_UTIL::Surroundings& surroundings)
        : RecordFormat(surroundings), m_row(ChosenColumns(layout), layout.format) {}

private:
    void Append(std::string_view fdn, const Kind& kind, const void* record, TextBuffer& out) override {
        m_row.Append(fdn, {}, &kind, record, out);
    }

    ColumnRow m_row;
};

// ---- The table ------------------------------------------------------------------------------------------------------

// For people: type and identifier in columns, then only the fields that differ from a fresh record.
class TableFormat : public RecordFormat {
public:
    TableFormat(const Layout& layout, const NS_UTIL::Surroundings& surroundings)
        : RecordFormat(surroundings), m_layout(layout) {}

private:
    void Append(std::string_view fdn, const Kind& kind, const void* record, TextBuffer& out) override {
        AppendPadded(kind.type, TYPE_WIDTH, out);
        const std::size_t cell = out.GetSize();
        AppendTableWord(fdn, out);
        Pad(cell, FDN_WIDTH, out);
        const char* separator = "";
        for (const Field& field : kind.layout.fields) {
            if (m_layout.Has(field) && IsKnown(kind, field, record)) {
                NS_KX::Append(out, separator);
                NS_KX::Append(out, field.name);
                out.Put('=');
                VisitField(field, record, [&](const auto& value) { AppendValue(value, out, AppendTableWord); });
                separator = " ";
            }
        }
        out.Put('\n');
    }

    Layout m_layout;
};

}  // namespace

std::string MakeColumnHeader(const Layout& layout) {
    if (layout.IsChosen() && layout.format != FormatName::TABLE) {
        return MakeHeader(ChosenColumns(layout), layout.format);
    }
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
    if (layout.IsChosen() && layout.format != FormatName::TABLE) {
        return std::make_unique<ChosenFormat>(layout, surroundings);
    }
    if (layout.format == FormatName::CSV) {
        return std::make_unique<RowFormat<Csv>>(layout, surroundings);
    }
    if (layout.format == FormatName::TSV) {
        return std::make_unique<RowFormat<Tsv>>(layout, surroundings);
    }
    return std::make_unique<TableFormat>(layout, surroundings);
}

}  // namespace NS_KX
