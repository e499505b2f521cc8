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
using NS_TEST::ForEachField;
using NS_TEST::ForEachReader;
using NS_TEST::IdentifierGenerator;
using NS_TEST::Reader;
using NS_TEST::RecordGenerator;
using NS_TEST::Scaled;
using NS_UTIL::ResIDUtil;
using NS_UTIL::UtilCommon;

// The records of services, trails and tunnels keep an identifier or a part of it.
template <class Record>
concept KeepsText = requires(Record record) {
    record.resId;
}
|| requires(Record record) {
    record.trailResId;
};

template <class Record, class Visit>
void ForEachText(Record& record, Visit visit) {
    ForEachField(record, [&visit](std::string_view name, auto& field) {
        if constexpr (std::is_same_v<std::remove_reference_t<decltype(field)>, std::string>) {
            visit(name, field);
        }
    });
}

// A record may be read again from the identifier that it keeps, or from any other of its texts.
TEST(ServiceReaders, MayBeGivenATextOfTheirRecord) {
    IdentifierGenerator identifiers(71);
    RecordGenerator records(72);
    std::size_t changed = 0;
    for (std::size_t round = 0; round < Scaled(20000) && !HasFailure(); ++round) {
        const std::string fdn = identifiers.Next();
        ForEachReader([&]<class Record>(const Reader<Record>& reader) {
            if constexpr (KeepsText<Record>) {
                Record record = records.Next<Record>();
                ForEachText(record, [&](std::string_view name, std::string& own) {
                    own = fdn;
                    Record expected = record;
                    const Record before = record;
                    reader.literal(fdn, expected);

                    reader.library(own, record);

                    EXPECT_EQ(record, expected)
                        << reader.name << " of its own " << name << ", " << testing::PrintToString(fdn);
                    changed += record == before ? 0 : 1;
                });
            }
        });
    }
    EXPECT_GT(changed, Scaled(20000)) << "too little was read for this to say anything";
}

// Reading keeps the whole identifier, and writing puts an NE level in front of it.
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
