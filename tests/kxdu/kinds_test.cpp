#include "kinds.h"

#include <gtest/gtest.h>

#include <kx_domain_util/resIDUtil.h>
#include <kx_platform/bundlemgr.h>
#include <kx_platform/inventorybufif.h>

namespace NS_KXDU {
namespace {

using NS_UTIL::ResIDUtil;

// Knows one NE of the model that spells out absent sub-slots of cards.
class Inventory : public NS_SERVICE::InventoryBufif {
public:
    Inventory() { NS_BUNDLEMGR1::BundleMgr::Instance()->RegisterService("InventoryBufif", this); }
    ~Inventory() override { NS_BUNDLEMGR1::BundleMgr::Instance()->UnregisterService("InventoryBufif"); }
    Inventory(const Inventory&) = delete;
    Inventory& operator=(const Inventory&) = delete;

    bool QueryNEType(std::int64_t neId, std::uint32_t& neType, bool) override {
        neType = neId == 41 ? 1911 : 0;
        return true;
    }
    bool IsOamNumberOmitted(int) override { return false; }
    bool IsIPServiceNEType(unsigned short) override { return false; }
    bool IsKLVNEType(unsigned short) override { return false; }
    bool IsTransMultiSubShelf(unsigned long, unsigned short) override { return false; }
};

struct Case {
    const char* fdn;
    const char* type;
};

void PrintTo(const Case& item, std::ostream* out) {
    *out << item.fdn;
}

class CanonicalIdentifiers : public testing::TestWithParam<Case> {};

TEST_P(CanonicalIdentifiers, AreOfTheirKindAndComeBack) {
    const Inventory inventory;
    const Kind* const kind = FindKind(GetParam().fdn);
    ASSERT_NE(kind, nullptr);
    EXPECT_EQ(kind->Type(), GetParam().type);
    std::string canonical;
    kind->Rewrite(GetParam().fdn, canonical);
    EXPECT_EQ(canonical, GetParam().fdn);
}

INSTANTIATE_TEST_SUITE_P(
    EachWriter, CanonicalIdentifiers,
    testing::Values(
        Case{"OS=1", "OSIndex"}, Case{"ONE=2", "ONEIndex"}, Case{"NE=5", "NEIndex"}, Case{"ONE=2,NE=5", "NEID"},
        Case{"NE=5,FR=1", "ShelfIndex"}, Case{"NE=5,FR=-1", "ShelfIndex"}, Case{"NE=5,FR=1,S=3", "SlotIndex"},
        Case{"NE=5,S=3", "SlotIndex"}, Case{"NE=5,FR=1,S=3,SS=2", "SubSlotIndex"}, Case{"NE=5,SS=2", "SubSlotIndex"},
        Case{"NE=5,FR=1,S=3,CP=-1", "CardIndex"}, Case{"NE=41,FR=1,S=3,CP=-1,SS=-1,SC=-1", "CardIndex"},
        Case{"NE=5,FR=1,S=3,CP=-1,PP=16||2|", "PortIndex"},
        Case{"NE=5,FR=1,S=3,CP=-1,SS=0,SC=-1,PP=16|1025|2|GE0/2", "PortIndex"},
        Case{"NE=5,LP=|65547|3|vlanif", "PortIndex"}, Case{"NE=5,PP=||4294967295|a=b", "PortIndex"},
        Case{"NE=5,FR=1,S=3,PP=16||2|", "PortIndex:NEType"}, Case{"NE=5,FR=1,LP=16||-1|", "PortIndex:NEType"},
        Case{"NE=5,SS=1,SC=-1,PP=16||2|", "PortIndex:NEType"},
        Case{"NE=5,FR=1,S=3,SS=-1,SC=-1,PP=16||2|", "PortIndex:NEType1911"},
        Case{"NE=5,FR=1,S=3,CP=-1,PP=16||2|,AP=1|2|9", "CtpKey_T"}, Case{"NE=5,LP=16||2|,AP=1|2|", "CtpKey_T"},
        Case{"NE=5,LP=16||2|,SUBIF=9", "CtpKey_T:SUBIF"}, Case{"NE=5,LP=||2|Eth0.1,SUBIF=9", "CtpKey_T:SUBIF"},
        Case{"NE=5,LP=||2|Eth0,SUBIF=9", "TPIndex"}, Case{"NE=5,FR=1,S=3,CP=-1,PP=||2|GE0/1,SUBIF=100", "TPIndex"},
        Case{"NE=5,PP=||2|GE0/1,SUBIF=100,VC4=2", "TPIndex"}, Case{"NE=5,PP=||2|GE0/1,VC4=2,VC12=7", "TPIndex"},
        Case{"NE=5,PP=||2|GE0/1,VC12=7", "TPIndex"}));

TEST(Kinds, TheMocIsTheTagOfTheLastLevel) {
    EXPECT_EQ(MocOf("NE=1,FR=2"), "FR");
    EXPECT_EQ(MocOf("NE=1"), "NE");
    EXPECT_EQ(MocOf("NE=1,XY"), "XY");
    EXPECT_EQ(MocOf(""), "");
    EXPECT_EQ(MocOf("NE=1,PP=16||2|a=b"), "PP") << "a name may hold an equality sign";
}

TEST(Kinds, UnknownLastLevelsAreOfNoKind) {
    EXPECT_EQ(FindKind("NE=1,XY=2"), nullptr);
    EXPECT_EQ(FindKind("NE=1,"), nullptr);
    EXPECT_EQ(FindKind("ne=1"), nullptr);
}

TEST(Kinds, EveryTypeIsFoundByItsNameAndNoneTwice) {
    for (const Kind* const kind : AllKinds()) {
        EXPECT_EQ(FindKindByType(kind->Type()), kind) << kind->Type();
    }
    EXPECT_EQ(FindKindByType("NoIndex"), nullptr);
    EXPECT_EQ(FindKindByType(""), nullptr);
}

TEST(Kinds, OtherAccessPointsAreReadToo) {
    EXPECT_EQ(FindKind("NE=1,PP=16||2|,CHANNELSET=5")->Type(), "CtpKey_T");
    EXPECT_EQ(FindKind("NE=1,PP=16||2|,VR=5")->Type(), "CtpKey_T");
}

}  // namespace
}  // namespace NS_KXDU
