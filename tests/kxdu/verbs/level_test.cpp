#include "kxdu/program.h"

namespace {

using LevelVerb = ProgramTest;

TEST_F(LevelVerb, TakesNumbersAndRates) {
    const Ended ended = Shell("kxdu level 12313 odu2 12342 --format jsonl");
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.out, R"({"asked":"12313","level":12313,"rate":"OTU1","fbType":810})"
                         "\n"
                         R"({"asked":"odu2","level":12327,"rate":"ODU2","fbType":823})"
                         "\n"
                         R"({"asked":"12342","level":12342,"rate":null,"fbType":25})"
                         "\n");
}

TEST_F(LevelVerb, AnUnknownLevelOrRateExitsWithOne) {
    for (const char* const unknown : {"OTU9", "810", "-7x", "99999999999"}) {
        const Ended ended = Shell(std::string("kxdu level --format csv -- ") + unknown);
        EXPECT_EQ(ended.code, 1) << unknown;
        EXPECT_EQ(ended.out, std::string("asked,level,rate,fbType\n") + unknown + ",,,\n");
    }
}

TEST_F(LevelVerb, ExitsWithTwoWithoutArguments) {
    const Ended ended = Shell("kxdu level");
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.out, "");
}

}  // namespace
