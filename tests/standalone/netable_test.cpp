#include "standalone/src/netable.h"

#include <limits>
#include <vector>

#include <gtest/gtest.h>

namespace {

using NS_STANDALONE::NeRow;
using NS_STANDALONE::NeTable;

std::vector<NeRow> Rows(const std::vector<std::int32_t>& neIds) {
    std::vector<NeRow> rows;
    for (const std::int32_t neId : neIds) {
        rows.push_back({neId, static_cast<std::uint16_t>(neId % 1000), false, true});
    }
    return rows;
}

TEST(NeTable, FindsEachRowAndNoOther) {
    std::vector<std::int32_t> neIds{0, 1, std::numeric_limits<std::int32_t>::max()};
    for (std::int32_t number = 2; number < 5000; ++number) {
        neIds.push_back(number * 65536 / 2);  // equal low digits
    }
    const std::vector<NeRow> rows = Rows(neIds);
    const NeTable table(rows);
    for (const NeRow& row : rows) {
        const NeRow* const found = table.Find(row.neId);
        ASSERT_NE(found, nullptr) << row.neId;
        EXPECT_EQ(*found, row);
        EXPECT_EQ(table.Find(std::int64_t{row.neId} + (std::int64_t{1} << 32U)), nullptr);
        EXPECT_EQ(table.Find(-1 - std::int64_t{row.neId}), nullptr);
    }
    EXPECT_EQ(table.Find(2), nullptr);
}

TEST(NeTable, MayBeEmpty) {
    const NeTable table({});
    EXPECT_EQ(table.Find(0), nullptr);
    EXPECT_EQ(table.Find(-1), nullptr);
}

}  // namespace
