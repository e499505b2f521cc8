#include "formats/recordrow.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>

#include "catalogue/conversion.h"
#include "formats/tsv.h"
#include "text/number.h"
#include "text/quoting.h"

namespace NS_KX {

namespace {

constexpr std::string_view FDN = "fdn";
constexpr std::string_view TYPE = "type";

bool IsColumn(std::string_view name) {
    return name == FDN || name == TYPE || IsFieldOfSomeKind(name);
}

std::string Counted(std::size_t count, const char* what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

// ---- Values ---------------------------------------------------------------------------------------------------------

void Set(const Field& field, std::string_view cell, std::int64_t& number) {
    if (!ReadWhole(cell, number)) {
        Refuse(field, "is not a whole number of 64 bits: " + Quoted(cell));
    }
}

void Set(const Field& field, std::string_view cell, std::int32_t& number) {
    std::int64_t whole = 0;
    if (!ReadWhole(cell, whole)) {
        Refuse(field, "is not a whole number of 32 bits: " + Quoted(cell));
    }
    number = NumberOf32Bits(field, whole);
}

// In any case of letters: spreadsheets write TRUE.
void Set(const Field& field, std::string_view cell, bool& flag) {
    const auto isWord = [cell](std::string_view word) {
        return std::equal(cell.begin(), cell.end(), word.begin(), word.end(), [](char one, char lower) {
            return one == lower || (one >= 'A' && one <= 'Z' && one - 'A' + 'a' == lower);
        });
    };
    flag = isWord("true");
    if (!flag && !isWord("false")) {
        Refuse(field, "is not true or false: " + Quoted(cell));
    }
}

void Set(const Field& field, std::string_view cell, std::string& text) {
    RequireWritable(field, cell);
    text = cell;
}

}  // namespace

// ---- The line of column names ---------------------------------------------------------------------------------------

std::optional<char> FindSeparator(std::string_view line) {
    for (const char separator : {',', '\t', ';'}) {
        for (std::size_t begin = 0; begin <= line.size();) {
            const std::size_t end = std::min(line.find(separator, begin), line.size());
            std::string_view name = line.substr(begin, end - begin);
            if (name.size() > 1 && name.starts_with('"') && name.ends_with('"')) {
                name = name.substr(1, name.size() - 2);
            }
            if (IsColumn(name)) {
                return separator;
            }
            begin = end + 1;
        }
    }
    return std::nullopt;
}

RecordRow::RecordRow(std::string_view header, char separator, const Kind* usual)
    : RecordReader(usual), m_separator(separator) {
    Split(header);
    m_names.assign(m_cells.begin(), m_cells.end());
    for (std::size_t column = 0; column < m_names.size(); ++column) {
        const std::string& name = m_names[column];
        if (!IsColumn(name)) {
            throw BadRecord(name.empty() ? "column " + std::to_string(column + 1) + " has no name"
                                         : "no type has a field " + Quoted(name) + "; kxdu types lists all fields");
        }
        if (std::find(m_names.begin(), m_names.begin() + static_cast<std::ptrdiff_t>(column), name) !=
            m_names.begin() + static_cast<std::ptrdiff_t>(column)) {
            throw BadRecord("column " + Quoted(name) + " is there twice");
        }
        if (name == FDN) {
            m_fdnColumn = column;
        } else if (name == TYPE) {
            m_typeColumn = column;
        }
    }
    if (!m_typeColumn && usual == nullptr) {
        throw BadRecord("column \"type\" is missing; add it, or give --as TYPE");
    }
}

// ---- Rows -----------------------------------------------------------------------------------------------------------

void RecordRow::Read(std::string_view line) {
    Begin();
    Split(line);
    if (m_cells.size() != m_names.size()) {
        throw BadRecord("the row has " + Counted(m_cells.size(), "column") + ", the line of column names " +
                        std::to_string(m_names.size()));
    }
    SetFdn(CellOf(m_fdnColumn));
    SetType(CellOf(m_typeColumn));
    Fill();
}

// A view without data if there is no such column or its cell is empty.
std::string_view RecordRow::CellOf(const std::optional<std::size_t>& column) const {
    return column && !m_cells[*column].empty() ? m_cells[*column] : std::string_view();
}

void RecordRow::Split(std::string_view line) {
    if (m_separator != ',') {
        SplitTsv(line);
        return;
    }
    m_cells.clear();
    m_csv = CsvFields(line);
    for (std::string_view cell; m_csv.Next(cell);) {
        m_cells.push_back(cell);
    }
    if (!m_csv.Problem().empty()) {
        throw BadRecord(std::string(m_csv.Problem()));
    }
}

void RecordRow::SplitTsv(std::string_view line) {
    try {
        SplitTsvLine(line, m_cells, m_room);
    } catch (const std::runtime_error& error) {
        throw BadRecord(error.what());
    }
}

void RecordRow::Fill() {
    const Columns& columns = ColumnsOf(GetKind());
    const Field* const key = &GetKind().layout.fields[GetKind().layout.key];
    bool isKeyThere = false;
    for (std::size_t column = 0; column < columns.size(); ++column) {
        if (m_cells[column].empty() || column == m_fdnColumn || column == m_typeColumn) {
            continue;
        }
        const Field* const field = columns[column];
        if (field == nullptr) {
            throw BadRecord("column " + Quoted(m_names[column]) + " is not empty, but " + std::string(GetKind().type) +
                            " has no such field");
        }
        VisitField(*field, MutableRecord(), [&](auto& value) { Set(*field, m_cells[column], value); });
        isKeyThere = isKeyThere || field == key;
    }
    if (!isKeyThere) {
        Refuse(*key, "is missing");
    }
}

const RecordRow::Columns& RecordRow::ColumnsOf(const Kind& kind) {
    const auto [entry, isNew] = m_columns.try_emplace(&kind);
    if (isNew) {
        for (const std::string& name : m_names) {
            entry->second.push_back(FindField(kind, name));
        }
    }
    return entry->second;
}

}  // namespace NS_KX
