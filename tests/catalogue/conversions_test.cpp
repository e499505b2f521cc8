// What the catalogue's readers and writers add to the library's own: a text comes back from its record.
#include <gmock/gmock.h>

#include "catalogue/kinds.h"
#include "catalogue/readfields.h"

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
        for (const ReadField& field : FieldsOf(m_kind, m_record)) {
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

}  // namespace
}  // namespace NS_KX
