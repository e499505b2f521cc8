#include "catalogue/conversions.h"

#include <gtest/gtest.h>

#include "catalogue/kinds.h"

using namespace NS_KX;
using namespace NS_DOMAIN;

namespace {

template <class Record>
bool IsRejected(void (*write)(const Record&, std::string&), const Record& record) {
    std::string fdn;
    try {
        write(record, fdn);
    } catch (const BadRecord&) {
        return true;
    }
    return false;
}

}  // namespace

TEST(Conversions, AGroupKeepsTheLevelsInFrontOfIt) {
    ContainedGroup group;
    ReadGroup("NE=5,FR=1,VEGROUP=3", group);
    EXPECT_EQ(group, (ContainedGroup{"NE=5,FR=1,", 3}));
    ReadGroup("VEGROUP=4", group);
    EXPECT_EQ(group, (ContainedGroup{"", 4}));
}

TEST(Conversions, AGroupIsNotWrittenWhereItWouldNotBeRead) {
    EXPECT_FALSE(IsRejected(WriteGroup, ContainedGroup{"NE=5,", 3}));
    EXPECT_TRUE(IsRejected(WriteGroup, ContainedGroup{"NE=5", 3})) << "NE=5VEGROUP=3";
    EXPECT_TRUE(IsRejected(WriteGroup, ContainedGroup{"NE=5,VEGROUP=2,", 3})) << "the first of a tag counts";
}

TEST(Conversions, APseudoWireKeepsWhatFollowsItsNe) {
    PWIndex pw;
    ReadPseudoWire("NE=12,PW=4|x", pw);
    EXPECT_EQ(pw, (PWIndex{12, "PW=4|x"}));
    PWIndex withoutNe;
    ReadPseudoWire("PW=4", withoutNe);
    EXPECT_EQ(withoutNe, (PWIndex{-1, "PW=4"}));
    PWIndex neOnly;
    ReadPseudoWire("NE=12", neOnly);
    EXPECT_EQ(neOnly, (PWIndex{12, "NE=12"}));
}

TEST(Conversions, ATrailIsKeptApartFromWhatIsInFrontOfIt) {
    Contained<VPNTrailIndex> trail;
    ReadTrail("NE=3,PWE3TRAIL=7,X=8", trail);
    EXPECT_EQ(trail.container, "NE=3,");
    EXPECT_EQ(trail.trailResId, "PWE3TRAIL=7,X=8");
    EXPECT_EQ(trail.trailType, 1);
    Contained<PWTrailIndex> none;
    ReadTrail("NE=3", none);
    EXPECT_EQ(none.container, "NE=3");
    EXPECT_EQ(none.trailResId, "");
}

TEST(Conversions, TrafficDescriptorsAreWrittenWithin32Bits) {
    std::string fdn;
    WriteTrafficDescriptor({0, 5, -2147483648}, fdn);
    EXPECT_EQ(fdn, "NE=5,ATMTD=-2147483648");
    EXPECT_TRUE(IsRejected(WriteTrafficDescriptor, TDIndex{0, 5, 2147483648}));
    EXPECT_TRUE(IsRejected(WriteTrafficDescriptor, TDIndex{0, -2147483649, 1}));
}

TEST(Conversions, FieldsThatContradictTheTextThatARecordKeepsAreRejected) {
    EXPECT_FALSE(IsRejected(WriteWholeText<ServiceIndex>, ServiceIndex{5, "NE=5,NETH=8", 8, 2}));
    EXPECT_TRUE(IsRejected(WriteWholeText<ServiceIndex>, ServiceIndex{6, "NE=5,NETH=8", 8, 2}));
    EXPECT_TRUE(IsRejected(WriteWholeText<ServiceIndex>, ServiceIndex{5, "NE=5,NETH=8", 9, 2}));
    EXPECT_FALSE(IsRejected(WriteWholeText<PWSwitchIndex>, PWSwitchIndex{5, "NE=5,PWSW=1"}));
    EXPECT_TRUE(IsRejected(WriteWholeText<PWSwitchIndex>, PWSwitchIndex{5, "NE=6,PWSW=1"}));
    EXPECT_FALSE(IsRejected(WriteTrail<PWTrailIndex>, Contained<PWTrailIndex>{{"PWTRAIL=7"}, "NE=5,"}));
    EXPECT_TRUE(IsRejected(WriteTrail<PWTrailIndex>, Contained<PWTrailIndex>{{"7"}, "NE=5,PWTRAIL="}));
    EXPECT_TRUE(IsRejected(WriteTrail<VPNTrailIndex>, Contained<VPNTrailIndex>{{"VPLS=7", 1}, "NE=5,"}));
}

TEST(Conversions, AnEndPointHasItsNamesAlsoWhereItHasNumbers) {
    MEPIndex mep;
    ReadEndPoint("NE=5,MD=3|md1,MA=4|ma1,MEP=7", mep);
    EXPECT_EQ(mep, (MEPIndex{{0, 5}, 3, "md1", 4, "ma1", 7}));
    MEPIndex unnumbered;
    ReadEndPoint("NE=5,MD=|3,MA=|ma1,RMEP=7", unnumbered);
    EXPECT_EQ(unnumbered, (MEPIndex{{0, 5}, 0, "3", 0, "ma1", 7}));
}

TEST(Conversions, OfAnEndPointThatCannotBeReadTheRestStaysUnknown) {
    MEPIndex mep;
    ReadEndPoint("NE=5,MD,MA=4|ma1,MEP=7", mep);
    EXPECT_EQ(mep, (MEPIndex{{0, 5}, -1, "", -1, "ma1", -1}));
}

TEST(Conversions, AnIntermediatePointHasItsName) {
    MIPIndex mip;
    ReadIntermediatePoint("NE=5,MD=3|md1,MIP=4|mip1", mip);
    EXPECT_EQ(mip, (MIPIndex{{0, 5}, 3, "md1", 4, "mip1"}));
}
