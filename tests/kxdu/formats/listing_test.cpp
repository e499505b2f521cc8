#include "formats/listing.h"

#include <gtest/gtest.h>

namespace NS_KXDU {
namespace {

using Format = Listing::Format;

Listing Sample() {
    Listing listing({"asked", "number", "flag", "text"});
    listing.AddRow({"a|b", std::int64_t{-7}, true, "x, \"y\""});
    listing.AddRow({"c", Listing::None{}, false, Listing::None{"not told"}});
    return listing;
}

TEST(Listing, ATableIsForPeople) {
    EXPECT_EQ(Sample().Text(Format::TABLE),
              "asked  number  flag  text\n"
              "-----  ------  ----  --------\n"
              "a|b        -7  yes   x, \"y\"\n"
              "c           -  no    not told\n");
}

TEST(Listing, CsvLeavesWhatIsNotThereEmpty) {
    EXPECT_EQ(Sample().Text(Format::CSV), "asked,number,flag,text\na|b,-7,true,\"x, \"\"y\"\"\"\nc,,false,\n");
}

TEST(Listing, JsonLinesHaveNullForIt) {
    EXPECT_EQ(Sample().Text(Format::JSONL), R"({"asked":"a|b","number":-7,"flag":true,"text":"x, \"y\""})"
                                            "\n"
                                            R"({"asked":"c","number":null,"flag":false,"text":null})"
                                            "\n");
}

TEST(Listing, MarkdownKeepsBarsApart) {
    EXPECT_EQ(Sample().Text(Format::MARKDOWN),
              "| asked | number | flag | text |\n"
              "|---|---:|---|---|\n"
              "| a\\|b | -7 | yes | x, \"y\" |\n"
              "| c | - | no | not told |\n");
}

TEST(Listing, WithoutRowsThereIsStillAHead) {
    const Listing listing({"a", "b"});
    EXPECT_EQ(listing.Text(Format::TABLE), "a  b\n-  -\n");
    EXPECT_EQ(listing.Text(Format::CSV), "a,b\n");
    EXPECT_EQ(listing.Text(Format::JSONL), "");
    EXPECT_EQ(listing.Text(Format::MARKDOWN), "| a | b |\n|---|---|\n");
}

TEST(Listing, WhatWouldSteerATerminalOrIsNoUtf8IsReplaced) {
    Listing listing({"a"});
    listing.AddRow({"\x1b[1m"});
    listing.AddRow({"\xff"});
    EXPECT_EQ(listing.Text(Format::TABLE), "a\n----\n\uFFFD[1m\n\uFFFD\n");
    EXPECT_EQ(listing.Text(Format::JSONL), "{\"a\":\"\\u001B[1m\"}\n{\"a\":\"\uFFFD\"}\n");
}

TEST(Listing, TurnsColumnsIntoRows) {
    EXPECT_EQ(Sample().Turned().Text(Format::CSV),
              "asked,a|b,c\nnumber,-7,\nflag,true,false\ntext,\"x, \"\"y\"\"\",\n");
}

TEST(Listing, ARowIsSilentWhenAllBehindItsFirstCellIsNoOrNone) {
    Listing listing({"asked", "flag", "text"});
    EXPECT_FALSE(listing.HasSilentRow());
    listing.AddRow({"a", true, Listing::None{}});
    listing.AddRow({"b", false, "text"});
    EXPECT_FALSE(listing.HasSilentRow());
    listing.AddRow({"c", false, Listing::None{"reason"}});
    EXPECT_TRUE(listing.HasSilentRow());
}

}  // namespace
}  // namespace NS_KXDU
