#include "formats/recordformat.h"

#include <algorithm>

#include <gtest/gtest.h>

#include <kx_domain_util/processexception.h>

namespace NS_KX {
namespace {

std::string AsJson(const std::string& fdn) {
    TextBuffer out;
    MakeFormat(FormatOptions{}, NS_UTIL::Surroundings::OfSystem())->Write(fdn, *FindKind(fdn), out);
    return std::string(out.View());
}

TEST(RecordFormat, AJsonLineHasTheFieldsOfTheRecord) {
    EXPECT_EQ(AsJson("NE=12,FR=1,S=3,CP=-1,PP=16||7|GE"),
              R"({"fdn":"NE=12,FR=1,S=3,CP=-1,PP=16||7|GE","type":"PortIndex","record":{"reserved":0,"reserved2":0,)"
              R"("neId":12,"shelfId":1,"slotId":3,"subSlotId":-1,"portId":7,"ppType":16,"fbType":0,"portLabel":"GE",)"
              R"("isLogical":false,"reservedFlag":false,"reservedValue":0}})"
              "\n");
}

TEST(RecordFormat, ARecordInARecordIsAnObjectOfItsOwn) {
    const std::string json = AsJson("NE=5,LP=16||2|,AP=1|2|9");
    EXPECT_NE(json.find(R"("apText":"2","port":{"reserved":0,"reserved2":0,"neId":5,)"), std::string::npos) << json;
    EXPECT_NE(json.find(R"("reservedValue":0},"fbType":0,"subIfId":9,"fdnText":"NE=5,LP=16||2|,AP=1|2|9"}})"),
              std::string::npos)
        << json;
}

TEST(RecordFormat, TextsAreEscapedForJson) {
    EXPECT_NE(AsJson("PP=||1|a\"b\\c\td").find(R"("portLabel":"a\"b\\c\td")"), std::string::npos);
    EXPECT_NE(AsJson("PP=||1|K\xc3\xb6ln").find("\"portLabel\":\"K\xc3\xb6ln\""), std::string::npos);
}

TEST(RecordFormat, WhatCannotBeReadLeavesTheOutputAsItWas) {
    for (const OutputFormat format : {OutputFormat::JSONL, OutputFormat::CSV, OutputFormat::TSV, OutputFormat::TABLE}) {
        FormatOptions options;
        options.format = format;
        options.kinds = AllKinds();
        const auto writer = MakeFormat(options, NS_UTIL::Surroundings::OfSystem());
        TextBuffer out;
        Append(out, "before\n");
        const Kind* const needsConfiguration = FindKindByType("PortIndex:LoopBack");
        EXPECT_THROW(writer->Write("NE=5,PP=16||1|a", *needsConfiguration, out), NS_UTIL::InterfaceNotExistException);
        EXPECT_EQ(out.View(), "before\n");
        writer->Write("NE=5", *FindKind("NE=5"), out);
        EXPECT_EQ(std::count(out.View().begin(), out.View().end(), '\n'), 2) << "the format can still write";
    }
}

TEST(RecordFormat, JsonLinesHaveNoHeader) {
    EXPECT_EQ(MakeHeader(FormatOptions{}), "");
}

}  // namespace
}  // namespace NS_KX
