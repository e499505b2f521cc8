#include "kxdu/program.h"

namespace NS_KX::NS_KXDU {
namespace {

class StatsTest : public ProgramTest {
protected:
    // An inventory that knows NE 1, of type 100 in the family OTN.
    void MakeInventory() const {
        std::filesystem::create_directory(folder / "csv");
        WriteFile("csv/ne_type.csv", "ne_type,name,ip_service,klv\n100,\"Plain, small\",0,0\n");
        WriteFile("csv/ne.csv", "ne_id,ne_type,multi_sub_shelf,oam_number_omitted\n1,100,0,0\n");
        WriteFile("csv/domain_member.csv", "cache,domain,ne_type\nEQUIPMENT_TYPE,OTN,100\n");
        ASSERT_EQ(Shell("kxdu inventory init n.db && kxdu inventory import n.db csv").code, 0);
    }
};

TEST_F(StatsTest, TableShowsEachCount) {
    WriteFile("a.fdn", "OS=1\nNE=1\nNE=1,PP=16|810|1|\nNE=2,PP=16||1|\nNE=2,XY=3\n");
    const Ended ended = Shell("kxdu stats --levels-only a.fdn");
    EXPECT_EQ(ended.out,
              "total                 count\n"
              "--------------------  -----\n"
              "lines                     5\n"
              "different NEs             2\n"
              "lines with a problem      1\n"
              "\n"
              "kind               lines\n"
              "-----------------  -----\n"
              "port                   2\n"
              "-                      1\n"
              "ne                     1\n"
              "management-system      1\n"
              "\n"
              "NE  NE type  lines\n"
              "--  -------  -----\n"
              " 1  -            2\n"
              " 2  -            2\n"
              " -  -            1\n"
              "\n"
              "FB type  name  lines\n"
              "-------  ----  -----\n"
              "      -  -         1\n"
              "    810  -         1\n"
              "\n"
              "level  rate  lines\n"
              "-----  ----  -----\n"
              "    -  -         1\n"
              "12313  OTU1      1\n"
              "\n"
              "problem      count  first\n"
              "-----------  -----  ---------------------------\n"
              "unknown tag      1  a.fdn:5:6: unknown tag \"XY\"\n");
    EXPECT_EQ(ended.err, "");
    EXPECT_EQ(ended.code, 1);
}

TEST_F(StatsTest, ProgramsGetOneRowForEachCount) {
    const std::string input = "NE=1\nNE=1,XY=3\n";
    EXPECT_EQ(Shell("kxdu stats --levels-only --by kind,problem --format csv", input).out,
              "by,value,name,count,place,text\n"
              "kind,,,1,,\n"
              "kind,ne,,1,,\n"
              "problem,unknown tag,,1,<stdin>:2:6,\"unknown tag \"\"XY\"\"\"\n");
    EXPECT_EQ(Shell("kxdu stats --levels-only --by ne --format jsonl", input).out,
              R"({"by":"ne","value":"1","name":null,"count":2,"place":null,"text":null})"
              "\n");
}

TEST_F(StatsTest, InventoryAddsTypesAndFamilies) {
    MakeInventory();
    EXPECT_EQ(
        Shell("kxdu stats --inventory n.db --by layer,family,ne-type,ne --format csv", "NE=1\nNE=1,FR=1\nNE=2\n").out,
        "by,value,name,count,place,text\n"
        "layer,,,2,,\n"
        "family,,,1,,\n"
        "family,OTN,,1,,\n"
        "ne-type,,,1,,\n"
        "ne-type,100,\"Plain, small\",1,,\n"
        "ne,1,\"Plain, small\",2,,\n"
        "ne,2,,1,,\n");
    const Ended ended = Shell("kxdu stats --by family", "NE=1\n");
    EXPECT_EQ(ended.code, 2);
    EXPECT_NE(ended.err.find("--by family needs an inventory: give one with --inventory FILE"), std::string::npos);
}

TEST_F(StatsTest, ProblemsAreThoseOfCheck) {
    MakeInventory();
    WriteFile("a.fdn", "NE=01\nNE=1,fr=2,S=\n\nNE=\xff\nN" + std::string(1, '\0') + "E=1\nNE=1,FR=1,S=3,CP=-1\n");
    const Ended check = Shell("kxdu check --inventory n.db a.fdn");
    const Ended stats = Shell("kxdu stats --inventory n.db --by problem --format csv a.fdn");
    EXPECT_EQ(check.err, "kxdu: 6 problems in 5 of 6 lines\n");
    EXPECT_EQ(stats.out,
              "by,value,name,count,place,text\n"
              "problem,NUL byte,,1,a.fdn:5:2,NUL byte\n"
              "problem,no value,,1,a.fdn:2:13,S has no value\n"
              "problem,not UTF-8,,1,a.fdn:4:4,not UTF-8\n"
              "problem,the line is empty,,1,a.fdn:3,the line is empty\n"
              "problem,lower-case letter in a tag,,1,a.fdn:2:6,\"lower-case letter in the tag \"\"fr\"\"\"\n"
              "problem,would be written differently,,1,a.fdn:1:4,\"would be written as \"\"NE=1\"\"\"\n");
}

TEST_F(StatsTest, FirstPlacesAreTheFirstOnesWithManyThreads) {
    std::string text;
    for (int line = 1; line <= 60'000; ++line) {
        text += line % 20'000 == 7 ? "NE=x\n" : "NE=1,FR=1\n";
    }
    WriteFile("a.fdn", text);
    EXPECT_EQ(Shell("kxdu stats -j 8 --levels-only --by total,problem --format csv a.fdn a.fdn").out,
              "by,value,name,count,place,text\n"
              "total,lines,,120000,,\n"
              "total,different NEs,,1,,\n"
              "total,lines with a problem,,6,,\n"
              "problem,not a decimal number,,6,a.fdn:7:4,\"NE is not a decimal number: \"\"x\"\"\"\n");
}

TEST_F(StatsTest, ChosenNesAreCountedAlone) {
    const std::string input = "OS=1\nNE=1\n\nNE=2,XY=1\nNE=3\nNE=4\n";
    EXPECT_EQ(Shell("kxdu stats --ne 1,3-9 --by ne,problem --format csv", input).out,
              "by,value,name,count,place,text\nne,1,,1,,\nne,3,,1,,\nne,4,,1,,\n");
    EXPECT_EQ(Shell("kxdu stats --ne 1-", input).code, 2);
}

TEST_F(StatsTest, SaysWhatOnlyAnInventoryCanJudge) {
    const Ended ended = Shell("kxdu stats --by problem", "NE=5,FR=1,S=3,CP=-1\nNE=5\n");
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err,
              "kxdu: 1 identifier is right on some NEs only, and there is no inventory to tell which; give one with "
              "--inventory FILE\n");
}

TEST_F(StatsTest, SaysThatNoLineIsOfTheChosenNes) {
    const Ended ended = Shell("kxdu stats --ne 7 --levels-only --by ne", "NE=5,FR=1\n");
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "kxdu: no identifier is of an NE that --ne names\n");
}

TEST_F(StatsTest, WithoutProblemsNoServiceIsUsed) {
    const Ended ended =
        Shell("kxdu stats --no-problems --by total,problem --format csv", "NE=x\nNE=5,FR=1,S=3,CP=-1\n");
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.err, "");
    EXPECT_EQ(ended.out,
              "by,value,name,count,place,text\ntotal,lines,,2,,\ntotal,different NEs,,1,,\ntotal,lines with a "
              "problem,,0,,\n");
}

TEST_F(StatsTest, LongTablesAreCutUnlessAsked) {
    std::string input;
    for (int ne = 1; ne <= 12; ++ne) {
        input += "NE=" + std::to_string(ne) + "\n";
    }
    EXPECT_NE(Shell("kxdu stats", input).out.find("\nand 2 more; --by ne shows all\n"), std::string::npos);
    EXPECT_EQ(Shell("kxdu stats --by ne", input).out.find("more"), std::string::npos);
}

TEST_F(StatsTest, RefusesWhatItCannotShow) {
    WriteFile("a.fdn", "NE=1\n");
    const Ended ended = Shell("kxdu stats --by kinds a.fdn");
    EXPECT_EQ(ended.code, 2);
    EXPECT_NE(ended.err.find("\"kinds\" is not one of total, kind, layer, "), std::string::npos) << ended.err;
    EXPECT_EQ(Shell("kxdu stats a.fdn -o a.fdn").code, 2) << "an input must not become its own statistics";
    EXPECT_EQ(ReadFile("a.fdn"), "NE=1\n");
    EXPECT_EQ(Shell("kxdu stats missing.fdn -o out").code, 2);
    EXPECT_FALSE(std::filesystem::exists(folder / "out"));
}

}  // namespace
}  // namespace NS_KX::NS_KXDU
