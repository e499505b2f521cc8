// What the catalogue's readers and writers add to the library's own: a text comes back from its record.
#include "catalogue/conversion.h"

#include <gmock/gmock.h>

#include <kx_platform/bundlemgr.h>
#include <kx_platform/inventorybufif.h>

#include "catalogue/fieldvalues.h"
#include "catalogue/kinds.h"

namespace NS_KX {
namespace {

using testing::ElementsAre;

const NS_UTIL::Surroundings& System() {
    return NS_UTIL::Surroundings::OfSystem();
}

// A record of the kind `type`, read from an identifier and then changed.
class Record {
public:
    explicit Record(std::string_view type, std::string_view fdn = {})
        : m_kind(*FindKindByType(type)), m_record(m_records.Fresh(m_kind.layout)) {
        m_kind.read(fdn, m_record, System());
    }

    template <class Value>
    Record& Set(std::string_view field, const Value& value) {
        FindField(m_kind, field)->In<Value>(m_record) = value;
        return *this;
    }

    // "name=value" of each field.
    [[nodiscard]] std::vector<std::string> Fields() const {
        std::vector<std::string> texts;
        for (const FieldValue& field : FieldsOf(m_kind, m_record)) {
            texts.push_back(std::string(field.name) + "=" + field.value);
        }
        return texts;
    }

    [[nodiscard]] std::string Written() const {
        std::string fdn;
        try {
            m_kind.write(m_record, fdn, System());
        } catch (const BadRecord&) {
            return "rejected";
        }
        return fdn;
    }

private:
    const Kind& m_kind;
    AnyRecord m_records;
    void* m_record;
};

TEST(Conversions, AGroupKeepsTheLevelsInFrontOfIt) {
    EXPECT_THAT(Record("GroupID", "NE=5,FR=1,VEGROUP=3").Fields(),
                ElementsAre(R"(container="NE=5,FR=1,")", "groupId=3"));
    EXPECT_THAT(Record("GroupID", "VEGROUP=4").Fields(), ElementsAre(R"(container="")", "groupId=4"));
}

TEST(Conversions, AGroupIsNotWrittenWhereItWouldNotBeRead) {
    const auto written = [](const std::string& container) {
        return Record("GroupID").Set("container", container).Set("groupId", 3).Written();
    };
    EXPECT_EQ(written("NE=5,"), "NE=5,VEGROUP=3");
    EXPECT_EQ(written("NE=5"), "rejected") << "NE=5VEGROUP=3";
    EXPECT_EQ(written("NE=5,VEGROUP=2,"), "rejected") << "the first of two levels with the same tag counts";
}

TEST(Conversions, APseudoWireKeepsWhatFollowsItsNe) {
    EXPECT_THAT(Record("PWIndex", "NE=12,PW=4|x").Fields(), ElementsAre("neId=12", R"(resId="PW=4|x")"));
    EXPECT_THAT(Record("PWIndex", "PW=4").Fields(), ElementsAre("neId=-1", R"(resId="PW=4")"));
    EXPECT_THAT(Record("PWIndex", "NE=12").Fields(), ElementsAre("neId=12", R"(resId="NE=12")"));
}

TEST(Conversions, ATrailIsKeptApartFromWhatIsInFrontOfIt) {
    EXPECT_THAT(Record("VPNTrailIndex", "NE=3,PWE3TRAIL=7,X=8").Fields(),
                ElementsAre(R"(container="NE=3,")", R"(trailResId="PWE3TRAIL=7,X=8")", "trailType=1"));
    EXPECT_THAT(Record("PWTrailIndex", "NE=3").Fields(), ElementsAre(R"(container="NE=3")", R"(trailResId="")"));
}

TEST(Conversions, TrafficDescriptorsAreWrittenWithin32Bits) {
    const auto written = [](std::int64_t neId, std::int64_t tdId) {
        return Record("TDIndex").Set("neId", neId).Set("tdId", tdId).Written();
    };
    EXPECT_EQ(written(5, -2147483648), "NE=5,ATMTD=-2147483648");
    EXPECT_EQ(written(5, 2147483648), "rejected");
    EXPECT_EQ(written(-2147483649, 1), "rejected");
}

TEST(Conversions, FieldsThatContradictTheTextThatARecordKeepsAreRejected) {
    EXPECT_EQ(Record("ServiceIndex", "NE=5,NETH=8").Written(), "NE=5,NETH=8");
    EXPECT_EQ(Record("ServiceIndex", "NE=5,NETH=8").Set("neId", 6).Written(), "rejected");
    EXPECT_EQ(Record("ServiceIndex", "NE=5,NETH=8").Set("svcId", 9).Written(), "rejected");
    EXPECT_EQ(Record("PWSwitchIndex", "NE=5,PWSW=1").Written(), "NE=5,PWSW=1");
    EXPECT_EQ(Record("PWSwitchIndex", "NE=6,PWSW=1").Set("neId", 5).Written(), "rejected");
    EXPECT_EQ(Record("TunnelIndex", "NE=6,TUNNEL=1|2|a|b|3|c|4").Set("tunnelInt0", 2).Written(), "rejected");
    EXPECT_EQ(Record("PWTrailIndex", "NE=5,PWTRAIL=7").Written(), "NE=5,PWTRAIL=7");
    EXPECT_EQ(Record("PWTrailIndex", "NE=5,PWTRAIL=7").Set("container", std::string("NE=5,PWTRAIL=")).Written(),
              "rejected");
    EXPECT_EQ(Record("VPNTrailIndex", "NE=5,VPLS=7").Set("trailType", 1).Written(), "rejected");
}

TEST(Conversions, AnEndPointHasItsNamesAlsoWhereItHasNumbers) {
    EXPECT_THAT(Record("MEPIndex", "NE=5,MD=3|md1,MA=4|ma1,MEP=7").Fields(),
                ElementsAre("neId=5", "mdId=3", R"(mdName="md1")", "maId=4", R"(maName="ma1")", "mepId=7"));
    EXPECT_THAT(Record("MEPIndex:RMEP", "NE=5,MD=|3,MA=|ma1,RMEP=7").Fields(),
                ElementsAre("neId=5", "mdId=0", R"(mdName="3")", "maId=0", R"(maName="ma1")", "mepId=7"));
}

TEST(Conversions, TheRestOfAnEndPointThatCannotBeReadStaysUnknown) {
    EXPECT_THAT(Record("MEPIndex", "NE=5,MD,MA=4|ma1,MEP=7").Fields(),
                ElementsAre("neId=5", "mdId=-1", R"(mdName="")", "maId=-1", R"(maName="ma1")", "mepId=-1"));
}

TEST(Conversions, AnIntermediatePointHasItsName) {
    EXPECT_THAT(Record("MIPIndex", "NE=5,MD=3|md1,MIP=4|mip1").Fields(),
                ElementsAre("neId=5", "mdId=3", R"(mdName="md1")", "mipId=4", R"(mipName="mip1")"));
}

// ---- A text comes back from its record ------------------------------------------------------------------------------

// Knows one NE whose model spells out absent sub-slots of cards, and one NE that leaves out OAM numbers.
class FixedInventory : public NS_SERVICE::InventoryBufif {
public:
    FixedInventory() { NS_BUNDLEMGR1::BundleMgr::Instance()->RegisterService("InventoryBufif", this); }
    ~FixedInventory() override { NS_BUNDLEMGR1::BundleMgr::Instance()->UnregisterService("InventoryBufif"); }
    FixedInventory(const FixedInventory&) = delete;
    FixedInventory& operator=(const FixedInventory&) = delete;

    bool QueryNEType(std::int64_t neId, std::uint32_t& neType, bool) override {
        neType = neId == 41 ? 1911 : 0;
        return true;
    }
    bool IsOamNumberOmitted(int neId) override { return neId == 7; }
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
    const FixedInventory inventory;
    const Kind* const kind = FindKind(GetParam().fdn);
    ASSERT_NE(kind, nullptr);
    EXPECT_EQ(kind->type, GetParam().type);
    std::string canonical;
    AnyRecord record;
    Rewrite(*kind, GetParam().fdn, NS_UTIL::Surroundings::OfSystem(), record, canonical);
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

INSTANTIATE_TEST_SUITE_P(
    EachService, CanonicalIdentifiers,
    testing::Values(Case{"NE=5,VEGROUP=3", "GroupID"}, Case{"VEGROUP=-3", "GroupID"},
                    Case{"NE=5,FR=1,VEGROUP=3", "GroupID"}, Case{"NE=5,PW=4", "PWIndex"},
                    Case{"NE=5,PW=a|b", "PWIndex"}, Case{"NE=5,PWSW=4|x", "PWSwitchIndex"},
                    Case{"NE=5,PWE3=3|17", "ServiceIndex"}, Case{"NE=5,NETH=8", "ServiceIndex"},
                    Case{"NE=5,VSI=8", "ServiceIndex"}, Case{"NE=5,VRF=6", "ServiceIndex"},
                    Case{"NE=5,LSP=6", "ServiceIndex"}, Case{"NE=5,L3VPN=a", "ServiceIndex"},
                    Case{"NE=5,TUNNEL=1|2|a|b|3|c|4", "TunnelIndex"}, Case{"NE=5,TUNNEL=1", "TunnelIndex"},
                    Case{"NE=5,ATMTD=9", "TDIndex"}, Case{"NE=5,PWE3TRAIL=7", "VPNTrailIndex"},
                    Case{"VPLS=7", "VPNTrailIndex"}, Case{"NE=5,PWE3TRAIL=7,VPLS=8", "VPNTrailIndex"},
                    Case{"NE=5,TUNNELTRAIL=a b", "TunnelTrailIndex"}, Case{"NE=5,FR=1,PWTRAIL=7", "PWTrailIndex"},
                    Case{"XPWTRAIL=1,PWTRAIL=7", "PWTrailIndex"}, Case{"NE=5,TUNNELPGTRAIL=7", "TNPIndex_T"}));

// On NE 7 without numbers, on NE 5 with them.
INSTANTIATE_TEST_SUITE_P(
    EachOamLevel, CanonicalIdentifiers,
    testing::Values(Case{"NE=5,MD=3|md1", "MDIndex"}, Case{"NE=5,MD=0|", "MDIndex"}, Case{"NE=7,MD=|md1", "MDIndex"},
                    Case{"NE=5,MD=3|md1,MA=4|ma1", "MAIndex"}, Case{"NE=7,MD=|md1,MA=|4", "MAIndex"},
                    Case{"NE=5,MD=3|md1,MA=4|ma1,MEP=7", "MEPIndex"}, Case{"NE=7,MD=|3,MA=|4,MEP=7", "MEPIndex"},
                    Case{"NE=5,MD=0|md1,MA=4|,MEP=-1", "MEPIndex"},
                    Case{"NE=5,MD=3|md1,MA=4|ma1,RMEP=7", "MEPIndex:RMEP"},
                    Case{"NE=7,MD=|md1,MA=|,RMEP=7", "MEPIndex:RMEP"}, Case{"NE=5,MD=3|md1,MIP=3|mip", "MIPIndex"},
                    Case{"NE=7,MD=|md1,MIP=3|mip", "MIPIndex"}, Case{"NE=5,MIP=|m", "MIPIndex"}));

class OtherIdentifiers : public testing::TestWithParam<std::pair<const char*, const char*>> {};

TEST_P(OtherIdentifiers, AreWrittenAsTheLibraryWould) {
    const FixedInventory inventory;
    std::string canonical;
    AnyRecord record;
    Rewrite(*FindKind(GetParam().first), GetParam().first, NS_UTIL::Surroundings::OfSystem(), record, canonical);
    EXPECT_EQ(canonical, GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(Services, OtherIdentifiers,
                         testing::Values(std::pair{"NE=5,VEGROUP=03", "NE=5,VEGROUP=3"},
                                         std::pair{"VEGROUP=1,VEGROUP=2", "VEGROUP=1,VEGROUP=1"},
                                         std::pair{"PW=4", "NE=-1,PW=4"},
                                         std::pair{"ONE=1,NE=5,PW=4", "NE=5,ONE=1,NE=5,PW=4"},
                                         std::pair{"ATMTD=9", "NE=0,ATMTD=9"},
                                         std::pair{"NE=5,FR=1,ATMTD=9", "NE=5,ATMTD=9"}));

INSTANTIATE_TEST_SUITE_P(
    Oam, OtherIdentifiers,
    testing::Values(std::pair{"NE=7,MD=3|md1", "NE=7,MD=|md1"}, std::pair{"NE=5,MD=|md1", "NE=5,MD=0|md1"},
                    std::pair{"NE=5,MIP=0|m", "NE=5,MIP=|m"}, std::pair{"NE=5,MEP=7", "NE=5,MD=|,MA=|,MEP=7"},
                    std::pair{"NE=5,MA=4|ma1,MD=3|md1,MEP=7", "NE=5,MD=4|md1,MA=3|ma1,MEP=7"},
                    std::pair{"NE=5,FR=1,MD=3|md1,MA=4|ma1,MEP=7", "NE=5,MD=1|md1,MA=3|ma1,MEP=-1"}));

TEST(Conversions, TextTakesNothingThatWouldCutTheIdentifier) {
    const Field& label = *FindField(*FindKindByType("PortIndex"), "portLabel");
    EXPECT_NO_THROW(RequireWritable(label, "GE0/1=a"));
    for (const char* const value : {"a,b", "a|b", "a\nb", "a\rb"}) {
        EXPECT_THROW(RequireWritable(label, value), BadRecord) << value;
    }
    EXPECT_THROW(RequireWritable(label, std::string_view("a\0b", 3)), BadRecord);
    const Field& text = *FindField(*FindKindByType("ServiceIndex"), "resId");
    EXPECT_NO_THROW(RequireWritable(text, "NE=5,PWE3=3|17"));
    EXPECT_THROW(RequireWritable(text, "NE=5\n"), BadRecord);
}

}  // namespace
}  // namespace NS_KX
