#include "formats/listing.h"

#include <algorithm>

#include <rapidjson/writer.h>

#include "cli/verb.h"
#include "files/csv.h"
#include "files/output.h"
#include "text/displaytext.h"
#include "text/text.h"
#include "text/textbuffer.h"
#include "text/texttable.h"

namespace NS_KXDU {

namespace {

using Cell = Listing::Cell;

// Calls a function for each kind of cell.
template <class... Functions>
struct Cases : Functions... {
    using Functions::operator()...;
};
template <class... Functions>
Cases(Functions...) -> Cases<Functions...>;

std::string ForPeople(const Cell& cell) {
    return std::visit(Cases{[](const Listing::None& none) { return none.reason; },
                            [](bool value) { return std::string(value ? "yes" : "no"); },
                            [](std::int64_t number) { return std::to_string(number); },
                            [](const std::string& text) { return Printable(text); }},
                      cell);
}

std::string ForCsv(const Cell& cell) {
    return std::visit(
        Cases{[](const Listing::None&) { return std::string(); },
              [](bool value) { return std::string(value ? "true" : "false"); },
              [](std::int64_t number) { return std::to_string(number); }, [](const std::string& text) { return text; }},
        cell);
}

std::string ForMarkdown(const Cell& cell) {
    std::string text = ForPeople(cell);
    for (auto bar = text.find('|'); bar != std::string::npos; bar = text.find('|', bar + 2)) {
        text.insert(bar, 1, '\\');
    }
    return text;
}

using JsonWriter = rapidjson::Writer<TextBuffer>;

void WriteText(JsonWriter& writer, std::string_view text) {
    writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

void WriteJson(JsonWriter& writer, const Cell& cell) {
    std::visit(Cases{[&](const Listing::None&) { writer.Null(); }, [&](bool value) { writer.Bool(value); },
                     [&](std::int64_t number) { writer.Int64(number); },
                     [&](const std::string& text) {
                         // What is not UTF-8 cannot stand in JSON.
                         WriteText(writer, FindInvalidUtf8(text) == text.size() ? text : Printable(text));
                     }},
               cell);
}

bool SaysNothing(const Cell& cell) {
    const bool* const value = std::get_if<bool>(&cell);
    return std::holds_alternative<Listing::None>(cell) || (value != nullptr && !*value);
}

std::string MarkdownLine(const std::vector<std::string>& cells) {
    std::string line = "|";
    for (const std::string& cell : cells) {
        line.append(" ").append(cell).append(" |");
    }
    return line + "\n";
}

template <class ToText>
std::vector<std::string> Texts(const Listing::Row& row, ToText toText) {
    std::vector<std::string> texts;
    std::transform(row.begin(), row.end(), std::back_inserter(texts), toText);
    return texts;
}

}  // namespace

Listing Listing::Turned() const {
    std::vector<std::string> columns{m_columns.front()};
    for (const Row& row : m_rows) {
        columns.push_back(ForPeople(row.front()));
    }
    Listing turned(std::move(columns));
    for (std::size_t column = 1; column < m_columns.size(); ++column) {
        Row turnedRow{m_columns[column]};
        for (const Row& row : m_rows) {
            turnedRow.push_back(row[column]);
        }
        turned.AddRow(std::move(turnedRow));
    }
    return turned;
}

bool Listing::HasSilentRow() const {
    return std::any_of(m_rows.begin(), m_rows.end(),
                       [](const Row& row) { return std::all_of(row.begin() + 1, row.end(), SaysNothing); });
}

std::string Listing::Text(Format format) const {
    switch (format) {
        case Format::CSV:
            return CsvText();
        case Format::JSONL:
            return JsonText();
        case Format::MARKDOWN:
            return MarkdownText();
        case Format::TABLE:
            break;
    }
    return TableText();
}

// Whether the column holds numbers, of which some may be missing.
bool Listing::IsNumeric(std::size_t column) const {
    bool hasNumber = false;
    for (const Row& row : m_rows) {
        const bool isNumber = std::holds_alternative<std::int64_t>(row[column]);
        hasNumber = hasNumber || isNumber;
        if (!isNumber && !std::holds_alternative<None>(row[column])) {
            return false;
        }
    }
    return hasNumber;
}

std::string Listing::TableText() const {
    std::vector<TextTable::Column> columns;
    for (std::size_t column = 0; column < m_columns.size(); ++column) {
        columns.push_back({m_columns[column], IsNumeric(column) ? TextTable::Align::RIGHT : TextTable::Align::LEFT});
    }
    TextTable table(std::move(columns));
    for (const Row& row : m_rows) {
        table.AddRow(Texts(row, ForPeople));
    }
    return table.Text();
}

std::string Listing::CsvText() const {
    std::string text = CsvLine(m_columns);
    for (const Row& row : m_rows) {
        text += CsvLine(Texts(row, ForCsv));
    }
    return text;
}

std::string Listing::JsonText() const {
    TextBuffer buffer;
    for (const Row& row : m_rows) {
        JsonWriter writer(buffer);
        writer.StartObject();
        for (std::size_t column = 0; column < m_columns.size(); ++column) {
            WriteText(writer, m_columns[column]);
            WriteJson(writer, row[column]);
        }
        writer.EndObject();
        buffer.Put('\n');
    }
    return std::string(ViewOf(buffer));
}

std::string Listing::MarkdownText() const {
    std::string text = MarkdownLine(m_columns) + "|";
    for (std::size_t column = 0; column < m_columns.size(); ++column) {
        text += IsNumeric(column) ? "---:|" : "---|";
    }
    text += "\n";
    for (const Row& row : m_rows) {
        text += MarkdownLine(Texts(row, ForMarkdown));
    }
    return text;
}

void AddListingOptions(Verb& verb, ListingOptions& options) {
    verb.AddChoice("--format", "FORMAT", options.format,
                   {{"table", Listing::Format::TABLE},
                    {"csv", Listing::Format::CSV},
                    {"jsonl", Listing::Format::JSONL},
                    {"md", Listing::Format::MARKDOWN}},
                   "How rows are written: table (the default), csv, jsonl or md");
    verb.AddOutput(options.output);
}

void Print(const Listing& listing, const ListingOptions& options) {
    WriteWhole(options.output, listing.Text(options.format));
}

ExitCode PrintAnswers(const Listing& listing, const ListingOptions& options) {
    Print(listing, options);
    return listing.HasSilentRow() ? ExitCode::FOUND : ExitCode::OK;
}

}  // namespace NS_KXDU
