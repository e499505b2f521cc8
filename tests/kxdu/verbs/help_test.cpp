#include "kxdu/program.h"

namespace {

using HelpVerb = ProgramTest;

TEST_F(HelpVerb, IsWhatTheVerbsOwnOptionGives) {
    for (const std::string verb : {"", "decode", "inventory", "inventory list", "help"}) {
        const Ended ended = Shell("kxdu help " + verb);
        EXPECT_EQ(ended.code, 0) << verb;
        EXPECT_EQ(ended.out, Shell("kxdu " + verb + " --help").out) << verb;
        EXPECT_EQ(ended.err, "") << verb;
    }
}

TEST_F(HelpVerb, OfAVerbThatThereIsNotNamesTheNearest) {
    for (const auto& [arguments, complaint] : std::initializer_list<std::pair<const char*, const char*>>{
             {"decod", "kxdu: no verb \"decod\"; did you mean decode?\n"},
             {"nonsense", "kxdu: no verb \"nonsense\"\n"},
             {"inventory lst", "kxdu: no verb \"lst\"; did you mean list?\n"},
             {"decode list", "kxdu: no verb \"list\"\n"}}) {
        const Ended ended = Shell(std::string("kxdu help ") + arguments);
        EXPECT_EQ(ended.code, 2) << arguments;
        EXPECT_EQ(ended.out, "") << arguments;
        EXPECT_EQ(ended.err, complaint);
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
