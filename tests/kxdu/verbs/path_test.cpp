#include "kxdu/program.h"

namespace {

using PathVerb = ProgramTest;

TEST_F(PathVerb, ShowsRatesAndNumbers) {
    const Ended ended = Shell("kxdu path ODU0:8-odu2:1 OCH:x-OCH:4 --format csv");
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.err, "");
    EXPECT_EQ(ended.out,
              "path,level,rate,number\n"
              "ODU0:8-odu2:1,12327,ODU2,1\n"
              "ODU0:8-odu2:1,12332,ODU0,8\n"
              "OCH:x-OCH:4,12292,OCH,4\n");
    EXPECT_EQ(Shell("kxdu path OCH:x --format csv").out, "path,level,rate,number\nOCH:x,12292,OCH,0\n");
}

TEST_F(PathVerb, NamesTheItemsThatItSkips) {
    const std::string advice =
        ": skipped, since an item is a client rate and a number, such as ODU2:1; kxdu tables client-rates lists the "
        "rates\n";
    const Ended ended = Shell("kxdu path ODU2:1-XYZ:3-OTU1-OCH:4 OCH:1 --format csv");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out,
              "path,level,rate,number\n"
              "ODU2:1-XYZ:3-OTU1-OCH:4,12292,OCH,4\n"
              "ODU2:1-XYZ:3-OTU1-OCH:4,12327,ODU2,1\n"
              "OCH:1,12292,OCH,1\n");
    EXPECT_EQ(ended.err, "kxdu: \"XYZ:3\" and 1 more" + advice);
    EXPECT_EQ(Shell("kxdu path ODU2:1-").err, "") << "an empty item says nothing";
    EXPECT_EQ(Shell("kxdu path ODU2").err, "kxdu: \"ODU2\"" + advice);
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
