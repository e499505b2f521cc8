#include "catalogue/explanation.h"

#include <gmock/gmock.h>

#include "catalogue/levelcheck.h"
#include "sample/sampleinventoryservice.h"
#include "sample/samplenetwork.h"

using namespace NS_KX;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

namespace {

Explanation ExplainFdn(const std::string& fdn, const DescribeNe& describeNe = {}) {
    return Explain(fdn, FindKind(fdn), NS_UTIL::Surroundings::OfSystem(), describeNe);
}

// "text in the identifier: meaning"; a part with a caveat ends in " !".
std::vector<std::string> PartsOf(const std::string& fdn) {
    std::vector<std::string> texts;
    for (const ExplainedPart& part : ExplainFdn(fdn).parts) {
        texts.push_back(fdn.substr(part.begin, part.size) + ": " + part.meaning + (part.caveat.empty() ? "" : " !"));
    }
    return texts;
}

std::string ValueOf(const Explanation& explanation, const std::string& name) {
    for (const FieldValue& field : explanation.fields) {
        if (field.name == name) {
            return field.value + (field.isKnown ? "" : " unknown");
        }
    }
    return "no such field";
}

}  // namespace

TEST(Explain, NamesEachLevelAndSubValue) {
    EXPECT_THAT(PartsOf("NE=12,FR=1,S=3,CP=-1,SS=-1,SC=-1,PP=16|1025|7|GE0/7"),
                ElementsAre("12: network element 12", "1: shelf 1", "3: slot 3", "-1: card -1 (always -1)",
                            "-1: sub-slot -1 (none)", "-1: card in the sub-slot -1 (always -1)", "PP: physical port",
                            "16: PP type 16", "1025: FB type 1025", "7: port number 7", "GE0/7: port name \"GE0/7\""));
}

TEST(Explain, TellsWhatEmptyAndSpecialSubValuesMean) {
    EXPECT_THAT(
        PartsOf("NE=1,LP=||4294967295|"),
        ElementsAre("1: network element 1", "LP: logical port", ": PP type: none, or a port identified by its name",
                    ": FB type: none", "4294967295: port number 4294967295 (none)", ": port name: none"));
}

TEST(Explain, NamesFbTypes) {
    EXPECT_THAT(PartsOf("PP=1|4151|1|"), testing::Contains("4151: FB type 4151 (LAG)"));
    EXPECT_THAT(PartsOf("LP=|65547|1|"), testing::Contains("65547: FB type 65547 (a logical port)"));
}

TEST(Explain, NamesServicesTunnelsAndTrails) {
    EXPECT_THAT(PartsOf("NE=1,PWE3=3|17"), ElementsAre("1: network element 1", "PWE3: pseudo-wire service",
                                                       "3: service type 3", "17: service number 17"));
    EXPECT_THAT(PartsOf("TUNNEL=1|2|a||3|c|4"),
                ElementsAre("TUNNEL: tunnel", "1: tunnelInt0 1", "2: tunnelInt1 2", "a: tunnelText2 \"a\"",
                            ": tunnelText3: none", "3: tunnelInt4 3", "c: tunnelText5 \"c\"", "4: tunnelInt6 4"));
    EXPECT_THAT(PartsOf("NE=1,PWTRAIL=a|b"), ElementsAre("1: network element 1", "a|b: pseudo-wire trail \"a|b\""));
    EXPECT_THAT(PartsOf("NE=1,VEGROUP=4"), ElementsAre("1: network element 1", "4: group 4"));
}

TEST(Explain, NamesMaintenanceLevels) {
    EXPECT_THAT(PartsOf("NE=1,MD=3|md1,MA=|ma1,MEP=7"),
                ElementsAre("1: network element 1", "MD: maintenance domain", "3: MD number 3", "md1: name \"md1\"",
                            "MA: maintenance association", ": MA number: left out on this NE, or none",
                            "ma1: name \"ma1\"", "7: maintenance end point 7"));
    EXPECT_THAT(PartsOf("MIP=0|m"),
                ElementsAre("MIP: maintenance intermediate point", "0: MIP number 0 (none)", "m: name \"m\""));
}

TEST(Explain, ShowsTheRecordsOfMaintenancePoints) {
    const Explanation explanation = ExplainFdn("NE=1,MD=3|md1,MA=4|ma1,MEP=7");
    EXPECT_EQ(explanation.type, "MEPIndex");
    EXPECT_EQ(ValueOf(explanation, "mdName"), "\"md1\"");
    EXPECT_EQ(ValueOf(explanation, "mepId"), "7");
}

TEST(Explain, KnowsTheRestOfAnEscapedName) {
    EXPECT_THAT(PartsOf("PP=|1025|7|a\\|b"), testing::Contains("b: rest of the name, after an escaped |: \"b\""));
}

TEST(Explain, PutsEachProblemToThePartThatItIsAbout) {
    EXPECT_THAT(PartsOf("NE=1,NE=2,FOO=3,,S="), ElementsAre("1: network element 1", "2: network element 2 !",
                                                            "FOO: level \"FOO\" !", ": level \"\" !", ": slot !"));
    EXPECT_THAT(PartsOf("NE=1,PP=x|1025|7|a|b"),
                ElementsAre("1: network element 1", "PP: physical port", "x: PP type \"x\", read as 0 !",
                            "1025: FB type 1025", "7: port number 7", "a: port name \"a\"", "b: sub-value \"b\" !"));
}

TEST(Explain, OfALevelThatIsNotReadNamesNoSubValues) {
    for (const auto& [fdn, meaning] :
         std::initializer_list<std::pair<const char*, const char*>>{{"PP=16||2", "16||2: physical port"},
                                                                    {"LP=x", "x: logical port"},
                                                                    {"AP=1|2", "1|2: access point"},
                                                                    {"PWE3=3", "3: pseudo-wire service"},
                                                                    {"TUNNEL=1|2|a|b|3|c", "1|2|a|b|3|c: tunnel"}}) {
        EXPECT_THAT(PartsOf("NE=1," + std::string(fdn)),
                    ElementsAre("1: network element 1", std::string(meaning) + ", of which no sub-value is read !"));
    }
    EXPECT_EQ(ValueOf(ExplainFdn("NE=1,PP=16||2"), "portId"), "-1 unknown");
    EXPECT_THAT(PartsOf("MD=3"), ElementsAre("MD: maintenance domain", "3: MD number 3 !")) << "this one is read";
}

TEST(Explain, QuotesWhatIsNoNumberWhereOneBelongs) {
    EXPECT_THAT(PartsOf("NE=1 ,S=-2"), ElementsAre("1 : network element \"1 \", read as 1 !", "-2: slot -2"));
}

TEST(Explain, TellsOfProblemsInTheWordsOfTheCheck) {
    std::string problems;
    CheckLevels("NE=9x", [&](const Problem& problem) { problems += problem.text; });
    EXPECT_NE(problems, "");
    EXPECT_EQ(ExplainFdn("NE=9x").parts.at(0).caveat, problems);
}

TEST(Explain, AsksForTheQuotesWhereAShellMayHaveCutTheRest) {
    EXPECT_EQ(ExplainFdn("NE=1,PP=16").parts.back().caveat, "PP has 1 sub-value, not 4 (was it in quotes?)");
    EXPECT_EQ(ExplainFdn("NE=1,LP=").parts.back().caveat, "LP has no value (was it in quotes?)");
    EXPECT_EQ(ExplainFdn("NE=1,PP=16|").parts.back().caveat, "PP has 2 sub-values, not 4");
    EXPECT_EQ(ExplainFdn("NE=1,S=").parts.back().caveat, "S has no value");
}

TEST(Explain, ShowsTheRecordThatIsRead) {
    const Explanation explanation = ExplainFdn("NE=12,PP=|1025|7|GE0/7");
    EXPECT_EQ(explanation.type, "PortIndex");
    EXPECT_EQ(ValueOf(explanation, "neId"), "12");
    EXPECT_EQ(ValueOf(explanation, "ppType"), "251");
    EXPECT_EQ(ValueOf(explanation, "portLabel"), "\"GE0/7\"");
    EXPECT_EQ(ValueOf(explanation, "slotId"), "-1 unknown");
    EXPECT_EQ(ValueOf(explanation, "reserved"), "no such field");
}

TEST(Explain, NamesTheFieldsOfANestedRecord) {
    EXPECT_EQ(ValueOf(ExplainFdn("NE=1,PP=4||2|,AP=1|2|3"), "port.portId"), "2");
}

TEST(Explain, SaysWhetherTheIdentifierIsCanonical) {
    EXPECT_TRUE(ExplainFdn("NE=12,FR=1").isCanonical);
    EXPECT_THAT(ExplainFdn("NE=12,FR=1").notes, IsEmpty());
    const Explanation other = ExplainFdn("NE=0012,FR=1");
    EXPECT_FALSE(other.isCanonical);
    EXPECT_THAT(other.notes, ElementsAre("what was read would be written as NE=12,FR=1"));
}

TEST(Explain, SaysWhatIsReadFromNumbersOfOtherCharactersOrSizes) {
    EXPECT_THAT(PartsOf("NE=9x,FR=99999999999"), ElementsAre("9x: network element \"9x\", read as 9 !",
                                                             "99999999999: shelf 99999999999, read as "
                                                             "1215752191 !"));
}

TEST(Explain, RemarksThatEndPointsAreReadByPosition) {
    const std::string byPosition =
        "read by position: the four levels are the NE, the MD, the MA and the end point, whatever their tags";
    EXPECT_THAT(ExplainFdn("NE=1,MD=|md1,MA=4|ma1,MEP=7").remarks, Contains(byPosition));
    EXPECT_THAT(ExplainFdn("NE=1,MA=4|ma1,MD=|md1,RMEP=7").remarks, Contains(byPosition));
    EXPECT_THAT(ExplainFdn("NE=1,MD=3|md1").remarks, Not(Contains(byPosition)));
}

TEST(Explain, RemarksThatAReaderDropsACharacter) {
    EXPECT_THAT(
        ExplainFdn("NE=1,MD=abc,MA=0|ma,MEP=7").remarks,
        IsSupersetOf({std::string("MD is read as 0; the library's reader then drops the first character and takes "
                                  "the rest as the name, \"bc\""),
                      std::string("MA is read as 0; the library's reader then drops the first character and takes "
                                  "the rest as the name, \"|ma\"; kxdu takes what follows the \"|\"")}));
    EXPECT_EQ(ValueOf(ExplainFdn("NE=1,MD=abc,MA=0|ma,MEP=7"), "mdName"), "\"bc\"");
    EXPECT_EQ(ValueOf(ExplainFdn("NE=1,MD=abc,MA=0|ma,MEP=7"), "maName"), "\"ma\"");
    EXPECT_THAT(ExplainFdn("NE=1,MD=|md1,MA=4|ma1,MEP=7").remarks, Not(Contains(HasSubstr("drops"))))
        << "the separator of an absent number";
    EXPECT_THAT(ExplainFdn("NE=1,PP=|1025|7|a\\|b").remarks,
                ElementsAre("the reader drops the backslash from the port name: \"a|b\""));
    EXPECT_THAT(ExplainFdn("NE=1,PP=|1025|7|a\\|b,AP=1|2|").remarks, ElementsAre(HasSubstr("\"a|b\"")));
}

TEST(Explain, RemarksThatAChannelSetIsReadByPosition) {
    EXPECT_THAT(
        ExplainFdn("NE=5,PP=16||1|,CHANNELSET=4").remarks,
        ElementsAre("the reader cuts the text by position and reads the channel set from \"NE=5,PP=16AP=||10004\""));
    EXPECT_THAT(ExplainFdn("NE=5,PP=1||1|,CHANNELSET=4").remarks, IsEmpty());
}

TEST(Explain, ShowsMdAndMaWithAndWithoutNumbers) {
    EXPECT_THAT(ExplainFdn("NE=1,MD=3|md1,MA=4|ma1").remarks,
                ElementsAre("on NEs that write the numbers of MD and MA: NE=1,MD=3|md1,MA=4|ma1",
                            "on NEs that leave out the numbers of MD and MA: NE=1,MD=|md1,MA=|ma1"));
    EXPECT_THAT(ExplainFdn("NE=1,FR=3").remarks, IsEmpty());
    EXPECT_THAT(ExplainFdn("NE=1,FR=1,S=3,CP=-1").remarks, IsEmpty());
}

TEST(Explain, NamesTheReasonWhyItIsWrittenDifferently) {
    class Inventory : public NS_UTIL::Surroundings {
        unsigned short NEType(int) const override { return 1912; }
    };
    const std::string card = "NE=1,FR=1,S=3,CP=-1";
    EXPECT_THAT(
        Explain(card, FindKind(card), Inventory()).notes,
        ElementsAre("what was read would be written as NE=1,FR=1,S=3,CP=-1,SS=-1,SC=-1, since NE 1 is of NE type "
                    "1912"));
}

TEST(Explain, WithoutAnInventorySaysWhatItCannotTell) {
    const Explanation explanation = ExplainFdn("NE=12,FR=1,S=3,CP=-1");
    EXPECT_FALSE(explanation.isCanonical);
    EXPECT_THAT(explanation.notes, ElementsAre("not compared with what the library writes: that depends on the NE, "
                                               "and there is no inventory"));
}

TEST(Explain, SaysWhatIsKnownOfTheNe) {
    const SampleNetwork network(1);
    const SampleInventoryService service(network);
    const auto describe = [](std::int32_t neId) { return neId == 1 ? std::string(": in the hall") : std::string(); };
    EXPECT_EQ(ExplainFdn("NE=1", describe).parts.at(0).meaning, "network element 1: in the hall");
    EXPECT_EQ(ExplainFdn("NE=2", describe).parts.at(0).meaning, "network element 2");
    EXPECT_THAT(ExplainFdn("NE=1,FR=1,S=3,CP=-1,PP=16||1|", describe).notes, IsEmpty());
}

TEST(Explain, NotesWhatNothingReads) {
    EXPECT_EQ(ExplainFdn("NE=1,FOO=2").type, "");
    EXPECT_THAT(ExplainFdn("NE=1,FOO=2").notes, ElementsAre("no kind of identifier ends in the level \"FOO\""));
    EXPECT_THAT(ExplainFdn("").parts, IsEmpty());
    EXPECT_THAT(ExplainFdn("").notes, ElementsAre("the identifier is empty"));
    EXPECT_THAT(ExplainFdn("NE=1,FR=1,S=0,CP=-1,SS=-1,SC=-1,PP=16||0|").notes,
                ElementsAre("nothing is read: the identifier fills no field of its record"));
}

TEST(Explain, NotesBytesThatAreNotUtf8) {
    const Explanation explanation = ExplainFdn("NE=1,PP=||1|M\xFC");
    EXPECT_THAT(explanation.notes, ElementsAre("byte 14 is not UTF-8"));
    EXPECT_FALSE(explanation.isCanonical);
}

TEST(Explain, NotesLineEnds) {
    const Explanation explanation = ExplainFdn("NE=1,PP=||1|a\nb");
    EXPECT_THAT(explanation.notes,
                ElementsAre("byte 14 is a line end, so that no line of a file can be this identifier"));
    EXPECT_FALSE(explanation.isCanonical);
}
