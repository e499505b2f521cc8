/// The reader of CSV, and the reader of inventories on top of it: what they read can be written and read again.
#include "formats/csv.h"

#include <stdexcept>

#include "fuzz/input.h"
#include "support/files.h"
#include "support/pieces.h"
#include "verbs/inventorycsv.h"

namespace {

using namespace NS_KX;
using namespace NS_KX::NS_KXDU;
using NS_FUZZ::ExpectEqual;

// Complaints begin with the place.
template <class Read>
bool IsRead(std::string_view place, std::string_view text, Read read) {
    try {
        read();
        return true;
    } catch (const std::runtime_error& complaint) {
        ExpectEqual(std::string_view(complaint.what()).substr(0, place.size()), place, "the place in a complaint",
                    text);
        return false;
    }
}

std::vector<CsvRow> ReadRows(std::string_view text) {
    CsvReader reader("a.csv", text);
    std::vector<CsvRow> rows;
    for (CsvRow row; reader.Next(row);) {
        rows.push_back(row);
    }
    return rows;
}

void CompareRows(std::string_view text) {
    std::vector<CsvRow> rows;
    if (!IsRead("a.csv:", text, [&] { rows = ReadRows(text); })) {
        return;
    }
    std::string written;
    for (const CsvRow& row : rows) {
        written += CsvLine(row);
    }
    ExpectEqual(ReadRows(written), rows, "what is written and read", text);
}

// `text` holds the three files of an inventory, one after the other, separated by a row "-".
void CompareInventories(std::string_view text) {
    static constexpr std::array<const char*, 3> FILES{"ne_type.csv", "ne.csv", "domain_member.csv"};
    static const NS_TEST::TemporaryFolder folder;
    for (const char* const file : FILES) {
        const auto end = text.find("-\n");
        NS_TEST::WriteFile(folder / file, std::string(text.substr(0, end)));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 2);
    }
    NS_STANDALONE::Inventory inventory;
    if (IsRead(folder.Path().string(), text, [&] { inventory = ReadInventoryCsv(folder.Path()); })) {
        WriteInventoryCsv(folder / "written", inventory);
        ExpectEqual(ReadInventoryCsv(folder / "written") == inventory, true, "whether what is written is read", text);
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = NS_FUZZ::ToText(data, size);
    CompareRows(text);
    CompareInventories(text);
    return 0;
}
