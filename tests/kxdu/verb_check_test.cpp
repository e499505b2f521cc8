#include "program.h"

namespace NS_KXDU {
namespace {

using CheckTest = ProgramTest;

TEST_F(CheckTest, NothingFoundIsSilent) {
    const Ended ended = Shell("kxdu check", "NE=5\nNE=5,FR=1\n");
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "");
}

TEST_F(CheckTest, FindingsNameFileLineAndColumn) {
    WriteFile("a.fdn", "NE=5\nNE=1,fr=2,S=\nNE=1,XY=2\n");
    const Ended ended = Shell("kxdu check a.fdn");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out,
              "a.fdn:2:6: lower-case letter in the tag \"fr\"\n"
              "a.fdn:2:13: S has no value\n"
              "a.fdn:3:6: unknown tag \"XY\"\n");
    EXPECT_EQ(ended.err, "kxdu: 3 found in 3 lines\n");
}

TEST_F(CheckTest, WhatWouldBeWrittenOtherwiseIsToldWithItsText) {
    const Ended ended = Shell("kxdu check", "NE=05\nFR=1,NE=2\nNE=1,LP=16||1|,VR=2\n");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out,
              "<stdin>:1:4: would be written as \"NE=5\"\n"
              "<stdin>:2:1: would be written as \"NE=2\"\n"
              "<stdin>:3:16: would be written as \"NE=1,LP=16||1|,AP=0|0|\"\n");
}

TEST_F(CheckTest, AKnownTagThatEndsNoIdentifierIsTold) {
    EXPECT_EQ(Shell("kxdu check", "NE=1,VEGROUP=2\n").out,
              "<stdin>:1:6: no kind of identifier ends in the level \"VEGROUP\"\n");
}

TEST_F(CheckTest, LinesThatAreNoTextAreTold) {
    const Ended ended = Shell("kxdu check", std::string("\nNE=\xff\nN\0E=1\n", 12));
    EXPECT_EQ(ended.out, "<stdin>:1: the line is empty\n<stdin>:2:4: not UTF-8\n<stdin>:3:2: NUL byte\n");
}

TEST_F(CheckTest, NeedsAnInventoryUnlessLevelsAloneAreChecked) {
    const std::string card = "NE=5,FR=1,S=3,CP=-1\n";
    const Ended ended = Shell("kxdu check", card);
    EXPECT_EQ(ended.code, 2);
    EXPECT_NE(ended.err.find("--inventory FILE"), std::string::npos) << ended.err;
    EXPECT_EQ(Shell("kxdu check --levels-only", card).code, 0);
}

TEST_F(CheckTest, StrictStopsAtTheFirst) {
    EXPECT_EQ(Shell("kxdu check --strict", "NE=1,fr=2,S=\nNE=x\n").out,
              "<stdin>:1:6: lower-case letter in the tag \"fr\"\n");
}

}  // namespace
}  // namespace NS_KXDU
