#include "formats/columnformat.h"

#include <gtest/gtest.h>

namespace NS_KX {
namespace {

FormatOptions OptionsFor(OutputFormat format, const char* type) {
    static const Kind* one;
    one = type != nullptr ? FindKindByType(type) : nullptr;
    return {format, type == nullptr ? AllKinds() : std::span(&one, 1)};
}

std::string Rows(const FormatOptions& options, std::initializer_list<const char*> fdns) {
    TextBuffer out;
    const auto format = MakeColumnFormat(options, NS_UTIL::Surroundings::OfSystem());
    for (const std::string fdn : fdns) {
        format->Write(fdn, *FindKind(fdn), out);
    }
    return std::string(out.View());
}

TEST(ColumnFormat, OneTypeHasItsOwnColumns) {
    const FormatOptions options = OptionsFor(OutputFormat::CSV, "CardIndex");
    EXPECT_EQ(MakeColumnHeader(options), "fdn,type,reserved,neId,shelfId,slotId\n");
    EXPECT_EQ(Rows(options, {"NE=1,FR=2,S=3,CP=-1"}), "\"NE=1,FR=2,S=3,CP=-1\",CardIndex,0,1,2,3\n");
}

TEST(ColumnFormat, OfMixedTypesEachFieldHasOneColumnAndWhatARecordLacksIsEmpty) {
    const FormatOptions options = OptionsFor(OutputFormat::TSV, nullptr);
    const std::string header = MakeColumnHeader(options);
    EXPECT_TRUE(header.starts_with("fdn\ttype\tosId\treserved\toneId\tneId\tshelfId\t")) << header;
    const std::string rows = Rows(options, {"NE=5,FR=2", "OS=7"});
    EXPECT_TRUE(rows.starts_with("NE=5,FR=2\tShelfIndex\t\t0\t\t5\t2\t")) << rows;
    EXPECT_NE(rows.find("\nOS=7\tOSIndex\t7\t\t"), std::string::npos) << rows;
    EXPECT_EQ(std::count(rows.begin(), rows.end(), '\t'), 2 * std::count(header.begin(), header.end(), '\t'));
}

TEST(ColumnFormat, FieldsOfANestedRecordHaveItsName) {
    const FormatOptions options = OptionsFor(OutputFormat::CSV, "CtpKey_T");
    EXPECT_NE(MakeColumnHeader(options).find(",apText,port.reserved,port.reserved2,port.neId,"), std::string::npos);
}

TEST(ColumnFormat, CsvQuotesWhereItMust) {
    const std::string rows = Rows(OptionsFor(OutputFormat::CSV, "PortIndex"), {"PP=||1|a\"b"});
    EXPECT_EQ(rows, "\"PP=||1|a\"\"b\",PortIndex,0,0,-1,-1,-1,-1,1,251,0,\"a\"\"b\",false,false,0\n");
}

TEST(ColumnFormat, TsvEscapesTabsAndBackslashes) {
    const std::string rows = Rows(OptionsFor(OutputFormat::TSV, "PortIndex"), {"PP=||1|a\tb\\c\rd"});
    EXPECT_NE(rows.find("\ta\\tb\\\\c\\rd\t"), std::string::npos) << rows;
}

std::string Padded(std::string text, std::size_t width) {
    return text.append(width - text.size(), ' ');
}

TEST(ColumnFormat, ALineOfATableThatIsTooWideGoesOnBelow) {
    FormatOptions options = OptionsFor(OutputFormat::TABLE, nullptr);
    options.width = 79;
    EXPECT_EQ(Rows(options, {"NE=1"}), Padded("NEIndex", 22) + Padded("NE=1", 50) + "neId=1\n");
    EXPECT_EQ(Rows(options, {"NE=1,FR=2"}), Padded("ShelfIndex", 22) + "NE=1,FR=2\n    neId=1 shelfId=2\n");
    options.width = 15;
    EXPECT_EQ(Rows(options, {"NE=1,FR=2,S=3"}),
              Padded("SlotIndex", 22) + "NE=1,FR=2,S=3\n    neId=1\n    shelfId=2\n    slotId=3\n");
}

TEST(ColumnFormat, ATableLeavesOutWhatAFreshRecordSaysToo) {
    const FormatOptions options = OptionsFor(OutputFormat::TABLE, nullptr);
    EXPECT_EQ(MakeColumnHeader(options), Padded("TYPE", 22) + Padded("FDN", 50) + "RECORD\n");
    EXPECT_EQ(Rows(options, {"NE=5,S=0", "OS=-1"}), Padded("SlotIndex", 22) + Padded("NE=5,S=0", 50) +
                                                        "neId=5 slotId=0\n" + Padded("OSIndex", 22) +
                                                        Padded("OS=-1", 50) + "\n");
}

TEST(ColumnFormat, ATableIsWideEnoughForAllTypes) {
    for (const Kind* const kind : AllKinds()) {
        EXPECT_LE(kind->type.size(), 20U) << kind->type;
    }
}

TEST(ColumnFormat, ATableQuotesTextsWithBlanks) {
    const std::string rows = Rows(OptionsFor(OutputFormat::TABLE, nullptr), {"PP=||1|to \"A\\B\" x=1"});
    EXPECT_NE(rows.find("  \"PP=||1|to \\\"A\\\\B\\\" x=1\"  "), std::string::npos) << rows;
    EXPECT_NE(rows.find(" portLabel=\"to \\\"A\\\\B\\\" x=1\"\n"), std::string::npos) << rows;
}

TEST(ColumnFormat, ATableCountsColumnsOfTheTerminal) {
    EXPECT_EQ(Rows(OptionsFor(OutputFormat::TABLE, nullptr), {"MD=1|K\xC3\xB6ln\x1B"}),
              Padded("MDIndex", 22) + "MD=1|K\xC3\xB6ln\xEF\xBF\xBD" + std::string(40, ' ') +
                  "mdId=1 mdName=K\xC3\xB6ln\xEF\xBF\xBD\n");
}

}  // namespace
}  // namespace NS_KX
