// The verbs that answer from the constant tables: fb, level, ctp and path.
#include "kxdu/program.h"

namespace {

using VocabularyVerbs = ProgramTest;

TEST_F(VocabularyVerbs, FbTellsAllOfAType) {
    const std::string head = "fbType,name,level,rate,bidirFbType,logical,portObject,portObjectKind3,ptnAid\n";
    const Ended ended = Shell("kxdu fb 861 131 33 2 919 4149 65536 --format csv");
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.out, head +
                             "861,,12313,OTU1,860,false,false,false,false\n"
                             "131,COM,,,,false,false,false,false\n"
                             "33,,,,1,false,false,false,false\n"
                             "2,,,,2,false,true,false,false\n"
                             "919,,,,919,false,true,true,false\n"
                             "4149,TPS_GRP,,,,false,false,false,true\n"
                             "65536,,,,,true,false,false,false\n");
}

TEST_F(VocabularyVerbs, FbOfATypeThatMeansNothingEndsWithOne) {
    const Ended ended = Shell("kxdu fb 65535 122");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out,
              "fbType  name  level  rate  bidirFbType  logical  portObject  portObjectKind3  ptnAid\n"
              "------  ----  -----  ----  -----------  -------  ----------  ---------------  ------\n"
              " 65535  -     -      -     -            no       no          no               no\n"
              "   122  CSK   -      -     -            no       no          no               no\n");
    EXPECT_EQ(ended.err, "");
}

TEST_F(VocabularyVerbs, LevelTakesNumbersAndRates) {
    const Ended ended = Shell("kxdu level 12313 odu2 12342 --format jsonl");
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.out, R"({"asked":"12313","level":12313,"rate":"OTU1","fbType":810})"
                         "\n"
                         R"({"asked":"odu2","level":12327,"rate":"ODU2","fbType":823})"
                         "\n"
                         R"({"asked":"12342","level":12342,"rate":null,"fbType":25})"
                         "\n");
}

TEST_F(VocabularyVerbs, LevelOfNothingEndsWithOne) {
    for (const char* const unknown : {"OTU9", "810", "-7x", "99999999999"}) {
        const Ended ended = Shell(std::string("kxdu level --format csv -- ") + unknown);
        EXPECT_EQ(ended.code, 1) << unknown;
        EXPECT_EQ(ended.out, std::string("asked,level,rate,fbType\n") + unknown + ",,,\n");
    }
}

TEST_F(VocabularyVerbs, CtpTakesNamesAndIds) {
    const Ended ended = Shell("kxdu ctp E0 65524 --format md");
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.out,
              "| asked | ctpId | name |\n"
              "|---|---:|---|\n"
              "| E0 | 65535 | E0 |\n"
              "| 65524 | 65524 | E11 |\n");
}

TEST_F(VocabularyVerbs, CtpOfNothingEndsWithOne) {
    for (const char* const unknown : {"e0", "E12", "65523", "0"}) {
        const Ended ended = Shell(std::string("kxdu ctp --format csv ") + unknown);
        EXPECT_EQ(ended.code, 1) << unknown;
        EXPECT_EQ(ended.out, std::string("asked,ctpId,name\n") + unknown + ",,\n");
    }
}

TEST_F(VocabularyVerbs, PathTellsRatesAndNumbers) {
    const Ended ended = Shell("kxdu path ODU0:8-odu2:1 OCH:x-XYZ:3-OTU1-OCH:4 --format csv");
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.out,
              "path,level,rate,number\n"
              "ODU0:8-odu2:1,12327,ODU2,1\n"
              "ODU0:8-odu2:1,12332,ODU0,8\n"
              "OCH:x-XYZ:3-OTU1-OCH:4,12292,OCH,4\n");
    EXPECT_EQ(Shell("kxdu path OCH:x --format csv").out, "path,level,rate,number\nOCH:x,12292,OCH,0\n");
}

TEST_F(VocabularyVerbs, APathWithoutARateEndsWithOne) {
    const Ended ended = Shell("kxdu path XYZ:3 OCH:1 --format csv");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out, "path,level,rate,number\nXYZ:3,,,\nOCH:1,12292,OCH,1\n");
}

TEST_F(VocabularyVerbs, StandardInputIsAskedInThePlaceOfADash) {
    EXPECT_EQ(Shell("kxdu ctp E0 - E11 --format csv", "E1 E2\n\n E3").out,
              "asked,ctpId,name\nE0,65535,E0\nE1,65534,E1\nE2,65533,E2\nE3,65532,E3\nE11,65524,E11\n");
    EXPECT_EQ(Shell("kxdu fb - --format csv | wc -l", "810\n811\n").out, "3\n");
    EXPECT_EQ(Shell("kxdu level -", "OTU9\n").code, 1);
    EXPECT_EQ(Shell("kxdu path - --format csv", "OCH:4\n").out, "path,level,rate,number\nOCH:4,12292,OCH,4\n");
    EXPECT_EQ(Shell("kxdu ne-type -", "1912\n").code, 0);
    EXPECT_EQ(Shell("kxdu fb -", "x\n").code, 2);
    EXPECT_EQ(Shell("kxdu fb - <.").code, 2);
}

TEST_F(VocabularyVerbs, AListingGoesToAFileToo) {
    EXPECT_EQ(Shell("kxdu ctp E0 --format csv -o ctp.csv").out, "");
    EXPECT_EQ(ReadFile("ctp.csv"), "asked,ctpId,name\nE0,65535,E0\n");
    EXPECT_EQ(Shell("kxdu ctp E0 >/dev/full").code, 3);
}

TEST_F(VocabularyVerbs, WrongArgumentsEndWithTwo) {
    for (const char* const arguments :
         {"fb", "fb x", "fb 1.5", "fb 2147483648", "fb 1 --format xml", "level", "ctp", "path"}) {
        const Ended ended = Shell(std::string("kxdu ") + arguments);
        EXPECT_EQ(ended.code, 2) << arguments;
        EXPECT_EQ(ended.out, "") << arguments;
    }
}

TEST_F(VocabularyVerbs, HelpHasExamples) {
    for (const char* const verb : {"fb", "level", "ctp", "path", "tables", "ne-type", "filter"}) {
        const Ended ended = Shell(std::string("kxdu ") + verb + " --help");
        EXPECT_EQ(ended.code, 0) << verb;
        EXPECT_NE(ended.out.find("Examples:\n  "), std::string::npos) << verb;
        EXPECT_NE(ended.out.find("Exit code: 0"), std::string::npos) << verb;
    }
}

}  // namespace
