#include "formats/columnformat.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/fieldvalues.h"
#include "formats/columns.h"
#include "formats/csv.h"
#include "formats/recordshape.h"
#include "formats/tablecell.h"
#include "formats/tsv.h"
#include "text/displaytext.h"

namespace NS_KX {

namespace {

std::vector<std::string_view> ColumnNames(const FormatOptions& options) {
    std::vector<std::string_view> names{"fdn", "type"};
    for (const Kind* const kind : options.kinds) {
        for (const Field& field : kind->layout.fields) {
            if (std::find(names.begin(), names.end(), field.name) == names.end()) {
                names.push_back(field.name);
            }
        }
    }
    return names;
}

std::vector<Column> ChosenColumns(const FormatOptions& options) {
    std::vector<Column> columns;
    for (const std::string& name : options.fields) {
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
    RowFormat(const FormatOptions& options, const NS_UTIL::Surroundings& surroundings)
        : RecordFormat(surroundings),
          m_shapes(options.kinds, [names = ColumnNames(options)](const Kind& kind) { return MakeShape(kind, names); }) {
    }

    static std::string Header(const FormatOptions& options) {
        TextBuffer header;
        for (const std::string_view name : ColumnNames(options)) {
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

    void AppendLine(std::string_view fdn, const Kind& kind, const void* record, TextBuffer& out) override {
        Style::AppendText(fdn, out);
        AppendRecord(m_shapes.Of(kind), record, out, Style::AppendText);
    }

    RecordShapes m_shapes;
};

// Chosen columns.
class ChosenFormat : public RecordFormat {
public:
    ChosenFormat(const FormatOptions& options, const NS_UTIL::Surroundings& surroundings)
        : RecordFormat(surroundings), m_row(ChosenColumns(options), options.format) {}

private:
    void AppendLine(std::string_view fdn, const Kind& kind, const void* record, TextBuffer& out) override {
        m_row.AppendLine(fdn, {}, &kind, record, out);
    }

    ColumnRow m_row;
};

// ---- The table ------------------------------------------------------------------------------------------------------

// For people: type and identifier in columns, then only the fields that differ from a fresh record.
class TableFormat : public RecordFormat {
public:
    TableFormat(const FormatOptions& options, const NS_UTIL::Surroundings& surroundings)
        : RecordFormat(surroundings), m_options(options) {}

private:
    void AppendLine(std::string_view fdn, const Kind& kind, const void* record, TextBuffer& out) override {
        const std::size_t begin = out.GetSize();
        AppendPadded(kind.type, TYPE_WIDTH, out);
        const std::size_t cell = out.GetSize();
        AppendTableWord(fdn, out);
        const std::size_t identifierEnd = out.GetSize();
        Pad(cell, FDN_WIDTH, out);
        AppendFields(kind, record, [first = true, &out](std::string_view text) mutable {
            Append(out, first ? "" : " ");
            Append(out, text);
            first = false;
        });
        if (m_options.width != 0 && DisplayWidth(out.View().substr(begin)) > m_options.width) {
            out.Pop(out.GetSize() - identifierEnd);
            AppendFieldsBelow(kind, record, out);
        }
        out.Put('\n');
    }

    // Calls `take` with each field that differs from a fresh record, as "name=value".
    template <class Take>
    void AppendFields(const Kind& kind, const void* record, Take take) {
        for (const Field& field : kind.layout.fields) {
            if (m_options.Writes(field) && IsKnown(kind, field, record)) {
                m_text.Clear();
                Append(m_text, field.name);
                m_text.Put('=');
                VisitField(field, record, [&](const auto& value) { AppendValue(value, m_text, AppendTableWord); });
                take(m_text.View());
            }
        }
    }

    // On lines of their own, as many fields as have room on each.
    void AppendFieldsBelow(const Kind& kind, const void* record, TextBuffer& out) {
        constexpr std::string_view INDENT = "    ";
        std::size_t end = m_options.width;  // of the current line: there is no room on that of the identifier
        AppendFields(kind, record, [&](std::string_view text) {
            const std::size_t width = DisplayWidth(text);
            const bool hasRoom = end + 1 + width <= m_options.width;
            Append(out, hasRoom ? " " : "\n");
            Append(out, hasRoom ? "" : INDENT);
            Append(out, text);
            end = (hasRoom ? end + 1 : INDENT.size()) + width;
        });
    }

    FormatOptions m_options;
    TextBuffer m_text;  // of one field
};

}  // namespace

std::string MakeColumnHeader(const FormatOptions& options) {
    if (options.AreFieldsChosen() && options.format != OutputFormat::TABLE) {
        return MakeHeader(ChosenColumns(options), options.format);
    }
    if (options.format == OutputFormat::CSV) {
        return RowFormat<Csv>::Header(options);
    }
    if (options.format == OutputFormat::TSV) {
        return RowFormat<Tsv>::Header(options);
    }
    TextBuffer header;
    AppendPadded("TYPE", TYPE_WIDTH, header);
    AppendPadded("FDN", FDN_WIDTH, header);
    Append(header, "RECORD\n");
    return std::string(header.View());
}

std::unique_ptr<RecordFormat> MakeColumnFormat(const FormatOptions& options,
                                               const NS_UTIL::Surroundings& surroundings) {
    if (options.AreFieldsChosen() && options.format != OutputFormat::TABLE) {
        return std::make_unique<ChosenFormat>(options, surroundings);
    }
    if (options.format == OutputFormat::CSV) {
        return std::make_unique<RowFormat<Csv>>(options, surroundings);
    }
    if (options.format == OutputFormat::TSV) {
        return std::make_unique<RowFormat<Tsv>>(options, surroundings);
    }
    return std::make_unique<TableFormat>(options, surroundings);
}

}  // namespace NS_KX
