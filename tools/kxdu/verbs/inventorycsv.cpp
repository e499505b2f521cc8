#include "verbs/inventorycsv.h"

#include <algorithm>
#include <limits>
#include <set>
#include <stdexcept>
#include <string>
#include <system_error>
#include <tuple>

#include "formats/csv.h"
#include "lines/blockreader.h"
#include "lines/bufferedoutput.h"
#include "lines/failure.h"
#include "text/number.h"
#include "text/quoting.h"
#include "text/utf8.h"

namespace NS_KX::NS_KXDU {

namespace {

using NS_STANDALONE::DomainCache;
using NS_STANDALONE::DomainMemberRow;
using NS_STANDALONE::Inventory;
using NS_STANDALONE::NeRow;
using NS_STANDALONE::NeTypeRow;

struct Table {
    const char* file;
    CsvRow columns;
};

const Table& NeTable() {
    static const Table table{"ne.csv", {"ne_id", "ne_type", "multi_sub_shelf", "oam_number_omitted"}};
    return table;
}

const Table& NeTypeTable() {
    static const Table table{"ne_type.csv", {"ne_type", "name", "ip_service", "klv"}};
    return table;
}

const Table& DomainMemberTable() {
    static const Table table{"domain_member.csv", {"cache", "domain", "ne_type"}};
    return table;
}

// ---- Reading --------------------------------------------------------------------------------------------------------

std::string Joined(const CsvRow& row, const char* separator = ",") {
    std::string text;
    for (const std::string& field : row) {
        text.append(text.empty() ? "" : separator).append(field);
    }
    return text;
}

// The rows of one table's file, one at a time. Columns are asked for by their place.
class TableReader {
public:
    TableReader(const std::filesystem::path& folder, const Table& table)
        : m_table(table), m_file((folder / table.file).string()), m_input({m_file}, BLOCK_SIZE) {
        if (!NextRow() || m_row != table.columns) {
            RefuseOtherSeparator();
            throw std::runtime_error(m_file + ":1: the first line must be \"" + Joined(table.columns) + "\"");
        }
    }

    bool Next() {
        if (!NextRow()) {
            return false;
        }
        if (m_row.size() != m_table.columns.size()) {
            Complain("has " + std::to_string(m_row.size()) + " columns, not " + std::to_string(m_table.columns.size()));
        }
        return true;
    }

    [[nodiscard]] const std::string& Text(std::size_t column) const {
        if (FindInvalidUtf8(m_row[column]) != m_row[column].size()) {
            ComplainAbout(column, "UTF-8");
        }
        return m_row[column];
    }

    template <class Number>
    [[nodiscard]] Number ReadNumber(std::size_t column, Number lowest = std::numeric_limits<Number>::min()) const {
        Number number{};
        if (!ReadWhole(m_row[column], number) || number < lowest) {
            ComplainAbout(column, "a number from " + std::to_string(lowest) + " to " +
                                      std::to_string(std::numeric_limits<Number>::max()));
        }
        return number;
    }

    [[nodiscard]] bool ReadFlag(std::size_t column) const {
        const std::string& text = m_row[column];
        if (text != "0" && text != "1") {
            ComplainAbout(column, "0 or 1");
        }
        return text == "1";
    }

    [[noreturn]] void ComplainAbout(std::size_t column, const std::string& wanted) const {
        Complain(m_table.columns[column] + " is " + Quoted(m_row[column]) + ", not " + wanted);
    }

    [[noreturn]] void Complain(const std::string& reason) const {
        throw std::runtime_error(m_file + ":" + std::to_string(m_rowLine) + ": " + reason);
    }

private:
    static constexpr std::size_t BLOCK_SIZE = std::size_t{64} << 10U;

    // Says so if the first line has the columns, but something else between them: many spreadsheets write ";".
    void RefuseOtherSeparator() const {
        for (const char* const separator : {";", "\t"}) {
            const std::string joined = Joined(m_table.columns, separator);
            if (m_rowText.starts_with(joined) &&
                m_rowText.find_first_not_of("\r\n", joined.size()) == std::string::npos) {
                throw std::runtime_error(m_file + ":1: the columns are separated by " +
                                         (separator[0] == '\t' ? "tabs" : Quoted(separator)) +
                                         "; separate them by \",\"");
            }
        }
    }

    // A row goes on at the next line as long as a quote in it is open.
    bool NextRow() {
        m_rowLine = m_line;
        m_rowText.clear();
        bool isQuoteOpen = false;
        std::string_view line;
        while ((m_rowText.empty() || isQuoteOpen) && NextLine(line)) {
            if (m_rowText.size() + line.size() > LONGEST_LINE) {
                Complain("the row is longer than 1 MiB");
            }
            m_rowText.append(line);
            isQuoteOpen = isQuoteOpen != (std::count(line.begin(), line.end(), '"') % 2 != 0);
        }
        CsvReader row(m_file, m_rowText, m_rowLine);
        return row.Next(m_row);
    }

    // With its line end.
    bool NextLine(std::string_view& line) {
        if (m_rest.empty()) {
            if (!m_input.Next(m_block)) {
                return false;
            }
            if (m_block.isTooLongLine) {
                Complain("the row is longer than 1 MiB");
            }
            m_rest = m_block.Text();
        }
        line = m_rest.substr(0, std::min(m_rest.find('\n'), m_rest.size() - 1) + 1);
        m_rest.remove_prefix(line.size());
        ++m_line;
        return true;
    }

    const Table& m_table;
    std::string m_file;
    BlockReader m_input;
    InputBlock m_block;
    std::string_view m_rest;  // of the block: lines that are not read yet
    std::size_t m_line = 1;
    std::size_t m_rowLine = 1;
    std::string m_rowText;
    CsvRow m_row;
};

std::vector<NeTypeRow> ReadNeTypes(const std::filesystem::path& folder, std::set<std::uint16_t>& known) {
    std::vector<NeTypeRow> rows;
    TableReader reader(folder, NeTypeTable());
    while (reader.Next()) {
        const auto neType = reader.ReadNumber<std::uint16_t>(0);
        if (!known.insert(neType).second) {
            reader.Complain("NE type " + std::to_string(neType) + " is repeated");
        }
        rows.push_back({neType, reader.Text(1), reader.ReadFlag(2), reader.ReadFlag(3)});
    }
    return rows;
}

std::vector<NeRow> ReadNes(const std::filesystem::path& folder, const std::set<std::uint16_t>& knownTypes) {
    std::vector<NeRow> rows;
    std::set<std::int32_t> known;
    TableReader reader(folder, NeTable());
    while (reader.Next()) {
        const NeRow row{reader.ReadNumber<std::int32_t>(0, 0), reader.ReadNumber<std::uint16_t>(1), reader.ReadFlag(2),
                        reader.ReadFlag(3)};
        if (!knownTypes.contains(row.neType)) {
            reader.Complain("NE type " + std::to_string(row.neType) + " is not in " + NeTypeTable().file);
        }
        if (!known.insert(row.neId).second) {
            reader.Complain("NE " + std::to_string(row.neId) + " is repeated");
        }
        rows.push_back(row);
    }
    return rows;
}

DomainCache ReadCache(const TableReader& reader, std::size_t column) {
    const auto cache = NS_STANDALONE::FindDomainCache(reader.Text(column));
    if (!cache) {
        std::string names;
        for (const DomainCache known : NS_STANDALONE::DOMAIN_CACHES) {
            names.append(names.empty() ? "" : " or ").append(NameOf(known));
        }
        reader.ComplainAbout(column, names);
    }
    return *cache;
}

std::vector<DomainMemberRow> ReadDomainMembers(const std::filesystem::path& folder) {
    std::vector<DomainMemberRow> rows;
    std::set<std::tuple<DomainCache, std::string, std::uint16_t>> known;
    TableReader reader(folder, DomainMemberTable());
    while (reader.Next()) {
        const DomainMemberRow row{ReadCache(reader, 0), reader.Text(1), reader.ReadNumber<std::uint16_t>(2)};
        if (row.domain.empty()) {
            reader.ComplainAbout(1, "the name of a domain");
        }
        if (!known.emplace(row.cache, row.domain, row.neType).second) {
            reader.Complain("NE type " + std::to_string(row.neType) + " of " + Quoted(row.domain) + " is repeated");
        }
        rows.push_back(row);
    }
    return rows;
}

// ---- Writing --------------------------------------------------------------------------------------------------------

const char* Flag(bool value) {
    return value ? "1" : "0";
}

CsvRow Columns(const NeRow& row) {
    return {std::to_string(row.neId), std::to_string(row.neType), Flag(row.multiSubShelf), Flag(row.oamNumberOmitted)};
}

CsvRow Columns(const NeTypeRow& row) {
    return {std::to_string(row.neType), row.name, Flag(row.ipService), Flag(row.klv)};
}

CsvRow Columns(const DomainMemberRow& row) {
    return {std::string(NameOf(row.cache)), row.domain, std::to_string(row.neType)};
}

template <class Row>
void WriteTable(BufferedOutput& file, const Table& table, const std::vector<Row>& rows) {
    file.Write(CsvLine(table.columns));
    for (const Row& row : rows) {
        file.Write(CsvLine(Columns(row)));
    }
    file.Flush();
}

void WriteNes(BufferedOutput& file, const std::function<std::optional<NeRow>()>& nextNe) {
    file.Write(CsvLine(NeTable().columns));
    while (const auto row = nextNe()) {
        file.Write(CsvLine(Columns(*row)));
    }
    file.Flush();
}

}  // namespace

std::vector<FileInUse> InventoryCsvFiles(const std::filesystem::path& folder) {
    std::vector<FileInUse> files;
    for (const Table* const table : {&NeTable(), &NeTypeTable(), &DomainMemberTable()}) {
        files.push_back({folder / table->file, "inventory"});
    }
    return files;
}

Inventory ReadInventoryCsv(const std::filesystem::path& folder) {
    Inventory inventory;
    std::set<std::uint16_t> neTypes;
    inventory.neTypes = ReadNeTypes(folder, neTypes);
    inventory.nes = ReadNes(folder, neTypes);
    inventory.domainMembers = ReadDomainMembers(folder);
    return inventory;
}

void WriteInventoryCsv(const std::filesystem::path& folder, const Inventory& inventory) {
    auto next = inventory.nes.begin();
    WriteInventoryCsv(folder, inventory,
                      [&] { return next == inventory.nes.end() ? std::nullopt : std::optional<NeRow>(*next++); });
}

void WriteInventoryCsv(const std::filesystem::path& folder, const Inventory& inventory,
                       const std::function<std::optional<NeRow>()>& nextNe) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) {
        throw Failure(Cause::OUTPUT, folder.string() + ": cannot be made: " + error.message());
    }
    BufferedOutput nes(folder / NeTable().file);
    BufferedOutput neTypes(folder / NeTypeTable().file);
    BufferedOutput domainMembers(folder / DomainMemberTable().file);
    WriteNes(nes, nextNe);
    WriteTable(neTypes, NeTypeTable(), inventory.neTypes);
    WriteTable(domainMembers, DomainMemberTable(), inventory.domainMembers);
    // Files that belong together appear when all of them are written.
    nes.Complete();
    neTypes.Complete();
    domainMembers.Complete();
}

}  // namespace NS_KX::NS_KXDU
