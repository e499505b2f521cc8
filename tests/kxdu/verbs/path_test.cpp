#include "kxdu/program.h"

namespace {

using PathVerb = ProgramTest;

TEST_F(PathVerb, ShowsRatesAndNumbers) {
    const Ended ended = Shell("kxdu path ODU0:8-odu2:1 OCH:x-XYZ:3-OTU1-OCH:4 --format csv");
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.out,
              "path,level,rate,number\n"
              "ODU0:8-odu2:1,12327,ODU2,1\n"
              "ODU0:8-odu2:1,12332,ODU0,8\n"
              "OCH:x-XYZ:3-OTU1-OCH:4,12292,OCH,4\n");
    EXPECT_EQ(Shell("kxdu path OCH:x --format csv").out, "path,level,rate,number\nOCH:x,12292,OCH,0\n");
}

TEST_F(PathVerb, APathWithoutARateExitsWithOne) {
    const Ended ended = Shell("kxdu path XYZ:3 OCH:1 --format csv");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out, "path,level,rate,number\nXYZ:3,,,\nOCH:1,12292,OCH,1\n");
}

TEST_F(PathVerb, ExitsWithTwoWithoutArguments) {
    const Ended ended = Shell("kxdu path");
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.out, "");
}

}  // namespace
