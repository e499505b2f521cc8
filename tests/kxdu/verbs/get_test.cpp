#include "kxdu/program.h"

namespace NS_KX::NS_KXDU {
namespace {

using GetTest = ProgramTest;

constexpr auto PORT = "NE=5,FR=1,S=3,CP=-1,PP=16||7|GE0/7\n";

TEST_F(GetTest, GivesChosenSubValuesAsColumns) {
    const Ended ended = Shell("kxdu get NE,PP:2,PP:3", std::string(PORT) + "NE=6,PP=16||8|\nNE=7\nNE=8,PP=1|2\nOS=1\n");
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "5\t7\tGE0/7\n6\t8\t\n7\t\t\n8\t\t\n\t\t\n");
    EXPECT_EQ(ended.err, "");
}

TEST_F(GetTest, WithoutAnIndexTheWholeValueIsGiven) {
    EXPECT_EQ(Shell("kxdu get PP,PP:0", "NE=5,PP=16||7|a=b\n").out, "16||7|a=b\t16\n");
}

TEST_F(GetTest, TheFirstOfRepeatedLevelsCounts) {
    EXPECT_EQ(Shell("kxdu get NE,SS", "NE=,SS,NE=2,SS=3\n").out, "\t\n");
}

TEST_F(GetTest, LongTagsAreFoundToo) {
    EXPECT_EQ(Shell("kxdu get TUNNELPGTRAIL:1,CHANNELSET", "NE=5,TUNNELPGTRAIL=a|b,CHANNELSET=3\n").out, "b\t3\n");
}

TEST_F(GetTest, FilesFollowTheColumns) {
    WriteFile("a", "NE=1\n");
    WriteFile("b", "NE=2\n");
    EXPECT_EQ(Shell("kxdu get NE a - b", "NE=3\n").out, "1\n3\n2\n");
    EXPECT_EQ(Shell("kxdu get a NE").err,
              "kxdu: \"a\" is not a column: no level or field has this name; columns come "
              "before files: kxdu get NE,FR a\n");
    EXPECT_EQ(Shell("kxdu get NE FR a").err,
              "kxdu: FR: there is no such file; columns are one argument: kxdu get NE,FR\n");
}

TEST_F(GetTest, OneNameStandsForBothLevelsOfPorts) {
    EXPECT_EQ(Shell("kxdu get PORT:3,PORT:2", "NE=5,PP=16||7|a\nNE=5,LP=16||8|b\nNE=5\n").out, "a\t7\nb\t8\n\t\n");
}

TEST_F(GetTest, FieldsOfTheRecordAreColumnsToo) {
    EXPECT_EQ(Shell("kxdu get kind,type,portId,subSlotId,NE,fdn", std::string(PORT) + "NE=5\n").out,
              "port\tPortIndex\t7\t-1\t5\tNE=5,FR=1,S=3,CP=-1,PP=16||7|GE0/7\nne\tNEIndex\t\t\t5\tNE=5\n");
    Configure("Telvandaire = 1\n");
    EXPECT_EQ(Shell("kxdu get slotId --config config", "NE=5,FR=1,S=0,CP=-1,PP=|||\n").out, "-1\n");
    const Ended ended = Shell("kxdu get neId", "XY=1\nNE=5\n");
    EXPECT_EQ(ended.out, "5\n");
    EXPECT_EQ(ended.err, "<stdin>:1: no kind of identifier ends in the level \"XY\"\nkxdu: 1 rejected in 2 lines\n");
}

TEST_F(GetTest, FormatsAreThoseOfDecode) {
    const std::string get = "kxdu get NE,PP:3,portId --header --format ";
    const std::string odd = "NE=05,PP=16||7|\"a\\\tb\"\nNE=5\n";
    EXPECT_EQ(Shell(get + "tsv", odd).out, "NE\tPP:3\tportId\n05\t\"a\\\\\\tb\"\t7\n5\t\t\n");
    EXPECT_EQ(Shell(get + "csv", odd).out, "NE,PP:3,portId\n05,\"\"\"a\\\tb\"\"\",7\n5,,\n");
    EXPECT_EQ(
        Shell(get + "jsonl", odd).out,
        "{\"NE\":\"05\",\"PP:3\":\"\\\"a\\\\\\tb\\\"\",\"portId\":7}\n{\"NE\":5,\"PP:3\":null,\"portId\":null}\n");
    EXPECT_EQ(
        Shell("kxdu get NE,PP:3,portId --format table", "NE=5,PP=16||7|a b\nNE=12345678\n").out,
        "NE      PP:3                  portId\n5       \"a b\"                 7\n12345678  -                     -\n");
}

TEST_F(GetTest, ExitsWithTwoOnWrongColumns) {
    const std::string none = " is not a column: no level or field has this name";
    for (const auto& [columns, complaint] : std::initializer_list<std::pair<std::string, std::string>>{
             {"NE:", "\"NE:\"" + none + "; did you mean NE?"},
             {"NE,:1", "\":1\"" + none + "; kxdu get --help lists the names"},
             {"ne", "\"ne\"" + none + "; did you mean NE?"},
             {"NE,portid", "\"portid\"" + none + "; did you mean portId?"},
             {"NE:1", "\"NE:1\": NE has no sub-value 1; the first one is 0, the last one 0"},
             {"NE,,FR", "a column has no name; separate columns by single commas: NE,FR,PP:2"}}) {
        const Ended ended = Shell("kxdu get " + columns);
        EXPECT_EQ(ended.code, 2) << columns;
        EXPECT_EQ(ended.err, "kxdu: " + complaint + "\n");
    }
    EXPECT_EQ(Shell("kxdu get").code, 2);
}

TEST_F(GetTest, BytesPassAsTheyAre) {
    EXPECT_EQ(Shell("kxdu get PP:3", "PP=|||\xff\n").out, "\xff\n");
    EXPECT_EQ(Shell("kxdu get PP:3 --format jsonl", "PP=|||\xff\n").err,
              "<stdin>:1:7: not UTF-8\nkxdu: 1 rejected in 1 line\n");
}

TEST_F(GetTest, LinesWithOddTagsAreCounted) {
    const std::string odd = " NE=4\nNE=5\nxx NE=6,FR=1\n";
    const Ended lenient = Shell("kxdu get NE", odd);
    EXPECT_EQ(lenient.code, 0);
    EXPECT_EQ(lenient.out, "\n5\n\n");
    EXPECT_EQ(lenient.err,
              "kxdu: 2 lines have unknown tags or levels out of place, first at <stdin>:1:1: blank in the tag \" NE\"; "
              "see kxdu check, or reject them by --strict-tags\n");
    const Ended strict = Shell("kxdu get NE --strict-tags", odd);
    EXPECT_EQ(strict.code, 1);
    EXPECT_EQ(strict.out, "5\n");
    EXPECT_EQ(strict.err,
              "<stdin>:1:1: blank in the tag \" NE\"\n<stdin>:3:1: lower-case letter in the tag \"xx NE\"\n"
              "kxdu: 2 rejected in 3 lines\n");
}

}  // namespace
}  // namespace NS_KX::NS_KXDU
