#include "catalogue/readfields.h"

#include <gtest/gtest.h>

namespace NS_KX {
namespace {

std::vector<ReadField> Read(const std::string& fdn) {
    return ReadFields(fdn, *FindKind(fdn));
}

TEST(ReadFields, TellsOfEachFieldWhetherItIsKnown) {
    const auto fields = Read("NE=12,FR=-1");
    ASSERT_EQ(fields.size(), 2U);
    EXPECT_EQ(fields[0].name, "neId");
    EXPECT_EQ(fields[0].value, "12");
    EXPECT_TRUE(fields[0].isKnown);
    EXPECT_EQ(fields[1].name, "shelfId");
    EXPECT_EQ(fields[1].value, "-1");
    EXPECT_FALSE(fields[1].isKnown);
}

TEST(ReadFields, WhenNoneIsKnownNothingIsRead) {
    EXPECT_TRUE(IsNothingRead(Read("FR=1,S=0,CP=-1,SS=-1,SC=-1,PP=16||0|")));
    EXPECT_TRUE(IsNothingRead(Read("NE=-1")));
    EXPECT_FALSE(IsNothingRead(Read("NE=5,FR=1,S=0,CP=-1,PP=16||0|")));
}

}  // namespace
}  // namespace NS_KX
