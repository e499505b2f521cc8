#include "cli/listing.h"

#include <algorithm>
#include <utility>

#include <unistd.h>

#include "cli/verb.h"
#include "formats/csv.h"
#include "formats/json.h"
#include "formats/texttable.h"
#include "lines/terminal.h"
#include "text/displaytext.h"
#include "text/textbuffer.h"
#include "text/utf8.h"

namespace NS_KX::NS_KXDU {

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

void AppendJson(const Cell& cell, TextBuffer& out) {
    std::visit(Cases{[&](const Listing::None&) { Append(out, "null"); },
                     [&](bool value) { Append(out, value ? "true" : "false"); },
                     [&](std::int64_t number) { AppendNumber(out, number); },
                     [&](const std::string& text) {
                         // What is not UTF-8 cannot stand in JSON.
                         AppendJsonText(FindInvalidUtf8(text) == text.size() ? text : Printable(text), out);
                     }},
               cell);
}

bool SaysNothing(const Cell& cell) {
    const bool* const value = std::get_if<bool>(&cell);
    return std::holds_alternative<Listing::None>(cell) || (value != nullptr && !*value);
}

template <class ToText>
std::vector<std::string> Texts(const Listing::Row& row, ToText toText) {
    std::vector<std::string> texts;
    texts.reserve(row.size());
    std::transform(row.begin(), row.end(), std::back_inserter(texts), toText);
    return texts;
}

// Whether the column holds numbers, of which some may be missing.
bool IsNumeric(const std::vector<Listing::Row>& rows, std::size_t column) {
    bool hasNumber = false;
    for (const Listing::Row& row : rows) {
        const bool isNumber = std::holds_alternative<std::int64_t>(row[column]);
        hasNumber = hasNumber || isNumber;
        if (!isNumber && !std::holds_alternative<Listing::None>(row[column])) {
            return false;
        }
    }
    return hasNumber;
}

}  // namespace

// How rows become lines.
class ListingStyle {
public:
    explicit ListingStyle(std::vector<std::string> columns) : m_columns(std::move(columns)) {}
    virtual ~ListingStyle() = default;
    ListingStyle(const ListingStyle&) = delete;
    ListingStyle& operator=(const ListingStyle&) = delete;

    // Whether the head depends on the rows that follow it.
    [[nodiscard]] virtual bool IsMeasuring() const { return false; }
    // Called once, before any line is.
    virtual std::string Head(const std::vector<Listing::Row>& measured) = 0;
    virtual std::string Line(const Listing::Row& row) = 0;

protected:
    [[nodiscard]] const std::vector<std::string>& Columns() const { return m_columns; }

private:
    std::vector<std::string> m_columns;
};

namespace {

// On a terminal that is too narrow, the last column is wrapped, or each row is a block with a line for each column.
class TableStyle : public ListingStyle {
public:
    // `width` of the terminal; 0: the table goes elsewhere, and may be as wide as it likes.
    TableStyle(std::vector<std::string> columns, std::size_t width)
        : ListingStyle(std::move(columns)), m_width(width) {}

    [[nodiscard]] bool IsMeasuring() const override { return true; }

    std::string Head(const std::vector<Listing::Row>& measured) override {
        std::vector<TextTable::Column> columns;
        for (std::size_t column = 0; column < Columns().size(); ++column) {
            const auto align = IsNumeric(measured, column) ? TextTable::Align::RIGHT : TextTable::Align::LEFT;
            columns.push_back({Columns()[column], align});
        }
        m_table = TextTable(std::move(columns));
        for (const Listing::Row& row : measured) {
            m_table.Measure(Texts(row, ForPeople));
        }
        m_isOfBlocks = m_width != 0 && !m_table.WrapInto(m_width);
        return m_isOfBlocks ? "" : m_table.Head();
    }

    std::string Line(const Listing::Row& row) override {
        return m_isOfBlocks ? Block(row) : m_table.Line(Texts(row, ForPeople));
    }

private:
    std::string Block(const Listing::Row& row) {
        std::size_t headWidth = 0;
        for (const std::string& column : Columns()) {
            headWidth = std::max(headWidth, DisplayWidth(column));
        }
        std::string block(m_isFirst ? "" : "\n");
        m_isFirst = false;
        for (std::size_t column = 0; column < Columns().size(); ++column) {
            const std::string& head = Columns()[column];
            block.append(head).append(headWidth - DisplayWidth(head) + 2, ' ');
            block.append(ForPeople(row[column])).append("\n");
        }
        return block;
    }

    std::size_t m_width;
    TextTable m_table{{}};
    bool m_isOfBlocks = false;
    bool m_isFirst = true;
};

class MarkdownStyle : public ListingStyle {
public:
    using ListingStyle::ListingStyle;

    [[nodiscard]] bool IsMeasuring() const override { return true; }

    std::string Head(const std::vector<Listing::Row>& measured) override {
        std::string text = LineOf(Columns()) + "|";
        for (std::size_t column = 0; column < Columns().size(); ++column) {
            text += IsNumeric(measured, column) ? "---:|" : "---|";
        }
        return text + "\n";
    }

    std::string Line(const Listing::Row& row) override { return LineOf(Texts(row, ForMarkdown)); }

private:
    static std::string LineOf(const std::vector<std::string>& cells) {
        std::string line = "|";
        for (const std::string& cell : cells) {
            line.append(" ").append(cell).append(" |");
        }
        return line + "\n";
    }
};

class CsvStyle : public ListingStyle {
public:
    using ListingStyle::ListingStyle;

    std::string Head(const std::vector<Listing::Row>& /*measured*/) override { return CsvLine(Columns()); }
    std::string Line(const Listing::Row& row) override { return CsvLine(Texts(row, ForCsv)); }
};

class JsonStyle : public ListingStyle {
public:
    using ListingStyle::ListingStyle;

    std::string Head(const std::vector<Listing::Row>& /*measured*/) override { return {}; }

    std::string Line(const Listing::Row& row) override {
        m_buffer.Clear();
        for (std::size_t column = 0; column < Columns().size(); ++column) {
            m_buffer.Put(column == 0 ? '{' : ',');
            AppendJsonText(Columns()[column], m_buffer);
            m_buffer.Put(':');
            AppendJson(row[column], m_buffer);
        }
        Append(m_buffer, "}\n");
        return std::string(m_buffer.View());
    }

private:
    TextBuffer m_buffer;
};

std::unique_ptr<ListingStyle> MakeStyle(Listing::Format format, std::vector<std::string> columns, std::size_t width) {
    switch (format) {
        case Listing::Format::CSV:
            return std::make_unique<CsvStyle>(std::move(columns));
        case Listing::Format::JSONL:
            return std::make_unique<JsonStyle>(std::move(columns));
        case Listing::Format::MARKDOWN:
            return std::make_unique<MarkdownStyle>(std::move(columns));
        case Listing::Format::TABLE:
            break;
    }
    return std::make_unique<TableStyle>(std::move(columns), width);
}

}  // namespace

Listing::Listing(std::vector<std::string> columns, const ListingOptions& options, std::string_view preface)
    : m_output(options.output),
      m_style(MakeStyle(options.format, std::move(columns), m_output.IsTerminal() ? ColumnsOf(STDOUT_FILENO, 0) : 0)),
      m_isMeasuring(m_style->IsMeasuring()) {
    m_output.Write(preface);
    if (!m_isMeasuring) {
        m_output.Write(m_style->Head({}));
    }
}

Listing::~Listing() = default;

void Listing::AddRow(Row row) {
    m_hasSilentRow = m_hasSilentRow || IsSilent(row);
    if (!m_isMeasuring) {
        m_output.Write(m_style->Line(row));
        return;
    }
    m_measured.push_back(std::move(row));
    if (m_measured.size() == MEASURED_ROWS) {
        WriteMeasured();
    }
}

void Listing::WriteMeasured() {
    m_output.Write(m_style->Head(m_measured));
    for (const Row& row : m_measured) {
        m_output.Write(m_style->Line(row));
    }
    m_measured = {};
    m_isMeasuring = false;
}

void Listing::Complete(std::string_view footer) {
    if (m_isMeasuring) {
        WriteMeasured();
    }
    m_output.Write(footer);
    m_output.Complete();
}

ExitCode Listing::CompleteAnswers() {
    Complete();
    return m_hasSilentRow ? ExitCode::FOUND : ExitCode::OK;
}

bool Listing::IsSilent(const Row& row) {
    return std::all_of(row.begin() + 1, row.end(), SaysNothing);
}

Listing::Cell CellOf(std::optional<int> number) {
    return number ? Listing::Cell(std::int64_t{*number}) : Listing::Cell();
}

Listing::Cell CellOf(std::optional<std::string> text) {
    return text ? Listing::Cell(*std::move(text)) : Listing::Cell();
}

void AddListingOptions(Verb& verb, ListingOptions& options) {
    verb.AddChoice("--format", options.format,
                   {{"table", Listing::Format::TABLE},
                    {"csv", Listing::Format::CSV},
                    {"jsonl", Listing::Format::JSONL},
                    {"md", Listing::Format::MARKDOWN}},
                   "How rows are written: table (the default), csv, jsonl (also called json) or md; of "
                   "table and md, the first " +
                       std::to_string(Listing::MEASURED_ROWS) + " rows tell how wide a column is");
    verb.AddOutput(options.output);
}

}  // namespace NS_KX::NS_KXDU
