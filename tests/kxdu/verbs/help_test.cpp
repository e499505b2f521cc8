#include "kxdu/program.h"

namespace {

using HelpVerb = ProgramTest;

TEST_F(HelpVerb, PrintsTheSameAsTheHelpOption) {
    for (const std::string verb : {"", "decode", "inventory", "inventory list", "help"}) {
        const Ended ended = Shell("kxdu help " + verb);
        EXPECT_EQ(ended.code, 0) << verb;
        EXPECT_EQ(ended.out, Shell("kxdu " + verb + " --help").out) << verb;
        EXPECT_EQ(ended.err, "") << verb;
    }
}

TEST_F(HelpVerb, SuggestsTheNearestVerbForAnUnknownOne) {
    for (const auto& [arguments, complaint] : std::initializer_list<std::pair<const char*, const char*>>{
             {"decod", "unknown verb \"decod\"; did you mean decode?"},
             {"DECODE", "unknown verb \"DECODE\"; did you mean decode?"},
             {"dec", "unknown verb \"dec\"; did you mean decode?"},
             {"nonsense", "unknown verb \"nonsense\""},
             {"list", "unknown verb \"list\"; did you mean inventory list?"},
             {"inventory lst", "unknown verb \"lst\"; did you mean list?"},
             {"decode encode", "decode has no verbs"}}) {
        const Ended ended = Shell(std::string("kxdu help ") + arguments);
        EXPECT_EQ(ended.code, 2) << arguments;
        EXPECT_EQ(ended.out, "") << arguments;
        EXPECT_EQ(ended.err, std::string("kxdu: ") + complaint + "\nRun with --help for usage.\n");
    }
}

TEST_F(HelpVerb, CallsVerbsVerbs) {
    EXPECT_NE(Shell("kxdu --help").out.find("Usage: kxdu [OPTIONS] VERB\n"), std::string::npos);
    for (const char* const verb : {"", "inventory", "decode"}) {
        const Ended ended = Shell(std::string("kxdu help ") + verb + " | grep -i subcommand");
        EXPECT_EQ(ended.out, "") << verb;
    }
    EXPECT_NE(Shell("kxdu help inventory").out.find("\nVerbs:\n"), std::string::npos);
}

TEST_F(HelpVerb, FitsOnAScreen) {
    for (const char* const verb : {"",
                                   "decode",
                                   "encode",
                                   "check",
                                   "explain",
                                   "get",
                                   "filter",
                                   "ne-type",
                                   "fb",
                                   "level",
                                   "path",
                                   "ctp",
                                   "tables",
                                   "inventory",
                                   "inventory init",
                                   "inventory import",
                                   "inventory export",
                                   "inventory list",
                                   "sample",
                                   "help"}) {
        const Ended ended = Shell(std::string("kxdu help ") + verb + " | LC_ALL=C.UTF-8 grep -E '.{121}'");
        EXPECT_EQ(ended.out, "") << verb;
        EXPECT_EQ(ended.code, 1) << verb;
    }
}

TEST_F(HelpVerb, VerbsHaveExamplesAndExitCodes) {
    for (const char* const verb : {"fb", "level", "ctp", "path", "tables", "ne-type", "filter"}) {
        const Ended ended = Shell(std::string("kxdu ") + verb + " --help");
        EXPECT_EQ(ended.code, 0) << verb;
        EXPECT_NE(ended.out.find("Examples:\n  "), std::string::npos) << verb;
        EXPECT_NE(ended.out.find("Exit code: 0"), std::string::npos) << verb;
    }
}

}  // namespace
