#include "resid/fdnwriter.h"

#include <limits>
#include <stdexcept>

#include <gtest/gtest.h>

namespace {

using NS_UTIL::NS_FDN::FdnWriter;

TEST(FdnWriter, ReplacesWhatTheTextHeld) {
    std::string fdn = "old";
    FdnWriter writer(fdn);
    writer.Level("NE=", -5).Text(",FR=").Decimal(std::numeric_limits<std::int32_t>::min()).Flush();
    EXPECT_EQ(fdn, "NE=-5,FR=-2147483648");
}

TEST(FdnWriter, WritesNumbersWithoutSign) {
    std::string fdn;
    FdnWriter writer(fdn);
    writer.Decimal(std::uint32_t{4294967295}).Flush();
    EXPECT_EQ(fdn, "4294967295");
}

TEST(FdnWriter, LeavesTheTextAloneUntilFlushed) {
    std::string fdn = "old";
    FdnWriter writer(fdn);
    writer.Level("NE=", 5);
    EXPECT_EQ(fdn, "old");
    writer.Flush();
    EXPECT_EQ(fdn, "NE=5");
}

// Texts of every length, so that a text and a number cross each boundary of the buffer.
TEST(FdnWriter, WritesTextsOfAnyLength) {
    for (std::size_t length = 0; length < 600; ++length) {
        const std::string label(length, 'x');
        std::string fdn = "old";
        FdnWriter writer(fdn);
        writer.Text(label).Decimal(std::int32_t{-2147483647}).Text(label).Level(",S=", 7).Flush();
        ASSERT_EQ(fdn, label + "-2147483647" + label + ",S=7");
    }
}

TEST(FdnWriter, HandsOverWhatWasWrittenWhenAQuestionThrows) {
    std::string fdn = "old";
    FdnWriter writer(fdn);
    writer.Level("NE=", 5);
    EXPECT_THROW(writer.Ask([]() -> int { throw std::runtime_error("no answer"); }), std::runtime_error);
    EXPECT_EQ(fdn, "NE=5");
}

TEST(FdnWriter, GoesOnAfterAnAnswer) {
    std::string fdn = "old";
    FdnWriter writer(fdn);
    writer.Level("NE=", 5);
    EXPECT_EQ(writer.Ask([] { return 7; }), 7);
    writer.Level(",FR=", 1).Flush();
    EXPECT_EQ(fdn, "NE=5,FR=1");
}

}  // namespace
