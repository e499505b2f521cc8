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

TEST(TextTable, AWiderCellPushesTheOthersToTheRight) {
    TextTable table({{"NE", TextTable::Align::RIGHT}, {"Name"}});
    EXPECT_EQ(table.Line({"123", "x"}), "123  x\n");
}
