// Tested through the program, since the words come from standard input.
#include "cli/asked.h"

#include "kxdu/program.h"

namespace NS_KX::NS_KXDU {
namespace {

using Asked = ProgramTest;

TEST_F(Asked, ADashStandsForStandardInput) {
    EXPECT_EQ(Shell("kxdu ctp E0 - E11 --format csv", "E1 E2\n\n E3").out,
              "asked,ctpId,name\nE0,65535,E0\nE1,65534,E1\nE2,65533,E2\nE3,65532,E3\nE11,65524,E11\n");
    EXPECT_EQ(Shell("kxdu fb - --format csv | wc -l", "810\n811\n").out, "3\n");
    EXPECT_EQ(Shell("kxdu level -", "OTU9\n").code, 1);
    EXPECT_EQ(Shell("kxdu path - --format csv", "OCH:4\n").out, "path,level,rate,number\nOCH:4,12292,OCH,4\n");
    EXPECT_EQ(Shell("kxdu ne-type -", "1912\n").code, 0);
    EXPECT_EQ(Shell("kxdu fb -", "1.5\n").code, 2);
    EXPECT_EQ(Shell("kxdu fb - <.").code, 2);
}

TEST_F(Asked, AWordThatTheVerbRefusesStopsTheRun) {
    const Ended ended = Shell("kxdu fb - --format csv -o out", "810\n-7\n811\n");
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.err, "kxdu: \"-7\" is not a number from 0 to 2147483647\n");
    EXPECT_FALSE(Exists("out"));
}

TEST_F(Asked, AWordThatIsTooLongIsRefused) {
    const std::string longest(LONGEST_WORD, 'x');
    EXPECT_EQ(Shell("kxdu ctp - --format csv", longest + "\nE0\n").out,
              "asked,ctpId,name\n" + longest + ",,\nE0,65535,E0\n");
    const Ended ended = Shell("kxdu ctp - --format csv -o out", "E0 " + longest + "x E1");
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.err,
              "kxdu: a word on standard input is longer than 1024 bytes: \"" + std::string(60, 'x') + "...\"\n");
    EXPECT_FALSE(Exists("out"));
    EXPECT_EQ(Shell("kxdu ctp " + longest + "x").code, 1) << "arguments have no limit: they are in memory already";
}

}  // namespace
}  // namespace NS_KX::NS_KXDU
