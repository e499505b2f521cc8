#include "kxdu/program.h"

namespace NS_KX::NS_KXDU {
namespace {

using GetTest = ProgramTest;

TEST_F(GetTest, GivesChosenSubValuesAsColumns) {
    const Ended ended =
        Shell("kxdu get NE PP:2 PP:3", "NE=5,FR=1,S=3,CP=-1,PP=16||7|GE0/7\nPP=16||8|,NE=6\nNE=7\nNE=8,PP=1|2\nOS=1\n");
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "5\t7\tGE0/7\n6\t8\t\n7\t\t\n8\t\t\n\t\t\n");
}

TEST_F(GetTest, WithoutAnIndexTheWholeValueIsGiven) {
    EXPECT_EQ(Shell("kxdu get PP PP:0", "NE=5,PP=16||7|a=b\n").out, "16||7|a=b\t16\n");
}

TEST_F(GetTest, TheFirstOfRepeatedLevelsCounts) {
    EXPECT_EQ(Shell("kxdu get NE SS", "NE=,SS,NE=2,SS=3\n").out, "\t\n");
}

TEST_F(GetTest, LongTagsAreFoundToo) {
    EXPECT_EQ(Shell("kxdu get TUNNELPGTRAIL:1 CHANNELSET", "NE=5,TUNNELPGTRAIL=a|b,CHANNELSET=3\n").out, "b\t3\n");
}

TEST_F(GetTest, FilesNeedAnOption) {
    WriteFile("a", "NE=1\n");
    WriteFile("b", "NE=2\n");
    EXPECT_EQ(Shell("kxdu get -i a NE -i b").out, "1\n2\n");
    const Ended ended = Shell("kxdu get NE -i a b");
    EXPECT_EQ(ended.code, 2);
    EXPECT_TRUE(ended.err.ends_with("; give each file with its own -i\n")) << ended.err;
    EXPECT_EQ(Shell("kxdu get NE c").err.find("file"), std::string::npos) << "there is no file of this name";
}

TEST_F(GetTest, ExitsWithTwoOnWrongColumns) {
    const std::string index = "INDEX must be a number, 0 for the first sub-value";
    const std::string tag = "a TAG has only upper-case letters and digits";
    for (const auto& [column, rule] : std::initializer_list<std::pair<std::string, std::string>>{
             {"NE:", index},
             {"NE:x", index},
             {"NE:-1", index},
             {"NE:99999999999", index},
             {":1", "the TAG is missing"},
             {"ne", tag},
             {"N.E", tag},
             {"NE,FR", "separate columns by blanks, not commas"},
             {"PP:2,PP:3", "separate columns by blanks, not commas"}}) {
        const Ended ended = Shell("kxdu get " + column);
        EXPECT_EQ(ended.code, 2) << column;
        EXPECT_EQ(ended.err, "kxdu: \"" + column + "\" is not a TAG or TAG:INDEX, such as NE or PP:2: " + rule + "\n");
    }
    EXPECT_EQ(Shell("kxdu get").code, 2);
}

TEST_F(GetTest, BytesPassAsTheyAre) {
    EXPECT_EQ(Shell("kxdu get PP:3", "PP=|||\xff\n").out, "\xff\n");
}

TEST_F(GetTest, ATabInAColumnIsRejected) {
    const Ended ended = Shell("kxdu get NE PP:3", "NE=1,PP=|||a\tb\nNE=2,FR=\t\n");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out, "2\t\n");
    EXPECT_EQ(ended.err, "<stdin>:1: the value of PP holds a tab\nkxdu: 1 rejected in 2 lines\n");
}

}  // namespace
}  // namespace NS_KX::NS_KXDU
