#include "formats/csv.h"

#include <stdexcept>

#include <gmock/gmock.h>

using namespace NS_KX;
using testing::ElementsAre;

namespace {

std::vector<CsvRow> ReadAll(const std::string& text) {
    CsvReader reader("a.csv", text);
    std::vector<CsvRow> rows;
    for (CsvRow row; reader.Next(row);) {
        rows.push_back(row);
    }
    return rows;
}

std::string ComplaintAbout(const std::string& text) {
    try {
        ReadAll(text);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "no complaint";
}

}  // namespace

TEST(CsvReader, AnEmptyTextHasNoRows) {
    EXPECT_THAT(ReadAll(""), ElementsAre());
}

TEST(CsvReader, KeepsEmptyFieldsAndBlanks) {
    EXPECT_THAT(ReadAll("a,,c\n, b ,\n"), ElementsAre(ElementsAre("a", "", "c"), ElementsAre("", " b ", "")));
}

TEST(CsvReader, AnEmptyLineIsARowOfOneEmptyField) {
    EXPECT_THAT(ReadAll("a\n\nb\n"), ElementsAre(ElementsAre("a"), ElementsAre(""), ElementsAre("b")));
}

TEST(CsvReader, TheLastLineMayLackItsEnd) {
    EXPECT_THAT(ReadAll("a,b"), ElementsAre(ElementsAre("a", "b")));
    EXPECT_THAT(ReadAll("a,"), ElementsAre(ElementsAre("a", "")));
}

TEST(CsvReader, LinesMayEndWithACarriageReturnToo) {
    EXPECT_THAT(ReadAll("a,b\r\nc,\"d\"\r\n"), ElementsAre(ElementsAre("a", "b"), ElementsAre("c", "d")));
}

TEST(CsvReader, AQuotedFieldMayHoldCommasQuotesAndLineEnds) {
    EXPECT_THAT(ReadAll("\"a,b\",\"say \"\"x\"\"\",\"two\r\nlines\"\n\"\"\n"),
                ElementsAre(ElementsAre("a,b", "say \"x\"", "two\r\nlines"), ElementsAre("")));
}

TEST(CsvReader, ComplaintsNameFileLineAndReason) {
    EXPECT_EQ(ComplaintAbout("a\nb\"c\n"),
              "a.csv:2: a quote in the middle of a field; quote the whole field and double the quotes in it");
    EXPECT_EQ(ComplaintAbout("a\n\"b\nc"), "a.csv:2: a quoted field that does not end");
    EXPECT_EQ(ComplaintAbout("\"a\"b\n"), "a.csv:1: text after a quoted field");
    EXPECT_EQ(ComplaintAbout("a\rb\n"), "a.csv:1: a carriage return without a line feed");
    EXPECT_EQ(ComplaintAbout(std::string("a\0b\n", 4)), "a.csv:1: a NUL byte");
    EXPECT_EQ(ComplaintAbout(std::string("\"a\0b\"\n", 6)), "a.csv:1: a NUL byte");
}

TEST(CsvReader, LineNumbersCountTheLineEndsInsideQuotes) {
    EXPECT_EQ(ComplaintAbout("\"a\nb\"\nc\"\n").substr(0, 8), "a.csv:3:");
}

TEST(CsvFields, ComeOneByOne) {
    CsvFields fields("a;\"b;\"\"c\"\"\";;d,e\nf\n", ';');
    std::string_view field;
    for (const char* const expected : {"a", "b;\"c\"", "", "d,e"}) {
        ASSERT_TRUE(fields.Next(field));
        EXPECT_EQ(field, expected);
    }
    EXPECT_FALSE(fields.Next(field)) << "the row has no more";
    ASSERT_TRUE(fields.NextRow());
    ASSERT_TRUE(fields.Next(field));
    EXPECT_EQ(field, "f");
    EXPECT_EQ(fields.LineEnds(), 2U);
    EXPECT_FALSE(fields.NextRow());
    EXPECT_EQ(fields.Problem(), "");
}

TEST(CsvFields, StayValidUntilTheNextRow) {
    CsvFields fields("\"\"\"1\"\"\",\"\"\"a long field that is not kept inside of the text\"\"\"");
    std::string_view first;
    std::string_view second;
    ASSERT_TRUE(fields.Next(first) && fields.Next(second));
    EXPECT_EQ(first, "\"1\"");
    EXPECT_EQ(second, "\"a long field that is not kept inside of the text\"");
}

TEST(CsvFields, AnEmptyLineHasOneThatIsEmpty) {
    CsvFields fields("");
    std::string_view field = "x";
    EXPECT_TRUE(fields.Next(field));
    EXPECT_EQ(field, "");
    EXPECT_FALSE(fields.Next(field));
}

TEST(CsvFields, BeforeAProblemAreGiven) {
    CsvFields fields("7,\"a\"b");
    std::string_view field;
    EXPECT_TRUE(fields.Next(field));
    EXPECT_EQ(field, "7");
    EXPECT_EQ(fields.Problem(), "");
    EXPECT_FALSE(fields.Next(field));
    EXPECT_EQ(fields.Problem(), "text after a quoted field");
    EXPECT_FALSE(fields.Next(field));
}

TEST(CsvLine, QuotesOnlyWhatNeedsIt) {
    EXPECT_EQ(CsvLine({"a", "", " b ", "München"}), "a,, b ,München\n");
    EXPECT_EQ(CsvLine({"a,b", "say \"x\"", "two\nlines", "\r"}), "\"a,b\",\"say \"\"x\"\"\",\"two\nlines\",\"\r\"\n");
}

TEST(CsvLine, IsReadBackAsItWas) {
    const CsvRow row{"", ",", "\"", "\"\"", "\r\n", "a\"b,c\nd", " x"};
    EXPECT_THAT(ReadAll(CsvLine(row)), ElementsAre(row));
}
