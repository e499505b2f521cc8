#include "kxdu/program.h"

namespace {

using FbVerb = ProgramTest;

TEST_F(FbVerb, ShowsEverythingAboutAType) {
    const std::string head = "asked,fbType,name,level,rate,bidirFbType,logical,portObject,portObjectKind3,ptnAid\n";
    const Ended ended = Shell("kxdu fb 861 131 33 2 919 4149 65536 --format csv");
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.out, head +
                             "861,861,,12313,OTU1,860,false,false,false,false\n"
                             "131,131,COM,,,,false,false,false,false\n"
                             "33,33,,,,1,false,false,false,false\n"
                             "2,2,,,,2,false,true,false,false\n"
                             "919,919,,,,919,false,true,true,false\n"
                             "4149,4149,TPS_GRP,,,,false,false,false,true\n"
                             "65536,65536,,,,,true,false,false,false\n");
}

TEST_F(FbVerb, JsonIsAnotherNameForJsonLines) {
    const Ended ended = Shell("kxdu fb 131 2 --format json");
    EXPECT_EQ(ended.code, 0);
    EXPECT_TRUE(ended.out.starts_with("{\"asked\":\"131\",\"fbType\":131,\"name\":\"COM\",")) << ended.out;
    EXPECT_EQ(ended.out, Shell("kxdu fb 131 2 --format jsonl").out);
}

TEST_F(FbVerb, AnUnknownTypeExitsWithOneAndSaysSo) {
    const Ended ended = Shell("kxdu fb 65535 122 nothing");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out,
              "asked    fbType  name  level  rate  bidirFbType  logical  portObject  portObjectKind3  ptnAid\n"
              "-------  ------  ----  -----  ----  -----------  -------  ----------  ---------------  ------\n"
              "65535         -  -     -      -     -            no       no          no               no\n"
              "122         122  CSK   -      -     -            no       no          no               no\n"
              "nothing       -  -     -      -     -            no       no          no               no\n");
    EXPECT_EQ(ended.err,
              "kxdu: \"65535\" and 1 more: nothing is known of such an FB type; kxdu tables fb-type-names lists the "
              "names\n");
}

TEST_F(FbVerb, TakesNamesInAnyCase) {
    EXPECT_EQ(Shell("kxdu fb tunnel Com --format csv | cut -d, -f1-3").out,
              "asked,fbType,name\ntunnel,4136,TUNNEL\nCom,131,COM\nCom,132,COM\nCom,133,COM\n");
    EXPECT_NE(Shell("kxdu tables fb-type-names").out.find("TUNNEL"), std::string::npos);
}

TEST_F(FbVerb, ExitsWithTwoOnWrongArguments) {
    for (const char* const arguments : {"", "1.5", "2147483648", "1 --format xml"}) {
        const Ended ended = Shell(std::string("kxdu fb ") + arguments);
        EXPECT_EQ(ended.code, 2) << arguments;
        EXPECT_EQ(ended.out, "") << arguments;
    }
    EXPECT_EQ(Shell("kxdu fb 810,811").err,
              "kxdu: \"810,811\" is not a number from 0 to 2147483647; separate numbers by blanks\n");
}

}  // namespace
