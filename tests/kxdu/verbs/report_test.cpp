#include "kxdu/program.h"

namespace NS_KX::NS_KXDU {
namespace {

class ReportTest : public ProgramTest {
protected:
    // What the page of `fdns` holds as data.
    [[nodiscard]] std::string DataOf(const std::string& fdns, const std::string& options = {}) const {
        const Ended ended = Shell("kxdu report --levels-only " + options, fdns);
        EXPECT_EQ(ended.code, 0) << ended.err;
        constexpr std::string_view BEGIN = "<script id=\"data\" type=\"application/json\">\n";
        const auto begin = ended.out.find(BEGIN) + BEGIN.size();
        return ended.out.substr(begin, ended.out.find("\n</script>", begin) - begin);
    }

    static bool Holds(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }
};

TEST_F(ReportTest, IsOnePageWithoutReferences) {
    const Ended ended = Shell("kxdu report --levels-only -o report.html && cat report.html", "NE=1\n");
    EXPECT_EQ(ended.code, 0);
    EXPECT_TRUE(ended.out.starts_with("<!DOCTYPE html>")) << ended.out.substr(0, 100);
    EXPECT_TRUE(ended.out.ends_with("</html>\n"));
    EXPECT_FALSE(Holds(ended.out, "{{"));
    for (const char* const reference : {" src=", "<link", "@import", "url("}) {
        EXPECT_FALSE(Holds(ended.out, reference)) << reference;
    }
}

TEST_F(ReportTest, IdentifiersShareLevelsWithTheOneBefore) {
    const std::string data = DataOf("NE=7,FR=1\nNE=7,FR=1,S=2\nNE=8\nNE=7,FR=1,XY=3\nNE=7\nOS=1\n");
    EXPECT_TRUE(Holds(data, R"("nes":[[7,-1,4,0,1],[8,-1,1,0,0]])")) << data;
    EXPECT_TRUE(Holds(data, R"("identifiers":["EANE=7,FR=1\nFBFR=1,S=2\n!-ANE=7,FR=1,XY=3\nDANE=7","DANE=8"])") ||
                Holds(data, R"(\n!-ANE=7,FR=1,XY=3\nDANE=7","DANE=8"])"))
        << data;
}

TEST_F(ReportTest, NothingInAnIdentifierEndsTheScript) {
    const std::string data = DataOf("NE=1,FR=1,S=1,CP=-1,PP=||1|</script><script>alert(1)</script>\nNE=1,<!--=\"\\\n");
    EXPECT_FALSE(Holds(data, "<"));
    EXPECT_TRUE(Holds(data, R"(PP=||1|\u003C/script>\u003Cscript>alert(1)\u003C/script>)")) << data;
}

TEST_F(ReportTest, NumbersAreThoseOfStats) {
    const std::string fdns = "NE=1\nNE=1,PP=16|810|1|\nNE=2,PP=16||1|\nNE=2,XY=3\n\n";
    const std::string data = DataOf(fdns);
    EXPECT_TRUE(Holds(data, R"("total":{"lines":5,"nes":2,"ports":2,"problemLines":2})")) << data;
    EXPECT_TRUE(Holds(data, R"("kind":[[null,null,2],["port",null,2],["ne",null,1]])")) << data;
    EXPECT_TRUE(Holds(data, R"("level":[[null,null,1],["12313","OTU1",1]])")) << data;
    EXPECT_TRUE(Holds(data, R"(["unknown tag",1,[["<stdin>:4:6","unknown tag \"XY\""]]])") ||
                Holds(data, R"(["unknown tag",1,[["\u003Cstdin>:4:6","unknown tag \"XY\""]]])"))
        << data;
    EXPECT_EQ(Shell("kxdu stats --levels-only --by total,kind --format csv", fdns).out,
              "by,value,name,count,place,text\n"
              "total,lines,,5,,\ntotal,different NEs,,2,,\ntotal,lines with a problem,,2,,\n"
              "kind,,,2,,\nkind,port,,2,,\nkind,ne,,1,,\n");
}

TEST_F(ReportTest, AlarmsAreCountedByIdentifier) {
    const std::string expected = R"("total":3,"unread":1,"nes":[[1,[["NE=1,FR=1",2]]]]})";
    WriteFile("a.tsv", "major\tNE=1,FR=1\nminor\tNE=1,FR=1\nno identifier\n");
    EXPECT_TRUE(Holds(DataOf("NE=1\n", "--alarms a.tsv --alarm-fdn 1"), expected));
    WriteFile("a.csv", "major;\"NE=1,FR=1\"\nminor;\"NE=1,FR=1\"\n\n");
    EXPECT_TRUE(Holds(DataOf("NE=1\n", "--alarms a.csv --alarm-fdn 1 --alarm-delimiter ';'"), expected));
    WriteFile("a.jsonl", "{\"fdn\":\"NE=1,FR=1\"}\n{\"id\":1,\"fdn\":\"NE=1,FR=1\"}\n{\"fdn\":\n");
    EXPECT_TRUE(Holds(DataOf("NE=1\n", "--alarms a.jsonl --alarm-fdn fdn"), expected));
}

TEST_F(ReportTest, SaysThatThereIsNoNe) {
    const std::string none = "kxdu: no identifier is of an NE, so the page shows none\n";
    for (const char* const fdns : {"", "OS=1\n", "NE=abc\nNE=\n"}) {
        const Ended ended = Shell("kxdu report --levels-only -o report.html", fdns);
        EXPECT_EQ(ended.code, 0);
        EXPECT_EQ(ended.err, none) << fdns;
    }
    EXPECT_EQ(Shell("kxdu report --levels-only -o report.html", "NE=0\n").err, "");
    EXPECT_EQ(Shell("kxdu report --levels-only --ne 2 -o report.html", "NE=1\n").err,
              "kxdu: no identifier is of an NE that --ne names\n");
}

TEST_F(ReportTest, AnNeWhoseNumberIsNoneIsNotDrawn) {
    const std::string data = DataOf("NE=abc\nNE=7x,FR=1\nNE=,FR=1\nNE=8\n");
    EXPECT_TRUE(Holds(data, R"("nes":[[8,-1,1,0,0]])")) << data;
    EXPECT_TRUE(Holds(data, R"("total":{"lines":4,"nes":1,)")) << data;
}

TEST_F(ReportTest, SaysThatNoAlarmHasAnIdentifier) {
    WriteFile("a.tsv", "major\tNE=1,FR=1\n");
    const Ended ended = Shell("kxdu report --levels-only --alarms a.tsv --alarm-fdn 0 -o report.html", "NE=1\n");
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(
        ended.err,
        "kxdu: a.tsv: no line has the identifier of an NE in \"0\", the field or member that --alarm-fdn names\n");
}

TEST_F(ReportTest, QuotesBetweenTabsBelongToTheIdentifier) {
    WriteFile("a.tsv", "NE=1,PP=||1|say \"hello\"\t7\n");
    EXPECT_TRUE(Holds(DataOf("NE=1\n", "--alarms a.tsv --alarm-fdn 0"), R"([["NE=1,PP=||1|say \"hello\"",1]])"));
}

TEST_F(ReportTest, ChosenNesAreShownAlone) {
    WriteFile("a.tsv", "NE=1\nNE=2\nnone\n");
    const std::string data = DataOf("NE=1\nNE=2\nNE=3,XY=1\n", "--ne 2 --alarms a.tsv --alarm-fdn 0");
    EXPECT_TRUE(Holds(data, R"("nes":[[2,-1,1,0,0]])")) << data;
    EXPECT_TRUE(Holds(data, R"("problems":[])"));
    EXPECT_TRUE(Holds(data, R"("total":1,"unread":0,"nes":[[2,[["NE=2",1]]]])"));
}

TEST_F(ReportTest, TooLargeNetworksAskForAChoice) {
    const Ended ended = Shell("yes NE=1,FR=1 | head -500001 | kxdu report --levels-only -o report.html");
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.err,
              "kxdu: the network is too large for one page, which holds 500000 identifiers and 32 MiB of them; choose "
              "NEs with --ne, such as --ne 1-2000\n");
    EXPECT_FALSE(std::filesystem::exists(folder / "report.html"));
}

TEST_F(ReportTest, RefusesWhatItCannotUse) {
    WriteFile("a.fdn", "NE=1\n");
    EXPECT_EQ(Shell("kxdu report a.fdn --alarms a.fdn -o x").err,
              "kxdu: --alarms needs the place of the identifier: name it with --alarm-fdn FIELD\n");
    EXPECT_EQ(Shell("kxdu report a.fdn --alarm-fdn 1 -o x").err,
              "kxdu: --alarm-fdn needs a file of alarms: name it with --alarms FILE\n");
    EXPECT_EQ(Shell("kxdu report a.fdn -o a.fdn").code, 2) << "an input must not become its own report";
    EXPECT_EQ(Shell("kxdu report a.fdn --alarms missing --alarm-fdn 1 -o x").code, 2);
    EXPECT_FALSE(std::filesystem::exists(folder / "x"));
}

}  // namespace
}  // namespace NS_KX::NS_KXDU
