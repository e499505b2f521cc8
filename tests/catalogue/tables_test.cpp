#include "catalogue/tables.h"

#include <gtest/gtest.h>

#include <kx_domain_util/constanttables.h>

namespace NS_KX {
namespace {

TEST(ConstantTables, HaveTheRowsOfTheLibraryInTheirOrder) {
    const ConstantTable* const levels = FindConstantTable("fb-type-levels");
    ASSERT_NE(levels, nullptr);
    const auto rows = NS_UTIL::GetFbTypeLevelRows();
    ASSERT_EQ(levels->CountColumns(), 2U);
    ASSERT_EQ(levels->countRows(), rows.size());
    for (std::size_t row = 0; row < rows.size(); ++row) {
        EXPECT_EQ(std::get<std::int64_t>(levels->cellAt(row, 0)), rows[row].fbType);
        EXPECT_EQ(std::get<std::int64_t>(levels->cellAt(row, 1)), rows[row].level);
    }
}

TEST(ConstantTables, HaveTextsAndNumbers) {
    const ConstantTable* const rates = FindConstantTable("client-rates");
    ASSERT_NE(rates, nullptr);
    EXPECT_EQ(std::get<std::string_view>(rates->cellAt(0, 0)), NS_UTIL::GetClientRateRows()[0].name);
    EXPECT_EQ(std::get<std::int64_t>(rates->cellAt(0, 1)), NS_UTIL::GetClientRateRows()[0].level);
}

TEST(ConstantTables, MayHaveOneColumn) {
    const ConstantTable* const boards = FindConstantTable("optical-boards");
    ASSERT_NE(boards, nullptr);
    EXPECT_EQ(boards->CountColumns(), 1U);
    EXPECT_EQ(boards->countRows(), NS_UTIL::GetOpticalBoards().size());
}

TEST(ConstantTables, KeepOneTypeInAColumn) {
    for (const ConstantTable& table : AllConstantTables()) {
        ASSERT_GT(table.countRows(), 0U) << table.name;
        for (std::size_t column = 0; column < table.CountColumns(); ++column) {
            for (std::size_t row = 0; row < table.countRows(); ++row) {
                EXPECT_EQ(table.cellAt(row, column).index(), table.cellAt(0, column).index()) << table.name;
            }
        }
    }
}

TEST(ConstantTables, AreFoundByTheirNameOnly) {
    EXPECT_EQ(FindConstantTable("fb_type_levels"), nullptr);
    EXPECT_EQ(FindConstantTable(""), nullptr);
}

}  // namespace
}  // namespace NS_KX
