#include <sstream>

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
        EXPECT_EQ(ended.err.substr(0, ended.err.find('\n')), std::string("kxdu: ") + complaint);
    }
}

TEST_F(HelpVerb, WithoutAVerbTheVerbsAreListed) {
    const Ended ended = Shell("kxdu");
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, Shell("kxdu -h").out);
    EXPECT_NE(ended.err.find("\n  decode      Convert identifiers"), std::string::npos) << ended.err;
    const Ended inner = Shell("kxdu inventory");
    EXPECT_EQ(inner.code, 2);
    EXPECT_EQ(inner.err, Shell("kxdu inventory -h").out);
    EXPECT_NE(inner.err.find("\n  list        Show"), std::string::npos) << inner.err;
}

TEST_F(HelpVerb, IsShortOnRequest) {
    const Ended ended = Shell("kxdu decode -h");
    EXPECT_EQ(ended.code, 0);
    EXPECT_NE(ended.out.find("Usage: kxdu decode [OPTIONS] [FILE...]\n"), std::string::npos) << ended.out;
    EXPECT_NE(ended.out.find("--format jsonl|"), std::string::npos);
    EXPECT_NE(ended.out.find("\nArguments:\n  FILE"), std::string::npos) << ended.out;
    EXPECT_EQ(ended.out.find("Examples:"), std::string::npos);
    EXPECT_TRUE(ended.out.ends_with("\nFor more: kxdu decode --help\n")) << ended.out;
    EXPECT_LT(2 * ended.out.size(), Shell("kxdu decode --help").out.size());
}

TEST_F(HelpVerb, IsAsWideAsTheTerminal) {
    for (const char* const verb : {"", "decode", "check", "inventory", "fb"}) {
        const Ended ended = Shell(std::string("COLUMNS=70 kxdu help ") + verb);
        std::istringstream lines(ended.out);
        for (std::string line; std::getline(lines, line);) {
            // Commands are there to be copied, and names of types and lists are long.
            EXPECT_TRUE(line.size() <= 70 || line.starts_with("  ")) << line;
        }
        EXPECT_GT(ended.out.size(), 500U);
    }
}

TEST_F(HelpVerb, AComplaintNamesTheHelpThatExplains) {
    EXPECT_EQ(Shell("kxdu decode --nonsense").err,
              "kxdu: unknown option \"--nonsense\"\nRun kxdu decode --help for usage.\n");
    EXPECT_EQ(Shell("kxdu inventory list --nonsense").err,
              "kxdu: unknown option \"--nonsense\"\nRun kxdu inventory list --help for usage.\n");
    EXPECT_EQ(Shell("kxdu nonsense").err, "kxdu: unknown verb \"nonsense\"\nRun kxdu --help for usage.\n");
    EXPECT_EQ(Shell("kxdu help nonsense").err, "kxdu: unknown verb \"nonsense\"\nRun kxdu --help for usage.\n");
}

TEST_F(HelpVerb, AComplaintSaysWhatIsMissingOrTooMuch) {
    for (const auto& [arguments, complaint] : std::initializer_list<std::pair<const char*, const char*>>{
             {"decode --format", "--format needs a value: jsonl, csv, tsv or table"},
             {"decode -o", "--output needs a value: FILE"},
             {"decode --format csv --format tsv", "--format is given 2 times: give it once"},
             {"decode --jobs 0", "--jobs: \"0\" is not a number from 1 to 256"},
             {"decode --strict=7", "--strict takes no value"},
             {"decode --only port --as PortIndex", "--as does not go with --only: give one of them"},
             {"explain", "IDENTIFIER is missing: The identifier"},
             {"set",
              "TAG=VALUE... FILE is missing: What to set, such as FR=2 or PP:2=7, separated by blanks or commas"},
             {"inventory init a.db b.db c.db", "unexpected arguments \"b.db\" \"c.db\""},
             {"inventory import a.db", "FOLDER is missing: The folder of ne.csv, ne_type.csv and domain_member.csv"},
             {"inventory show", "unknown verb \"show\"; choose one of init, import, export, list"}}) {
        const Ended ended = Shell(std::string("kxdu ") + arguments);
        EXPECT_EQ(ended.code, 2) << arguments;
        EXPECT_EQ(ended.err.substr(0, ended.err.find('\n')), std::string("kxdu: ") + complaint);
    }
}

TEST_F(HelpVerb, NothingAfterTwoDashesIsAnOption) {
    WriteFile("-x", "NE=5\n");
    WriteFile("--", "NE=6\n");
    WriteFile("a.fdn", "NE=7\n");
    EXPECT_EQ(Shell("kxdu get NE a.fdn -- -x -- a.fdn").out, "7\n5\n6\n7\n");
    EXPECT_EQ(Shell("kxdu get -- NE -x").out, "5\n");
    EXPECT_EQ(Shell("kxdu get NE a.fdn --").out, "7\n");
    EXPECT_EQ(Shell("kxdu get NE --header -- - a.fdn", "NE=8\n").out, "NE\n8\n7\n");
}

TEST_F(HelpVerb, TheVersionHasAShortOption) {
    const Ended ended = Shell("kxdu -V");
    EXPECT_EQ(ended.code, 0);
    EXPECT_TRUE(ended.out.starts_with("kxdu 1.")) << ended.out;
    EXPECT_EQ(ended.out, Shell("kxdu --version").out);
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
