#include "kxdu/program.h"

namespace {

using SetVerb = ProgramTest;

TEST_F(SetVerb, RewritesLevelsLineByLine) {
    const Ended ended = Shell("kxdu set FR=2 SS=-1", "NE=5,FR=1,S=3,CP=-1,SS=4,SC=-1\nFR=9,SS=1,FR=1\n");
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "NE=5,FR=2,S=3,CP=-1,SS=-1,SC=-1\nFR=2,SS=-1,FR=1\n");
    EXPECT_EQ(ended.err, "");
}

TEST_F(SetVerb, RewritesSubValues) {
    EXPECT_EQ(Shell("kxdu set PP:2=7,PP:3=uplink NE=6", "NE=5,PP=16||2|x\n").out, "NE=6,PP=16||7|uplink\n");
    EXPECT_EQ(Shell("kxdu set PP:1= 'PP:3=a b'", "NE=5,PP=16|1025|2|x\n").out, "NE=5,PP=16||2|a b\n");
    EXPECT_EQ(Shell("kxdu set 'PP=||4|y'", "NE=5,PP=16|1025|2|x\n").out, "NE=5,PP=||4|y\n");
}

TEST_F(SetVerb, ReadsFilesAndCompressesLikeOtherVerbs) {
    WriteFile("a", "NE=1\n");
    WriteFile("NE=2", "NE=2\n");
    EXPECT_EQ(Shell("kxdu set NE=7 a ./NE=2 -", "NE=3\n").out, "NE=7\nNE=7\nNE=7\n");
    EXPECT_EQ(Shell("kxdu set NE=7 a -o out.gz && zcat out.gz").out, "NE=7\n");
}

TEST_F(SetVerb, LinesThatLackAPieceKeepTheRestAndAreCounted) {
    const Ended one = Shell("kxdu set FR=2", "NE=5\nNE=5,FR=1\nx\n");
    EXPECT_EQ(one.code, 0);
    EXPECT_EQ(one.out, "NE=5\nNE=5,FR=2\nx\n");
    EXPECT_EQ(one.err, "kxdu: 2 of 3 lines lack FR\n");
    const Ended several = Shell("kxdu set FR=2 PP:2=1 NE=6", "NE=5,FR=1\n");
    EXPECT_EQ(several.out, "NE=6,FR=2\n");
    EXPECT_EQ(several.err, "kxdu: 1 of 1 line lacks one or more of FR, PP:2 and NE\n");
}

TEST_F(SetVerb, BytesPassAsTheyAre) {
    EXPECT_EQ(Shell("kxdu set NE=6", "NE=5,PP=||2|\xff\n").out, "NE=6,PP=||2|\xff\n");
    const Ended ended = Shell("kxdu set NE=6", "NE=5\n\n");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out, "NE=6\n");
}

TEST_F(SetVerb, RefusesWhatCannotBeSet) {
    const auto complaint = [&](const std::string& arguments) {
        const Ended ended = Shell("kxdu set " + arguments, "NE=5\n");
        EXPECT_EQ(ended.code, 2) << arguments;
        EXPECT_EQ(ended.out, "") << arguments;
        return ended.err;
    };
    EXPECT_NE(complaint("XX=1").find("unknown piece \"XX\""), std::string::npos);
    EXPECT_NE(complaint("PP:9=1").find("unknown piece \"PP:9\""), std::string::npos);
    EXPECT_EQ(complaint("FR=x"), "kxdu: \"FR=x\": FR is not a decimal number: \"x\"\n");
    EXPECT_EQ(complaint("FR="), "kxdu: \"FR=\": FR has no value\n");
    EXPECT_EQ(complaint("PP=16"), "kxdu: \"PP=16\": PP has 1 sub-value, not 4\n");
    EXPECT_NE(complaint("'PP:3=a|b'").find("the value \"a|b\" holds \"|\""), std::string::npos);
    EXPECT_NE(complaint("'PP:3=a\nb'").find("which would end the piece"), std::string::npos);
    EXPECT_EQ(complaint("FR=1 FR=2"), "kxdu: \"FR=2\": FR is set twice\n");
    EXPECT_EQ(complaint("'PP=||4|y' PP:2=7"), "kxdu: \"PP:2=7\": PP is set twice\n");
    EXPECT_EQ(
        complaint("PP:3=a,b"),
        "kxdu: \"PP:3=a,b\": \"b\" after the comma is not TAG=VALUE or TAG:INDEX=VALUE; no value holds a comma\n");
    for (const char* const argument : {"fr=2", "FR", "''", "FR=1,", "file", "FR=1 fr=2"}) {
        EXPECT_NE(complaint(argument).find("is not TAG=VALUE or TAG:INDEX=VALUE"), std::string::npos) << argument;
    }
    EXPECT_EQ(Shell("kxdu set").code, 2);
}

}  // namespace
