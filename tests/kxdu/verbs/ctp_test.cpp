#include "kxdu/program.h"

namespace {

using CtpVerb = ProgramTest;

TEST_F(CtpVerb, TakesNamesAndIds) {
    const Ended ended = Shell("kxdu ctp e0 65524 --format md");
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.out,
              "| asked | ctpId | name |\n"
              "|---|---:|---|\n"
              "| e0 | 65535 | E0 |\n"
              "| 65524 | 65524 | E11 |\n");
}

TEST_F(CtpVerb, AnUnknownNameOrIdExitsWithOne) {
    for (const char* const unknown : {"E12", "CTP", "65523", "0"}) {
        const Ended ended = Shell(std::string("kxdu ctp --format csv ") + unknown);
        EXPECT_EQ(ended.code, 1) << unknown;
        EXPECT_EQ(ended.out, std::string("asked,ctpId,name\n") + unknown + ",,\n");
        EXPECT_EQ(ended.err,
                  "kxdu: \"" + std::string(unknown) + "\": no reserved CTP; kxdu tables ctp-names lists them\n");
    }
}

TEST_F(CtpVerb, WritesToAFileOnRequest) {
    EXPECT_EQ(Shell("kxdu ctp E0 --format csv -o ctp.csv").out, "");
    EXPECT_EQ(ReadFile("ctp.csv"), "asked,ctpId,name\nE0,65535,E0\n");
    EXPECT_EQ(Shell("kxdu ctp E0 >/dev/full").code, 3);
}

TEST_F(CtpVerb, ExitsWithTwoWithoutArguments) {
    const Ended ended = Shell("kxdu ctp");
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.out, "");
}

}  // namespace
