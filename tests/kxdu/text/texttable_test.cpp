#include "text/texttable.h"

#include <gtest/gtest.h>

using NS_KXDU::TextTable;

TEST(TextTable, WithoutRowsIsHeadAndRule) {
    EXPECT_EQ(TextTable({{"NE", TextTable::Align::RIGHT}, {"Name"}}).Text(), "NE  Name\n--  ----\n");
}

TEST(TextTable, ColumnsAreAsWideAsTheirWidestCell) {
    TextTable table({{"NE", TextTable::Align::RIGHT}, {"Name"}, {"Up"}});
    table.AddRow({"1", "München", "yes"});
    table.AddRow({"1234", "北京", "-"});
    table.AddRow({"7", "", ""});
    EXPECT_EQ(table.Text(),
              "  NE  Name     Up\n"
              "----  -------  ---\n"
              "   1  München  yes\n"
              "1234  北京     -\n"
              "   7\n");
}
