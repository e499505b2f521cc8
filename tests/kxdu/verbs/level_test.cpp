#include "kxdu/program.h"

namespace {

using LevelVerb = ProgramTest;

TEST_F(LevelVerb, TakesNumbersAndRates) {
    const Ended ended = Shell("kxdu level 12313 odu2 12342 --format jsonl");
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.out,
              R"({"asked":"12313","level":12313,"rate":"OTU1","fbType":810,"fbTypes":"810 811 812 860 861 862"})"
              "\n"
              R"({"asked":"odu2","level":12327,"rate":"ODU2","fbType":823,)"
              R"("fbTypes":"210 213 214 823 824 825 874 875 876"})"
              "\n"
              R"({"asked":"12342","level":12342,"rate":null,"fbType":25,"fbTypes":"25 74 75 200 201 202 12288 12291"})"
              "\n");
}

TEST_F(LevelVerb, AnUnknownLevelOrRateExitsWithOneAndSaysSo) {
    for (const char* const unknown : {"OTU9", "810", "-7x", "99999999999"}) {
        const Ended ended = Shell(std::string("kxdu level --format csv -- ") + unknown);
        EXPECT_EQ(ended.code, 1) << unknown;
        EXPECT_EQ(ended.out, std::string("asked,level,rate,fbType,fbTypes\n") + unknown + ",,,,\n");
        EXPECT_EQ(ended.err, "kxdu: \"" + std::string(unknown) +
                                 "\": no interface level or client rate; kxdu tables level-fb-types lists the levels, "
                                 "kxdu tables client-rates the rates\n");
    }
}

TEST_F(LevelVerb, ExitsWithTwoWithoutArguments) {
    const Ended ended = Shell("kxdu level");
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.out, "");
}

}  // namespace
