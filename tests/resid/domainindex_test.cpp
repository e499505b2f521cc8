// Records are equal if all their fields are.
#include <string>
#include <tuple>
#include <type_traits>

#include <gtest/gtest.h>

#include <kx_domain_util/domainindex.h>

#include "support/recordfields.h"

namespace {

using NS_TEST::RecordFields;

template <class Value>
void Change(Value& value) {
    if constexpr (std::is_same_v<Value, bool>) {
        value = !value;
    } else if constexpr (std::is_arithmetic_v<Value>) {
        ++value;
    } else if constexpr (std::is_same_v<Value, std::string>) {
        value += "x";
    } else {
        Change(value.*std::get<0>(RecordFields<Value>::LIST).member);
    }
}

template <class Record>
class Records : public testing::Test {};

using AllRecords =
    testing::Types<NS_DOMAIN::OSIndex, NS_DOMAIN::ONEIndex, NS_DOMAIN::NEIndex, NS_DOMAIN::ShelfIndex,
                   NS_DOMAIN::SlotIndex, NS_DOMAIN::CardIndex, NS_DOMAIN::PortIndex, NS_DOMAIN::CtpKey_T,
                   NS_DOMAIN::TPIndex, NS_DOMAIN::PWIndex, NS_DOMAIN::PWSwitchIndex, NS_DOMAIN::VPNTrailIndex,
                   NS_DOMAIN::TunnelTrailIndex, NS_DOMAIN::PWTrailIndex, NS_DOMAIN::TNPIndex_T, NS_DOMAIN::ServiceIndex,
                   NS_DOMAIN::TunnelIndex, NS_DOMAIN::TDIndex, NS_DOMAIN::UniResID, NS_DOMAIN::MDIndex,
                   NS_DOMAIN::MAIndex, NS_DOMAIN::MEPIndex, NS_DOMAIN::MIPIndex, NS_DOMAIN_SOUTHAPISET::TEUniResID>;
TYPED_TEST_SUITE(Records, AllRecords);

TYPED_TEST(Records, AreEqualWhenFresh) {
    EXPECT_EQ(TypeParam{}, TypeParam{});
}

TYPED_TEST(Records, DifferWhenOneFieldDoes) {
    const auto expectDifference = [](const auto& field) {
        TypeParam changed;
        Change(changed.*field.member);
        EXPECT_NE(changed, TypeParam{}) << field.name;
        EXPECT_EQ(changed, TypeParam{changed}) << field.name;
    };
    std::apply([&](const auto&... field) { (expectDifference(field), ...); }, RecordFields<TypeParam>::LIST);
}

}  // namespace
