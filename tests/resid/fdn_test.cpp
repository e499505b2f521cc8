#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <kx_domain_util/fdn.h>
#include <kx_domain_util/processexception.h>

#include "support/conversions.h"
#include "support/conversionsurroundings.h"
#include "support/exacttext.h"
#include "support/generated.h"
#include "support/givensurroundings.h"
#include "support/room.h"
#include "support/scale.h"

namespace {

using namespace NS_DOMAIN;
using namespace NS_UTIL::NS_FDN;
using NS_TEST::CONVERSION_PROFILES;
using NS_TEST::ConversionProfile;
using NS_TEST::ConversionSurroundings;
using NS_TEST::CountingInventory;
using NS_TEST::ExactView;
using NS_TEST::ForEachReaderOfText;
using NS_TEST::ForEachText;
using NS_TEST::ForEachWriter;
using NS_TEST::GivenSurroundings;
using NS_TEST::IdentifierGenerator;
using NS_TEST::LacksService;
using NS_TEST::Reader;
using NS_TEST::RecordGenerator;
using NS_TEST::Scaled;
using NS_TEST::Writer;
using NS_TEST::WriterArguments;
using NS_UTIL::InterfaceNotExistException;
using NS_UTIL::Surroundings;

class NoFile : public NS_SERVICE::DAWSvcInterface {
public:
    NS_SERVICE::ConfigObject* GetConfiguration(const std::string&, const std::string&) override { return nullptr; }
};

// ---- The conversions are those of ResIDUtil -------------------------------------------------------------------------

class TypedCalls : public testing::TestWithParam<ConversionProfile> {
protected:
    CountingInventory m_inventory{1912};
    NoFile m_dataAccess;
    const ConversionSurroundings m_system{GetParam()};  // for the literal counterparts
    const GivenSurroundings m_given{GetParam().configuration, GetParam().hasServices ? &m_inventory : nullptr,
                                    GetParam().hasServices ? &m_dataAccess : nullptr};
};

TEST_P(TypedCalls, ReadWhatALiteralReadingReads) {
    IdentifierGenerator identifiers(4);
    RecordGenerator records(5);
    for (std::size_t round = 0; round < Scaled(4000) && !HasFailure(); ++round) {
        const std::string text = identifiers.Next();
        const ExactView fdn(text);
        ForEachReaderOfText([&]<class Record>(const Reader<Record>& reader) {
            Record record = records.Next<Record>();
            Record expected = record;

            const bool isStopped = LacksService([&] { reader.typed(fdn, record, m_given); });

            EXPECT_EQ(isStopped, LacksService([&] { reader.literal(text, expected); }));
            if constexpr (requires { record.answer; }) {
                record.answer = expected.answer;  // the typed call gives another answer
            }
            EXPECT_EQ(record, expected) << reader.name << " of " << testing::PrintToString(text);
        });
    }
}

TEST_P(TypedCalls, WriteWhatALiteralWritingWrites) {
    RecordGenerator records(6);
    for (std::size_t round = 0; round < Scaled(4000) && !HasFailure(); ++round) {
        ForEachWriter([&]<class Record>(const Writer<Record>& writer) {
            const Record record = records.Next<Record>();
            const WriterArguments arguments{records.Flag(), static_cast<unsigned long>(records.Number())};
            std::string fdn;
            std::string expected;

            const bool isStopped = LacksService([&] { writer.typed(record, fdn, arguments, m_given); });

            EXPECT_EQ(isStopped, LacksService([&] { writer.literal(record, expected, arguments); }));
            EXPECT_EQ(fdn, expected) << writer.name;
        });
    }
}

INSTANTIATE_TEST_SUITE_P(Under, TypedCalls, testing::ValuesIn(CONVERSION_PROFILES),
                         [](const auto& profile) { return std::string(profile.param.name); });

// ---- A text inside the record ---------------------------------------------------------------------------------------

template <class Record>
std::vector<std::string*> TextsOf(Record& record) {
    std::vector<std::string*> texts;
    ForEachText(record, [&texts](std::string& text) { texts.push_back(&text); });
    return texts;
}

// Tests every reader with every text of its record: the whole text, and the text from its third character on.
TEST(ReadersOfATextInTheirRecord, ReadWhatTheyReadOfACopy) {
    IdentifierGenerator identifiers(7);
    RecordGenerator records(8);
    const NS_TEST::Configuration configuration;
    NoFile dataAccess;
    const NS_TEST::Registration registration("DAWSvcInterface", dataAccess);
    const GivenSurroundings surroundings({}, nullptr, &dataAccess);
    std::size_t texts = 0;
    for (std::size_t round = 0; round < Scaled(4000) && !HasFailure(); ++round) {
        const std::string text = identifiers.Next();
        const std::string tail = text.substr(std::min<std::size_t>(2, text.size()));
        ForEachReaderOfText([&]<class Record>(const Reader<Record>& reader) {
            Record initial = round % 2 == 0 ? Record{} : records.Next<Record>();
            for (std::size_t place = 0; place < TextsOf(initial).size(); ++place) {
                *TextsOf(initial)[place] = text;
                Record expected = initial;
                Record expectedOfTail = initial;
                reader.library(text, expected);
                reader.library(tail, expectedOfTail);

                Record record = initial;
                reader.library(*TextsOf(record)[place], record);
                EXPECT_EQ(record, expected)
                    << reader.name << " of text " << place << ": " << testing::PrintToString(text);

                record = initial;
                if constexpr (requires { record.answer; }) {
                    record.answer = expectedOfTail.answer;  // the typed call gives another answer
                }
                const std::string_view inside = *TextsOf(record)[place];
                reader.typed(inside.substr(inside.size() - tail.size()), record, surroundings);
                EXPECT_EQ(record, expectedOfTail)
                    << reader.name << " of text " << place << ": " << testing::PrintToString(tail);
                ++texts;
            }
        });
    }
    EXPECT_GT(texts, 0U);
}

TEST(ReadersOfATextInTheirRecord, ReadTheLabelThatTheyReplace) {
    TPIndex tp;
    tp.portLabel = "NE=5,PP=||7|GE0/7,SUBIF=4";
    NS_UTIL::ResIDUtil::ResID2TPIndex(tp.portLabel, tp);
    EXPECT_EQ(tp.neId, 5);
    EXPECT_EQ(tp.portId, 7);
    EXPECT_EQ(tp.portLabel, "GE0/7.4");

    PortIndex port;
    port.portLabel = "NE=5,PP=|1025|7|a long name that goes on\\|after a bar";
    NS_UTIL::ResIDUtil::ResID2PortIndex(port.portLabel, port);
    EXPECT_EQ(port.portLabel, "a long name that goes on|after a bar");
}

// ---- What the answer says -------------------------------------------------------------------------------------------

// `whole` has all that the kind needs; each text of `gone` lacks something.
template <class Kind>
void ExpectNeeds(const std::string& whole, const std::vector<std::string>& gone) {
    NoFile dataAccess;
    const GivenSurroundings surroundings({}, nullptr, &dataAccess);
    const auto record = Read<Kind>(whole, surroundings);
    ASSERT_TRUE(record.has_value()) << whole;
    RecordOf<Kind> into{};
    EXPECT_TRUE(ReadInto<Kind>(whole, into, surroundings)) << whole;
    EXPECT_EQ(into, *record) << whole;
    for (const std::string& text : gone) {
        EXPECT_FALSE(Read<Kind>(text, surroundings).has_value()) << text;
        RecordOf<Kind> unused{};
        EXPECT_FALSE(ReadInto<Kind>(text, unused, surroundings)) << text;
    }
    EXPECT_FALSE(Read<Kind>("", surroundings).has_value());
    EXPECT_FALSE(Read<Kind>({}, surroundings).has_value());
}

TEST(Answers, SayWhetherEquipmentIsNamed) {
    ExpectNeeds<OSIndex>("OS=1", {"OS=", "OS", "NE=1"});
    ExpectNeeds<ONEIndex>("ONE=1", {"ONE=", "OS=1"});
    ExpectNeeds<NEIndex>("NE=1", {"NE=", "ONE=1", "XNE=1"});
    ExpectNeeds<ContainedNE>("NE=1", {"ONE=1", "ONE=1,NE="});
    ExpectNeeds<ShelfIndex>("NE=1,FR=2", {"NE=1", "FR=2", "NE=,FR=2", "NE=1,FR="});
    ExpectNeeds<SlotIndex>("NE=1,S=2", {"NE=1,FR=2", "S=2", "NE=1,S=", "NE=1,SS=2"});
    ExpectNeeds<SubSlot>("NE=1,SS=2", {"NE=1,FR=1,S=2", "SS=2", "NE=,SS=2"});
    ExpectNeeds<CardIndex>("NE=1,S=2", {"NE=1,FR=2", "S=2,CP=-1", "NE=1,CP=-1"});
}

TEST(Answers, SayWhetherAPortIsNamed) {
    const std::vector<std::string> gone{"NE=1",          "PP=16||2|", "NE=,PP=16||2|",
                                        "NE=1,PP=16||2", "NE=1,LP=",  "NE=1,PP=16||2,LP=16||2|"};
    ExpectNeeds<PortIndex>("NE=1,PP=16||2|", gone);
    ExpectNeeds<PortIndex>("NE=1,LP=|||", gone);
    ExpectNeeds<PortIndex>("NE=1,FR=1,S=1,CP=-1,SS=-1,SC=-1,PP=16||0|", {"NE=1,FR=1,S=0,CP=-1,SS=-1,SC=-1,PP=16||0|"});
    ExpectNeeds<PortByNEType>("NE=1,PP=16||2|", gone);
    ExpectNeeds<AsLogical<PortIndex>>("NE=1,PP=16||2|", gone);
    ExpectNeeds<LoopBackPort>("NE=1,FR=1,S=0,CP=-1,SS=-1,SC=-1,PP=16||0|", gone);
    ExpectNeeds<PortOfKey>("NE=1,PP=16||2|", gone);
    ExpectNeeds<TPIndex>("NE=1,PP=16||2|", gone);
    ExpectNeeds<TPIndex>("NE=1,LP=|||a", {"NE=1,SUBIF=4"});
}

TEST(Answers, SayWhetherSomethingOnAPortIsNamed) {
    ExpectNeeds<SubInterface>("NE=1,LP=16||2|,SUBIF=4", {"NE=1,LP=16||2|", "NE=1,SUBIF=4", "LP=16||2|,SUBIF=4"});
    ExpectNeeds<CtpKey_T>("NE=1,PP=||2|,AP=1|2|3", {"NE=1,PP=||2|", "NE=1,AP=1|2|3", "NE=1,PP=||2|,AP=1|2"});
    ExpectNeeds<CtpKey_T>("NE=1,PP=||2|,VR=4", {"NE=1,PP=||2|,VR=", "PP=||2|,VR=4"});
    ExpectNeeds<CtpKey_T>("NE=1,PP=16||2|,SUBIF=4", {"NE=1,PP=16||2|,SUBIF=", "NE=1,PP=16||2|,CHANNELSET"});
    ExpectNeeds<CtpKey_T>("NE=1,FR=1,S=3,CP=-1,PP=16||2|,CHANNELSET=4", {"FR=1,S=3,CP=-1,PP=16||2|,CHANNELSET=4"});
}

TEST(Answers, SayWhetherSomethingIsOnAPortThatIsKnownAlready) {
    CtpKey_T key;
    key.port.neId = 5;
    const Surroundings surroundings;
    EXPECT_TRUE(ReadInto<CtpKey_T>("AP=1|2|3", key, surroundings));
    EXPECT_EQ(key.neId, 5);
    EXPECT_EQ(key.subIfId, 3);
    EXPECT_FALSE(ReadInto<CtpKey_T>("NE=1,PP=||2|", key, surroundings));
}

TEST(Answers, SayWhetherAServiceIsNamed) {
    ExpectNeeds<PWIndex>("NE=1", {"NE=", "PW=1"});
    ExpectNeeds<PWSwitchIndex>("NE=", {"NE", "PWSW=1"});
    ExpectNeeds<GroupId>("VEGROUP=1", {"VEGROUP=", "NE=1"});
    ExpectNeeds<VPNTrailIndex>("PWE3TRAIL=", {"PWE3TRAIL", "PWTRAIL=1"});
    ExpectNeeds<VPNTrailIndex>("NE=1,VPLS=1", {"VPLS"});
    ExpectNeeds<TunnelTrailIndex>("TUNNELTRAIL=1", {"TUNNEL=1"});
    ExpectNeeds<PWTrailIndex>("PWTRAIL=1", {"PW=1"});
    ExpectNeeds<TNPIndex_T>("TUNNELPGTRAIL=1", {"TUNNELTRAIL=1"});
    ExpectNeeds<ServiceIndex>("NE=1,PWE3=1|2", {"NE=1,PWE3=1", "PWE3=1|2", "NE=1", "NE=1,PWE3=1,VRF=1"});
    ExpectNeeds<ServiceIndex>("NE=1,NETH=1", {"NETH=1", "NE=1,NETH="});
    ExpectNeeds<ServiceIndex>("NE=1,VSI=1", {"VSI=1", "NE=1,VSI="});
    ExpectNeeds<ServiceIndex>("NE=1,VRF=1", {"VRF=1", "NE=1,VRF="});
    ExpectNeeds<TunnelIndex>("NE=1,TUNNEL=0|1|2|3|4|5|6", {"TUNNEL=0|1|2|3|4|5|6", "NE=1,TUNNEL=0|1|2|3|4|5"});
    ExpectNeeds<TDIndex>("NE=1,ATMTD=2", {"NE=1", "ATMTD=2", "NE=1,ATMTD="});
}

TEST(Answers, SayWhetherAMaintenancePointIsNamed) {
    ExpectNeeds<MDIndex>("NE=1,MD=2", {"NE=1", "MD=2|a", "NE=1,MD="});
    ExpectNeeds<MDIndex>("NE=1,MD=|a", {});
    ExpectNeeds<MAIndex>("NE=1,MD=2|a,MA=3|b", {"NE=1,MD=2|a", "NE=1,MA=3|b", "MD=2|a,MA=3|b", "NE=1,MD=2,MA="});
    ExpectNeeds<MIPIndex>("NE=1,MIP=3", {"NE=1,MD=2|a", "MIP=3", "NE=1,MIP="});
    const std::vector<std::string> gone{"NE=1,MD=2,MA=3", "NE=1,MD=2,MA=3,MEP=4,X=5", "NE=1,MD,MA=3,MEP=4"};
    ExpectNeeds<MEPIndex>("NE=1,MD=2,MA=3,MEP=4", gone);
    ExpectNeeds<RemoteMEP>("NE=1,MD=2,MA=3,RMEP=4", gone);
}

// ---- Kinds and variants without a ResIDUtil function of their own ---------------------------------------------------

TEST(ContainedNEs, AreReadAndWritten) {
    const auto ne = Read<ContainedNE>("ONE=3,NE=7");
    ASSERT_TRUE(ne.has_value());
    EXPECT_EQ(*ne, (ContainedNE{3, 7}));
    EXPECT_EQ(Write<ContainedNE>(*ne), "ONE=3,NE=7");
    EXPECT_EQ(Write<ContainedNE>({0, 7}), "NE=7");
}

TEST(PortVariants, AreWrittenAsTheRecordSays) {
    PortIndex port;
    port.neId = 5;
    port.subSlotId = 2;
    EXPECT_EQ(Write<PortIndex>(port), "NE=5,PP=||4294967295|");
    EXPECT_EQ(Write<PortByNEType>(port), "NE=5,SS=2,SC=-1,PP=||-1|");
    CtpKey_T key;
    key.port = port;
    EXPECT_EQ(Write<CtpKey_T>(key), "NE=5,PP=||4294967295|,AP=0|0|");
    port.isLogical = true;
    key.port.isLogical = true;
    EXPECT_EQ(Write<PortIndex>(port), "NE=5,LP=||4294967295|");
    EXPECT_EQ(Write<PortByNEType>(port), "NE=5,SS=2,SC=-1,LP=||-1|");
    EXPECT_EQ(Write<CtpKey_T>(key), "NE=5,LP=||4294967295|,AP=0|0|");
}

TEST(PortByNEType, AsksForTheTypeOnlyWhereItMatters) {
    PortIndex port;
    port.neId = 5;
    EXPECT_EQ(Write<PortByNEType>(port, NS_UTIL::KnownNEType(1911)), "NE=5,SS=-1,SC=-1,PP=||-1|");
    EXPECT_EQ(Write<PortByNEType>(port, NS_UTIL::KnownNEType(1913)), "NE=5,PP=||-1|");
    EXPECT_EQ(Write<AsLogical<PortByNEType>>(port, Surroundings()), "NE=5,LP=||-1|");
    std::string fdn;
    EXPECT_THROW(WriteInto<PortByNEType>(port, fdn, Surroundings()), InterfaceNotExistException);
    EXPECT_EQ(fdn, "NE=5");
    port.subSlotId = 2;
    EXPECT_EQ(Write<PortByNEType>(port, Surroundings()), "NE=5,SS=2,SC=-1,PP=||-1|");
}

static_assert(Writable<PortIndex> && Writable<AsPhysical<CtpKey_T>> && Writable<RemoteMEP>);
static_assert(!Writable<LoopBackPort> && !Writable<GroupId> && !Writable<TunnelIndex>);

// ---- Answers of surroundings that throw -----------------------------------------------------------------------------

class Throwing : public Surroundings {
public:
    [[nodiscard]] int CarrierProfile() const override { throw 7; }
};

TEST(SurroundingsThatThrow, LeaveWhatWasWritten) {
    PortIndex port;
    port.neId = 5;
    std::string fdn = "before";
    EXPECT_THROW(WriteInto<PortIndex>(port, fdn, Throwing()), int);
    EXPECT_EQ(fdn, "NE=5");
}

TEST(SurroundingsThatThrow, LeaveTheKeyWithoutAPort) {
    CtpKey_T key;
    EXPECT_THROW(ReadInto<CtpKey_T>("NE=5,PP=16||2|,SUBIF=4", key, Throwing()), int);
    EXPECT_EQ(key.port.neId, -1) << "the next call reads the port again";
}

}  // namespace
