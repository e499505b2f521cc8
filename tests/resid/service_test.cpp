#include <utility>

#include <gtest/gtest.h>

#include <kx_domain_util/resIDUtil.h>
#include <kx_domain_util/utilcommon.h>

#include "support/conversions.h"
#include "support/exacttext.h"
#include "support/generated.h"
#include "support/scale.h"

namespace {

using NS_DOMAIN::PWIndex;
using NS_DOMAIN::PWSwitchIndex;
using NS_DOMAIN::UniResID;
using NS_DOMAIN_SOUTHAPISET::TEUniResID;
using NS_TEST::ExactText;
using NS_TEST::RecordGenerator;
using NS_TEST::Scaled;
using NS_UTIL::ResIDUtil;
using NS_UTIL::UtilCommon;

// Reading keeps the whole identifier, and writing prepends an NE level to it.
TEST(PseudoWires, GainAnNeLevelOnEveryRoundTrip) {
    PWIndex pw;
    ResIDUtil::ResID2PWIndex(ExactText("NE=12,PW=4"), pw);
    std::string fdn;
    ResIDUtil::PWIndex2ResID(pw, fdn);
    EXPECT_EQ(fdn, "NE=12,NE=12,PW=4");
    ResIDUtil::ResID2PWIndex(fdn, pw);
    ResIDUtil::PWIndex2ResID(pw, fdn);
    EXPECT_EQ(fdn, "NE=12,NE=12,NE=12,PW=4");
}

TEST(PseudoWireSwitches, AreReadAfterUtilCommonIsDestroyed) {
    PWSwitchIndex pwSwitch;
    UtilCommon::Destroy();
    ResIDUtil::ResID2PWSwitchIndex(ExactText("NE=12,PWSWITCH=4"), pwSwitch);
    EXPECT_EQ(pwSwitch.neId, 12);
    UtilCommon::Destroy();
}

TEST(UnifiedIdentifiers, AreCopiedFieldByField) {
    const UniResID from{"text 1", "text 2", 3, "text 4"};
    TEUniResID to{"a", "b", 5, "c"};
    ResIDUtil::Domain2TE(from, to);
    EXPECT_EQ(to, (TEUniResID{"text 1", "text 2", 3, "text 4"}));
    UniResID back{"a", "b", 5, "c"};
    ResIDUtil::TE2Domain(to, back);
    EXPECT_EQ(back, from);
}

TEST(UnifiedIdentifiers, OfAnyKindComeBack) {
    RecordGenerator records(73);
    for (std::size_t round = 0; round < Scaled(5000); ++round) {
        const auto from = records.Next<UniResID>();
        auto through = records.Next<TEUniResID>();
        auto back = records.Next<UniResID>();
        ResIDUtil::Domain2TE(from, through);
        ResIDUtil::TE2Domain(through, back);
        ASSERT_EQ(back, from);
    }
}

}  // namespace
