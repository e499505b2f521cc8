#include "catalogue/kinds.h"

#include <gtest/gtest.h>

namespace NS_KX {
namespace {

TEST(Kinds, EveryKnownTagEndsIdentifiersOfSomeKind) {
    for (const Tag* const tag : AllTags()) {
        EXPECT_NE(FindKind("NE=1," + std::string(tag->name) + "=1"), nullptr) << tag->name;
    }
}

TEST(Kinds, UnknownLastLevelsAreOfNoKind) {
    EXPECT_EQ(FindKind("NE=1,XY=2"), nullptr);
    EXPECT_EQ(FindKind("NE=1,"), nullptr);
    EXPECT_EQ(FindKind("ne=1"), nullptr);
}

TEST(Kinds, EveryTypeIsFoundByItsNameAndNoneTwice) {
    for (const Kind* const kind : AllKinds()) {
        EXPECT_EQ(FindKindByType(kind->type), kind) << kind->type;
    }
    EXPECT_EQ(FindKindByType("NoIndex"), nullptr);
    EXPECT_EQ(FindKindByType(""), nullptr);
}

TEST(Kinds, OtherAccessPointsAreReadToo) {
    EXPECT_EQ(FindKind("NE=1,PP=16||2|,CHANNELSET=5")->type, "CtpKey_T");
    EXPECT_EQ(FindKind("NE=1,PP=16||2|,VR=5")->type, "CtpKey_T");
}

// ---- Fields ---------------------------------------------------------------------------------------------------------

TEST(Fields, OfNestedRecordsHaveTwoNames) {
    const Field* const nested = FindField(*FindKindByType("CtpKey_T"), "port.neId");
    ASSERT_NE(nested, nullptr);
    EXPECT_EQ(nested->Nest(), "port");
    EXPECT_EQ(nested->Member(), "neId");
    const Field* const own = FindField(*FindKindByType("CtpKey_T"), "neId");
    ASSERT_NE(own, nullptr);
    EXPECT_EQ(own->Nest(), "");
    EXPECT_EQ(own->Member(), "neId");
}

}  // namespace
}  // namespace NS_KX
