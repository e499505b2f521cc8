#include "cli/listing.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "support/files.h"

namespace NS_KX::NS_KXDU {
namespace {

using Format = Listing::Format;
using Row = Listing::Row;

class ListingTest : public testing::Test {
protected:
    [[nodiscard]] std::string Written() const { return NS_TEST::ReadFile(m_file); }

    // The output for `rows`.
    [[nodiscard]] std::string TextOf(const std::vector<std::string>& columns, const std::vector<Row>& rows,
                                     Format format) const {
        Listing listing(columns, {format, m_file});
        for (const Row& row : rows) {
            listing.AddRow(row);
        }
        listing.Complete();
        return Written();
    }

    [[nodiscard]] std::string SampleAs(Format format) const {
        return TextOf(
            {"asked", "number", "flag", "text"},
            {{"a|b", std::int64_t{-7}, true, "x, \"y\""}, {"c", Listing::None{}, false, Listing::None{"not told"}}},
            format);
    }

private:
    NS_TEST::TemporaryFolder m_folder;

protected:
    const std::string m_file = m_folder / "listing";
};

TEST_F(ListingTest, ATableIsForPeople) {
    EXPECT_EQ(SampleAs(Format::TABLE),
              "asked  number  flag  text\n"
              "-----  ------  ----  --------\n"
              "a|b        -7  yes   x, \"y\"\n"
              "c           -  no    not told\n");
}

TEST_F(ListingTest, CsvLeavesWhatIsNotThereEmpty) {
    EXPECT_EQ(SampleAs(Format::CSV), "asked,number,flag,text\na|b,-7,true,\"x, \"\"y\"\"\"\nc,,false,\n");
}

TEST_F(ListingTest, JsonLinesHaveNullForIt) {
    EXPECT_EQ(SampleAs(Format::JSONL), R"({"asked":"a|b","number":-7,"flag":true,"text":"x, \"y\""})"
                                       "\n"
                                       R"({"asked":"c","number":null,"flag":false,"text":null})"
                                       "\n");
}

TEST_F(ListingTest, MarkdownKeepsBarsApart) {
    EXPECT_EQ(SampleAs(Format::MARKDOWN),
              "| asked | number | flag | text |\n"
              "|---|---:|---|---|\n"
              "| a\\|b | -7 | yes | x, \"y\" |\n"
              "| c | - | no | not told |\n");
}

TEST_F(ListingTest, WithoutRowsThereIsStillAHead) {
    EXPECT_EQ(TextOf({"a", "b"}, {}, Format::TABLE), "a  b\n-  -\n");
    EXPECT_EQ(TextOf({"a", "b"}, {}, Format::CSV), "a,b\n");
    EXPECT_EQ(TextOf({"a", "b"}, {}, Format::JSONL), "");
    EXPECT_EQ(TextOf({"a", "b"}, {}, Format::MARKDOWN), "| a | b |\n|---|---|\n");
}

TEST_F(ListingTest, WhatWouldSteerATerminalOrIsNoUtf8IsReplaced) {
    const std::vector<Row> rows{{"\x1b[1m"}, {"\xff"}};
    EXPECT_EQ(TextOf({"a"}, rows, Format::TABLE), "a\n----\n\uFFFD[1m\n\uFFFD\n");
    EXPECT_EQ(TextOf({"a"}, rows, Format::JSONL), "{\"a\":\"\\u001B[1m\"}\n{\"a\":\"\uFFFD\"}\n");
}

TEST_F(ListingTest, TextsMayStandInFrontAndBehind) {
    Listing listing({"a"}, {Format::TABLE, m_file}, "in front\n\n");
    listing.AddRow({"x"});
    listing.Complete("\nbehind\n");
    EXPECT_EQ(Written(), "in front\n\na\n-\nx\n\nbehind\n");
}

TEST_F(ListingTest, TheFirstRowsTellTheWidthsAndWhichColumnsHoldNumbers) {
    std::vector<Row> rows(Listing::MEASURED_ROWS, {"x", std::int64_t{7}, "y"});
    rows.back() = {"xyz", std::int64_t{123}, Listing::None{}};
    rows.push_back({"longer", std::int64_t{8}, "y"});
    rows.push_back({"x", Listing::None{}, "y"});
    const std::string table = TextOf({"a", "b", "c"}, rows, Format::TABLE);
    EXPECT_TRUE(table.starts_with("a      b  c\n---  ---  -\nx      7  y\n")) << table.substr(0, 100);
    EXPECT_TRUE(table.ends_with("\nxyz  123  -\nlonger    8  y\nx      -  y\n")) << table.substr(table.size() - 60);
    const std::string markdown = TextOf({"a", "b", "c"}, rows, Format::MARKDOWN);
    EXPECT_TRUE(markdown.starts_with("| a | b | c |\n|---|---:|---|\n| x | 7 | y |\n")) << markdown.substr(0, 100);
    EXPECT_TRUE(markdown.ends_with("\n| longer | 8 | y |\n| x | - | y |\n")) << markdown.substr(markdown.size() - 60);
}

TEST_F(ListingTest, AFileAppearsWhenTheListingIsComplete) {
    {
        Listing abandoned({"a"}, {Format::CSV, m_file});
        abandoned.AddRow({"x"});
    }
    EXPECT_FALSE(std::filesystem::exists(m_file));
    EXPECT_EQ(TextOf({"a"}, {{"x"}}, Format::CSV), "a\nx\n");
}

TEST_F(ListingTest, ARowIsSilentWhenAllBehindItsFirstCellIsNoOrNone) {
    EXPECT_FALSE(Listing::IsSilent({"a", true, Listing::None{}}));
    EXPECT_FALSE(Listing::IsSilent({"b", false, "text"}));
    EXPECT_TRUE(Listing::IsSilent({"c", false, Listing::None{"reason"}}));
}

TEST_F(ListingTest, OneSilentAnswerIsAFinding) {
    for (const Format format : {Format::TABLE, Format::CSV}) {
        Listing answers({"asked", "text"}, {format, m_file});
        answers.AddRow({"a", "text"});
        EXPECT_EQ(answers.CompleteAnswers(), ExitCode::OK);
        Listing other({"asked", "text"}, {format, m_file});
        other.AddRow({"a", Listing::None{}});
        other.AddRow({"b", "text"});
        EXPECT_EQ(other.CompleteAnswers(), ExitCode::FOUND);
    }
}

TEST(CellOf, AValueThatIsMissingIsNone) {
    EXPECT_EQ(std::get<std::int64_t>(CellOf(std::optional(7))), 7);
    EXPECT_EQ(std::get<std::string>(CellOf(std::optional(std::string("x")))), "x");
    EXPECT_TRUE(std::holds_alternative<Listing::None>(CellOf(std::optional<int>())));
    EXPECT_TRUE(std::holds_alternative<Listing::None>(CellOf(std::optional<std::string>())));
}

}  // namespace
}  // namespace NS_KX::NS_KXDU
