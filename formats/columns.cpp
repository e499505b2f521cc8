#include "formats/columns.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "formats/csv.h"
#include "formats/json.h"
#include "formats/recordshape.h"
#include "formats/tablecell.h"
#include "formats/tsv.h"
#include "text/number.h"

namespace NS_KX {

namespace {

using Source = Column::Source;

// The field of this name in the first kind that has one; null if none has.
const Field* FieldOfAnyKind(std::string_view name) {
    for (const Kind* const kind : AllKinds()) {
        if (const Field* const field = FindField(*kind, name)) {
            return field;
        }
    }
    return nullptr;
}

std::vector<PieceName> PiecesOf(const std::vector<Column>& columns) {
    std::vector<PieceName> pieces;
    for (const Column& column : columns) {
        if (column.source == Source::PIECE) {
            pieces.push_back(column.piece);
        }
    }
    return pieces;
}

// Whether `text` is a number as JSON has it: without needless zeros.
bool IsJsonNumber(std::string_view text) {
    std::int64_t number = 0;
    const std::string_view digits = text.substr(text.starts_with('-') ? 1 : 0);
    return ReadWhole(text, number) && (digits == "0" || !digits.starts_with('0'));
}

// In a table: wide enough for most values.
std::size_t WidthOf(const Column& column) {
    constexpr std::size_t OF_NUMBERS = 6;
    constexpr std::size_t OF_TEXTS = 20;
    bool isText = false;
    switch (column.source) {
        case Source::FDN:
            return FDN_WIDTH;
        case Source::TYPE:
        case Source::KIND:
            return TYPE_WIDTH;
        case Source::PIECE:
            isText = !column.piece.IsNumber();
            break;
        case Source::FIELD:
            isText = FieldOfAnyKind(column.name)->type == FieldType::TEXT;
            break;
    }
    return std::max(column.name.size(), isText ? OF_TEXTS : OF_NUMBERS);
}

std::vector<std::string> TextsBefore(const std::vector<Column>& columns, OutputFormat format) {
    std::vector<std::string> texts;
    for (const Column& column : columns) {
        const bool isFirst = texts.empty();
        if (format == OutputFormat::JSONL) {
            TextBuffer text;
            text.Put(isFirst ? '{' : ',');
            AppendJsonText(column.name, text);
            text.Put(':');
            texts.emplace_back(text.View());
        } else if (format == OutputFormat::TABLE || isFirst) {
            texts.emplace_back();
        } else {
            texts.emplace_back(format == OutputFormat::CSV ? "," : "\t");
        }
    }
    return texts;
}

}  // namespace

std::optional<Column> Column::Parse(std::string_view name) {
    if (name == "fdn") {
        return Column{"fdn", Source::FDN};
    }
    if (name == "type") {
        return Column{"type", Source::TYPE};
    }
    if (name == "kind") {
        return Column{"kind", Source::KIND};
    }
    if (auto piece = PieceName::ParseKnown(name)) {
        return Column{std::string(name), Source::PIECE, *std::move(piece)};
    }
    if (FieldOfAnyKind(name) != nullptr) {
        return Column{std::string(name), Source::FIELD};
    }
    return std::nullopt;
}

std::vector<std::string> NamesOfColumns() {
    std::vector<std::string> names;
    for (const Tag* const tag : AllTags()) {
        names.emplace_back(tag->name);
    }
    names.emplace_back(PORT_TAG);
    names.insert(names.end(), {"fdn", "type", "kind"});
    for (const Kind* const kind : AllKinds()) {
        for (const Field& field : kind->layout.fields) {
            if (std::find(names.begin(), names.end(), field.name) == names.end()) {
                names.emplace_back(field.name);
            }
        }
    }
    return names;
}

std::string MakeHeader(const std::vector<Column>& columns, OutputFormat format) {
    if (format == OutputFormat::JSONL) {
        return {};
    }
    const std::vector<std::string> before = TextsBefore(columns, format);
    TextBuffer header;
    for (std::size_t place = 0; place < columns.size(); ++place) {
        Append(header, before[place]);
        const std::size_t cell = header.GetSize();
        Append(header, columns[place].name);
        if (format == OutputFormat::TABLE && place + 1 != columns.size()) {
            Pad(cell, WidthOf(columns[place]), header);
        }
    }
    header.Put('\n');
    return std::string(header.View());
}

ColumnRow::ColumnRow(std::vector<Column> columns, OutputFormat format)
    : m_columns(std::move(columns)),
      m_format(format),
      m_before(TextsBefore(m_columns, format)),
      m_finder(PiecesOf(m_columns)) {
    for (const Kind* const kind : AllKinds()) {
        for (const Column& column : m_columns) {
            if (column.source == Source::FIELD) {
                m_fields[kind].push_back(FindField(*kind, column.name));
            }
        }
    }
}

bool ColumnRow::AppendLine(std::string_view fdn, std::span<const std::string_view> pieces, const Kind* kind,
                           const void* record, TextBuffer& out, std::size_t mostSize) const {
    const std::size_t begin = out.GetSize();
    auto piece = pieces.begin();
    const auto fields = m_fields.find(kind);
    auto field = fields != m_fields.end() ? fields->second.begin() : Fields::const_iterator();
    for (std::size_t place = 0; place < m_columns.size(); ++place) {
        const Column& column = m_columns[place];
        Append(out, m_before[place]);
        const std::size_t cell = out.GetSize();
        switch (column.source) {
            case Source::PIECE:
                AppendPiece(column, *piece++, out);
                break;
            case Source::FIELD:
                AppendField(*field++, record, out);
                break;
            case Source::FDN:
                AppendText(fdn, out);
                break;
            case Source::TYPE:
                AppendText(kind->type, out);
                break;
            case Source::KIND:
                AppendText(kind->word, out);
                break;
        }
        if (m_format == OutputFormat::TABLE && place + 1 != m_columns.size()) {
            Pad(cell, WidthOf(column), out);
        }
        if (out.GetSize() - begin >= mostSize) {
            out.Pop(out.GetSize() - begin);
            return false;
        }
    }
    Append(out, m_format == OutputFormat::JSONL ? "}\n" : "\n");
    return true;
}

void ColumnRow::AppendPiece(const Column& column, std::string_view piece, TextBuffer& out) const {
    if (piece.data() == nullptr) {
        AppendNone(out);
    } else if (m_format == OutputFormat::JSONL && column.piece.IsNumber() && IsJsonNumber(piece)) {
        Append(out, piece);
    } else {
        AppendText(piece, out);
    }
}

void ColumnRow::AppendField(const Field* field, const void* record, TextBuffer& out) const {
    if (field == nullptr) {
        AppendNone(out);
        return;
    }
    VisitField(*field, record, [&](const auto& value) {
        AppendValue(value, out, [this](std::string_view text, TextBuffer& to) { AppendText(text, to); });
    });
}

void ColumnRow::AppendText(std::string_view text, TextBuffer& out) const {
    switch (m_format) {
        case OutputFormat::JSONL:
            AppendJsonText(text, out);
            break;
        case OutputFormat::CSV:
            AppendCsvField(text, out);
            break;
        case OutputFormat::TSV:
            AppendTsvField(text, out);
            break;
        case OutputFormat::TABLE:
            AppendTableWord(text, out);
            break;
    }
}

void ColumnRow::AppendNone(TextBuffer& out) const {
    if (m_format == OutputFormat::JSONL) {
        Append(out, "null");
    } else if (m_format == OutputFormat::TABLE) {
        out.Put('-');
    }
}

}  // namespace NS_KX
