#include "formats/recordline.h"

#include <gmock/gmock.h>

namespace NS_KX {
namespace {

std::string Written(std::string_view line) {
    RecordLine record;
    record.Read(line);
    std::string fdn;
    record.GetKind().write(record.Record(), fdn, NS_UTIL::Surroundings::OfSystem());
    return fdn;
}

std::string Complaint(std::string_view line) {
    try {
        return "no complaint: " + Written(line);
    } catch (const BadRecord& bad) {
        return bad.what();
    }
}

TEST(RecordLine, WritesTheIdentifierOfTheRecord) {
    EXPECT_EQ(Written(R"({"fdn":"x","type":"NEIndex","record":{"reserved":0,"neId":7}})"), "NE=7");
}

TEST(RecordLine, MembersMayComeInAnyOrder) {
    EXPECT_EQ(Written(R"( { "record" : { "neId" : -7 , "reserved" : 0 } , "type" : "NEIndex" } )"), "NE=-7");
}

TEST(RecordLine, ARecordInARecordHasFieldsOfItsOwn) {
    EXPECT_EQ(Written(R"({"type":"CtpKey_T","record":{"neId":1,"vrId":0,"apValue1":4,"apValue2":5,"apText":"",)"
                      R"("port":{"reserved":0,"reserved2":0,"neId":2,"shelfId":-1,"slotId":-1,"subSlotId":-1,)"
                      R"("portId":7,"ppType":16,"fbType":0,"portLabel":"a\u0062","isLogical":true,)"
                      R"("reservedFlag":false,"reservedValue":0},"fbType":0,"subIfId":0,"fdnText":""}})"),
              "NE=2,LP=16||7|ab,AP=4|5|");
}

TEST(RecordLine, ARecordMayComeBeforeItsType) {
    EXPECT_EQ(Written(R"({"record":{"neId":-7,"reserved":0},"fdn":"x","type":"NEIndex"})"), "NE=-7");
    EXPECT_EQ(Complaint(R"({"record":{"neId":-7,"reserved":0,"x":1},"type":"NEIndex"})"), "unknown field \"x\"");
}

TEST(RecordLine, NamesMayBeEscaped) {
    EXPECT_EQ(Written(R"({"\u0074ype":"NE\u0049ndex","record":{"reserve\u0064":0,"\u006eeId":7}})"), "NE=7");
}

TEST(RecordLine, GivesTheIdentifierBesideTheRecord) {
    RecordLine record;
    record.Read(R"({"fdn":"NE=\u0037","type":"NEIndex","record":{"reserved":0,"neId":7}})");
    EXPECT_EQ(record.Fdn(), "NE=7");
    record.Read(R"({"type":"NEIndex","record":{"reserved":0,"neId":7}})");
    EXPECT_EQ(record.Fdn().data(), nullptr);
}

TEST(RecordLine, RefusesWhatIsNoJson) {
    for (const char* const line :
         {R"({"type":})", R"({"type":"NEIndex","record":{"reserved":0,"neId":7}} x)",
          R"({"type":"NEIndex","record":{"reserved":0,"neId":7}}})",
          R"({"type":"NEIndex","record":{"reserved":0,"neId":7})",
          R"({"type":"NEIndex","record":{"reserved":0,"neId":7,}})",
          R"({"type":"NEIndex","record":{"reserved":0 "neId":7}})",
          R"({"type":"NEIndex" "record":{"reserved":0,"neId":7}})",
          R"({"type":"NEIndex","record":{"reserved":0,"neId":07}})",
          R"({"type":"NEIndex","record":{"reserved":0,"neId":7x}})", R"({'type':"NEIndex"})", "  ", "", "{",
          "{\"type\":\"\xff\"}", "{\"type\":\"a character that is cut off: \xf0",
          "{\"type\":\"NEIndex\",\"record\":{\"reserved\":0,\"neId\":7\t}}\x01"}) {
        EXPECT_THAT(Complaint(line), testing::Not(testing::StartsWith("no complaint"))) << line;
    }
}

TEST(RecordLine, MembersOfTheLineMustBeThereAndKnown) {
    EXPECT_EQ(Complaint(R"({"record":{}})"), "\"type\" is missing");
    EXPECT_EQ(Complaint(R"({"type":"NEIndex"})"), "\"record\" is missing");
    EXPECT_EQ(Complaint(R"({"type":"NEIndex","type":"NEIndex"})"), "\"type\" is there twice");
    EXPECT_EQ(Complaint(R"({"kind":"NEIndex"})"), "unknown member \"kind\"");
    EXPECT_EQ(Complaint(R"({"type":1})"), "\"type\" is not a text");
    EXPECT_EQ(Complaint(R"({"record":1})"), "\"record\" is not an object");
    EXPECT_EQ(Complaint(R"({"type":"NoIndex"})"), "unknown type \"NoIndex\"");
    EXPECT_EQ(Complaint(R"({"other":{}})"), "unknown member \"other\"");
    EXPECT_EQ(Complaint(R"({"record":{},"record":{}})"), "\"record\" is there twice");
    EXPECT_EQ(Complaint("7"), "not an object");
    EXPECT_EQ(Complaint("[]"), "not an object");
}

TEST(RecordLine, FieldsMustBeThereAndKnown) {
    EXPECT_EQ(Complaint(R"({"type":"NEIndex","record":{"reserved":0,"neId":7,"x":1}})"), "unknown field \"x\"");
    EXPECT_EQ(Complaint(R"({"type":"NEIndex","record":{"reserved":0,"neId":7,"neId":7}})"),
              "field \"neId\" is there twice");
    EXPECT_EQ(Complaint(R"({"type":"NEIndex","record":{"reserved":0,"neId":7,"port":{"neId":7}}})"),
              "unknown field \"port\"");
    EXPECT_EQ(Complaint(R"({"type":"NEIndex","record":{"a":{"b":{}}}})"), "unknown field \"a\"");
}

TEST(RecordLine, AMissingFieldMeansThatNothingIsKnown) {
    EXPECT_EQ(Written(R"({"type":"NEIndex","record":{"neId":7}})"), "NE=7");
    EXPECT_EQ(Written(R"({"type":"PortIndex","record":{"neId":7,"portId":2,"ppType":16}})"), "NE=7,PP=16||2|");
    EXPECT_EQ(Written(R"({"type":"CtpKey_T","record":{"apValue1":4,"port":{"neId":2,"portId":7}}})"),
              "NE=2,PP=||7|,AP=4|0|");
    EXPECT_EQ(Written(R"({"type":"NEID","record":{"neId":7}})"), "NE=7");
}

TEST(RecordLine, TheFieldThatSaysWhatIsNamedMustBeThere) {
    EXPECT_EQ(Complaint(R"({"type":"NEIndex","record":{}})"), "field \"neId\" is missing");
    EXPECT_EQ(Complaint(R"({"type":"PortIndex","record":{"portId":7}})"), "field \"neId\" is missing");
    EXPECT_EQ(Complaint(R"({"type":"CtpKey_T","record":{"neId":7}})"), "field \"port.neId\" is missing");
    EXPECT_EQ(Complaint(R"({"type":"GroupID","record":{}})"), "field \"groupId\" is missing");
    EXPECT_EQ(Complaint(R"({"type":"PWTrailIndex","record":{"container":"NE=1,"}})"),
              "field \"trailResId\" is missing");
}

TEST(RecordLine, ALineWithoutATypeIsOfTheUsualOne) {
    RecordLine record(FindKindByType("NEIndex"));
    record.Read(R"({"record":{"neId":7}})");
    EXPECT_EQ(record.GetKind().type, "NEIndex");
    record.Read(R"({"type":"OSIndex","record":{"osId":7}})");
    EXPECT_EQ(record.GetKind().type, "OSIndex");
}

TEST(RecordLine, FieldsMustFit) {
    const auto complaint = [](const std::string& value) {
        return Complaint(R"({"type":"NEIndex","record":{"reserved":0,"neId":)" + value + "}}");
    };
    EXPECT_EQ(complaint("2147483648"), "field \"neId\" is not from -2147483648 to 2147483647: 2147483648");
    EXPECT_EQ(complaint("-2147483649"), "field \"neId\" is not from -2147483648 to 2147483647: -2147483649");
    EXPECT_EQ(complaint("99999999999999999999"), "field \"neId\" is not a whole number of 32 bits");
    EXPECT_EQ(complaint("1.5"), "field \"neId\" is not a whole number of 32 bits");
    EXPECT_EQ(complaint("\"1\""), "field \"neId\" is not a whole number of 32 bits");
    EXPECT_EQ(complaint("null"), "field \"neId\" is not a whole number of 32 bits");
    EXPECT_EQ(complaint("true"), "field \"neId\" is not a whole number of 32 bits");
    EXPECT_EQ(complaint("-2147483648"), "no complaint: NE=-2147483648");
}

TEST(RecordLine, TextsThatWouldNotStayOneLineAreRefused) {
    const auto complaint = [](const std::string& label) {
        return Complaint(
            R"({"type":"PortIndex","record":{"reserved":0,"reserved2":0,"neId":1,"shelfId":-1,"slotId":-1,)"
            R"("subSlotId":-1,"portId":1,"ppType":0,"fbType":0,"portLabel":")" +
            label + R"(","isLogical":false,"reservedFlag":false,"reservedValue":0}})");
    };
    EXPECT_EQ(complaint("a\\nb"), "field \"portLabel\" holds a line end or NUL");
    EXPECT_EQ(complaint("a\\rb"), "field \"portLabel\" holds a line end or NUL");
    EXPECT_EQ(complaint("a\\u0000b"), "field \"portLabel\" holds a line end or NUL");
    EXPECT_EQ(complaint("a\\tb"), "no complaint: NE=1,PP=||1|a\tb");
    EXPECT_EQ(complaint("a\\ude00b"), "field \"portLabel\" holds an escape that is no character");
    EXPECT_EQ(complaint("\\ud83d\\ude00"), "no complaint: NE=1,PP=||1|\xf0\x9f\x98\x80");
}

TEST(RecordLine, FarTooDeepOrTooManyMembersAreRefusedAtOnce) {
    std::string line = R"({"type":"NEIndex","record":{)";
    for (int field = 0; field < 1000; ++field) {
        line += "\"x" + std::to_string(field) + "\":0,";
    }
    EXPECT_EQ(Complaint(line + "\"y\":0}}"), "unknown field \"x0\"");
    EXPECT_EQ(Complaint(std::string(1'000'000, '[')), "not an object");
}

}  // namespace
}  // namespace NS_KX
