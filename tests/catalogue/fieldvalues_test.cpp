#include "catalogue/fieldvalues.h"

#include <gtest/gtest.h>

namespace NS_KX {
namespace {

// The record that `fdn` is read into, and its kind.
struct Reading {
    explicit Reading(std::string_view fdn) : kind(*FindKind(fdn)), record(records.Fresh(kind.layout)) {
        kind.read(fdn, record, NS_UTIL::Surroundings::OfSystem());
    }

    AnyRecord records;
    const Kind& kind;
    void* record;
};

bool SaysNothing(std::string_view fdn) {
    const Reading reading(fdn);
    return IsNothingRead(reading.kind, reading.record);
}

TEST(FieldValues, SaysOfEachFieldWhetherItIsKnown) {
    const Reading reading("NE=12,FR=-1");
    const auto fields = FieldsOf(reading.kind, reading.record);
    ASSERT_EQ(fields.size(), 2U);
    EXPECT_EQ(fields[0].name, "neId");
    EXPECT_EQ(fields[0].value, "12");
    EXPECT_TRUE(fields[0].isKnown);
    EXPECT_EQ(fields[1].name, "shelfId");
    EXPECT_EQ(fields[1].value, "-1");
    EXPECT_FALSE(fields[1].isKnown);
}

TEST(FieldValues, WhenNoneIsKnownNothingIsRead) {
    EXPECT_TRUE(SaysNothing("FR=1,S=0,CP=-1,SS=-1,SC=-1,PP=16||0|"));
    EXPECT_TRUE(SaysNothing("NE=-1"));
    EXPECT_FALSE(SaysNothing("NE=5,FR=1,S=0,CP=-1,PP=16||0|"));
}

}  // namespace
}  // namespace NS_KX
