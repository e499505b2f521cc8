#include "formats/texttable.h"

#include <gtest/gtest.h>

using NS_KX::TextTable;

TEST(TextTable, WithoutRowsIsHeadAndRule) {
    EXPECT_EQ(TextTable({{"NE", TextTable::Align::RIGHT}, {"Name"}}).Head(), "NE  Name\n--  ----\n");
}

TEST(TextTable, ColumnsAreAsWideAsTheirWidestCellThatWasMeasured) {
    TextTable table({{"NE", TextTable::Align::RIGHT}, {"Name"}, {"Up"}});
    table.Measure({"1", "München", "yes"});
    table.Measure({"1234", "北京", "-"});
    EXPECT_EQ(table.Head(), "  NE  Name     Up\n----  -------  ---\n");
    EXPECT_EQ(table.Line({"1", "München", "yes"}), "   1  München  yes\n");
    EXPECT_EQ(table.Line({"1234", "北京", "-"}), "1234  北京     -\n");
    EXPECT_EQ(table.Line({"7", "", ""}), "   7\n");
}

TEST(TextTable, TheLastColumnMayBeWrapped) {
    TextTable table({{"NE", TextTable::Align::RIGHT}, {"Meaning"}});
    table.Measure({"1234", "a text of several words, München"});
    EXPECT_FALSE(table.WrapInto(25)) << "too little room";
    EXPECT_EQ(table.Line({"1", "a text of several words, München"}), "   1  a text of several words, München\n");
    EXPECT_TRUE(table.WrapInto(26));
    EXPECT_EQ(table.Head(), "  NE  Meaning\n----  --------------------\n");
    EXPECT_EQ(table.Line({"1", "a text of several words, München"}), "   1  a text of several\n      words, München\n");
    EXPECT_EQ(table.Line({"7", "a-word-that-is-longer-than-the-column or two"}),
              "   7  a-word-that-is-longer-than-the-column\n      or two\n");
    EXPECT_EQ(table.Line({"7", "twenty columns wide."}), "   7  twenty columns wide.\n");
}

TEST(TextTable, WhatFitsIsNotWrapped) {
    TextTable table({{"NE", TextTable::Align::RIGHT}, {"Name"}});
    table.Measure({"1", "a b"});
    EXPECT_TRUE(table.WrapInto(8));
    EXPECT_EQ(table.Head(), "NE  Name\n--  ----\n");
    TextTable numbers({{"Name"}, {"NE", TextTable::Align::RIGHT}});
    numbers.Measure({"a name that is not short", "7"});
    EXPECT_FALSE(numbers.WrapInto(20)) << "numbers are not wrapped";
}

TEST(TextTable, AWiderCellPushesTheOthersToTheRight) {
    TextTable table({{"NE", TextTable::Align::RIGHT}, {"Name"}});
    EXPECT_EQ(table.Line({"123", "x"}), "123  x\n");
}
