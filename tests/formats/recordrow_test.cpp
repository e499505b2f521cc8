#include "formats/recordrow.h"

#include <gmock/gmock.h>

#include "formats/recordformat.h"

namespace NS_KX {
namespace {

std::string Written(RecordRow& reader, std::string_view row) {
    reader.Read(row);
    std::string fdn;
    reader.GetKind().write(reader.Record(), fdn, NS_UTIL::Surroundings());
    return fdn;
}

std::string Complaint(std::string_view header, std::string_view row, char separator = ',') {
    try {
        RecordRow reader(header, separator);
        return "no complaint: " + Written(reader, row);
    } catch (const BadRecord& bad) {
        return bad.what();
    }
}

TEST(RecordRow, WritesTheIdentifierOfARow) {
    RecordRow reader("type,neId,shelfId,portId,ppType,portLabel", ',');
    EXPECT_EQ(Written(reader, "NEIndex,7,,,,"), "NE=7");
    EXPECT_EQ(Written(reader, "PortIndex,7,,2,16,\"say \"\"x\"\"\""), "NE=7,PP=16||2|say \"x\"");
    EXPECT_EQ(Written(reader, "ShelfIndex,7,1,,,"), "NE=7,FR=1");
}

TEST(RecordRow, AnEmptyCellMeansThatNothingIsKnown) {
    RecordRow reader("fdn,type,neId,shelfId", ',');
    EXPECT_EQ(Written(reader, ",ShelfIndex,7,"), "NE=7,FR=-1");
    EXPECT_EQ(reader.Fdn().data(), nullptr);
    EXPECT_EQ(Written(reader, "\"NE=7,FR=2\",ShelfIndex,7,2"), "NE=7,FR=2");
    EXPECT_EQ(reader.Fdn(), "NE=7,FR=2");
}

TEST(RecordRow, RowsWithoutATypeAreOfTheUsualOne) {
    RecordRow reader("neId,type", ',', FindKindByType("NEIndex"));
    EXPECT_EQ(Written(reader, "7,"), "NE=7");
    RecordRow withoutColumn("neId", ',', FindKindByType("NEIndex"));
    EXPECT_EQ(Written(withoutColumn, "8"), "NE=8");
}

TEST(RecordRow, FlagsMayBeInAnyCase) {
    RecordRow reader("type,neId,portId,isLogical", ',');
    EXPECT_EQ(Written(reader, "PortIndex,7,2,TRUE"), "NE=7,LP=||2|");
    EXPECT_EQ(Written(reader, "PortIndex,7,2,False"), "NE=7,PP=||2|");
    EXPECT_EQ(Complaint("type,neId,isLogical", "PortIndex,7,yes"), "field \"isLogical\" is not true or false: \"yes\"");
}

TEST(RecordRow, ReadsTabsAndTheirEscapes) {
    RecordRow reader("type\tneId\tportId\tportLabel", '\t');
    EXPECT_EQ(Written(reader, "PortIndex\t7\t2\ta\\tb\\\\c\"d"), "NE=7,PP=||2|a\tb\\c\"d");
    EXPECT_EQ(Complaint("type\tneId", "NEIndex\t\\7", '\t'), "a single backslash in \"\\7\"; write it twice");
}

TEST(RecordRow, RefusesOtherColumns) {
    EXPECT_EQ(Complaint("type,neId,colour", ""), "no type has a field \"colour\"; kxdu types lists all fields");
    EXPECT_EQ(Complaint("type,neId,", ""), "column 3 has no name");
    EXPECT_EQ(Complaint("type,neId,neId", ""), "column \"neId\" is there twice");
    EXPECT_EQ(Complaint("fdn,neId", ""), "column \"type\" is missing; add it, or give --as TYPE");
}

TEST(RecordRow, RefusesRowsThatDoNotFitTheirColumns) {
    const auto complaint = [](std::string_view row) { return Complaint("type,neId,shelfId", row); };
    EXPECT_EQ(complaint("NEIndex,7"), "the row has 2 columns, the line of column names 3");
    EXPECT_EQ(complaint("NEIndex,7,1"), "column \"shelfId\" is not empty, but NEIndex has no such field");
    EXPECT_EQ(complaint("NoIndex,7,"), "unknown type \"NoIndex\"");
    EXPECT_EQ(complaint(",7,"), "\"type\" is missing");
    EXPECT_EQ(complaint("NEIndex,,"), "field \"neId\" is missing");
    EXPECT_EQ(complaint("NEIndex,7.0,"), "field \"neId\" is not a whole number of 32 bits: \"7.0\"");
    EXPECT_EQ(complaint("NEIndex,2147483648,"), "field \"neId\" is not from -2147483648 to 2147483647: 2147483648");
    EXPECT_EQ(complaint("TDIndex,99999999999999999999,"),
              "field \"neId\" is not a whole number of 64 bits: \"99999999999999999999\"");
    EXPECT_EQ(complaint("NEIndex,\"7,"), "a quoted field that does not end");
    EXPECT_EQ(complaint("NEIndex,\"7\"8,"), "text after a quoted field");
    EXPECT_EQ(complaint("NEIndex,7\"8,"),
              "a quote in the middle of a field; quote the whole field and double the quotes in it");
    EXPECT_EQ(Complaint("type,neId,portLabel", "PortIndex,7,a|b"),
              "field \"portLabel\" holds \",\" or \"|\", where it would end");
}

TEST(RecordRow, ReadsWhatIsWrittenOfEveryKind) {
    for (const OutputFormat format : {OutputFormat::CSV, OutputFormat::TSV}) {
        const FormatOptions options{format, AllKinds()};
        const NS_UTIL::Surroundings surroundings;
        const auto writer = MakeFormat(options, surroundings);
        std::string header = MakeHeader(options);
        header.pop_back();
        RecordRow reader(header, FindSeparator(header).value());
        for (const Kind* const kind : AllKinds()) {
            TextBuffer row;
            writer->Write(kind->example, *kind, row);
            reader.Read(row.View().substr(0, row.GetSize() - 1));
            EXPECT_EQ(&reader.GetKind(), kind);
            EXPECT_EQ(reader.Fdn(), kind->example);
            AnyRecord expected;
            void* const record = expected.Fresh(kind->layout);
            kind->read(kind->example, record, surroundings);
            for (const Field& field : kind->layout.fields) {
                VisitField(field, reader.Record(), [&]<class Value>(const Value& value) {
                    EXPECT_EQ(value, field.In<Value>(record)) << kind->type << ' ' << field.name;
                });
            }
        }
    }
}

TEST(FindSeparator, TellsColumnNamesFromOtherLines) {
    EXPECT_EQ(FindSeparator("fdn,type"), ',');
    EXPECT_EQ(FindSeparator("\"neId\",\"x\""), ',');
    EXPECT_EQ(FindSeparator("fdn\ttype"), '\t');
    EXPECT_EQ(FindSeparator("type;neId"), ';');
    EXPECT_EQ(FindSeparator("neId"), ',');
    EXPECT_EQ(FindSeparator("port.portId"), ',');
    for (const char* const other : {"", "NE=7,FR=1", "TYPE  FDN  RECORD", "{\"type\":1}", "a,b;c\td"}) {
        EXPECT_EQ(FindSeparator(other), std::nullopt) << other;
    }
}

}  // namespace
}  // namespace NS_KX
