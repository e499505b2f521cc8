#include "kxdu/program.h"

namespace {

class ExplainVerb : public ProgramTest {};

bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

}  // namespace

TEST_F(ExplainVerb, DrawsEachIdentifier) {
    const Ended ended = Shell("kxdu explain NE=5 'NE=5,FR=1'");
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.out,
              "  NE=5\n"
              "     │\n"
              "     ╰── network element 5\n"
              "\n"
              "  NEIndex\n"
              "    neId  5\n"
              "\n"
              "  ✓ canonical: what was read is written just so\n"
              "\n"
              "\n"
              "  NE=5,FR=1\n"
              "     │    │\n"
              "     │    ╰── shelf 1\n"
              "     ╰─────── network element 5\n"
              "\n"
              "  ShelfIndex\n"
              "    neId     5\n"
              "    shelfId  1\n"
              "\n"
              "  ✓ canonical: what was read is written just so\n");
}

TEST_F(ExplainVerb, DrawsAnIdentifierOfUnknownKind) {
    const Ended ended = Shell("kxdu explain 'NE=5,FOO=1'");
    EXPECT_EQ(ended.code, 0);
    EXPECT_TRUE(Contains(ended.out, "! no kind of identifier ends in the level \"FOO\"")) << ended.out;
}

TEST_F(ExplainVerb, WithAnInventoryNamesTheNeTypeAndComparesWithTheWriters) {
    ASSERT_EQ(Shell("kxdu sample --ne 3 -o n.fdn --inventory-csv csv && kxdu inventory init n.db && "
                    "kxdu inventory import n.db csv")
                  .code,
              0);
    const std::string card = "\"$(grep -m 1 CP=-1 n.fdn)\"";
    const Ended without = Shell("kxdu explain " + card);
    EXPECT_TRUE(Contains(without.out, "give --inventory FILE")) << without.out;
    for (const char* const command : {"kxdu explain --inventory n.db ", "KX_INVENTORY=n.db kxdu explain "}) {
        const Ended with = Shell(command + card);
        EXPECT_TRUE(Contains(with.out, ", NE type ")) << with.out;
        EXPECT_TRUE(Contains(with.out, "✓ canonical")) << with.out;
    }
}

TEST_F(ExplainVerb, ReadsAsTheConfigurationSays) {
    Configure("Telvandaire = 1\n");
    const std::string fdn = " 'NE=5,S=0,CP=-1,PP=16||1|'";
    EXPECT_TRUE(Contains(Shell("kxdu explain" + fdn).out, "slotId     0"));
    EXPECT_TRUE(Contains(Shell("kxdu explain --config config" + fdn).out, "slotId     -1"));
    EXPECT_TRUE(Contains(Shell("KX_CONFIG_DIR=config kxdu explain" + fdn).out, "✓ canonical"));
}

TEST_F(ExplainVerb, ADashIsStandardInput) {
    const Ended ended = Shell("kxdu explain NE=5 -", "NE=6\r\nNE=7 x\n");
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, Shell("kxdu explain NE=5 NE=6 'NE=7 x'").out);
    EXPECT_EQ(Shell("kxdu explain -", "").out, "");
    WriteFile("both", "NE=6\n");
    EXPECT_EQ(Shell("kxdu explain - <both >>both").err,
              "kxdu: standard input is the file that the answers are written to\n");
    const Ended wrong = Shell("kxdu explain -", "NE=6\n\n");
    EXPECT_EQ(wrong.code, 2);
    EXPECT_EQ(wrong.err, "kxdu: <stdin>:2: the line is empty\n");
}

TEST_F(ExplainVerb, AFileIsNoIdentifier) {
    WriteFile("a.fdn", "NE=5\n");
    const Ended ended = Shell("kxdu explain a.fdn");
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.err,
              "kxdu: a.fdn is a file, not an identifier; to explain each line of it: kxdu explain - <a.fdn\n");
}

TEST_F(ExplainVerb, ColoursOnRequestAndNotIntoAPipe) {
    EXPECT_TRUE(Contains(Shell("kxdu explain --color always NE=5").out, "\x1b["));
    EXPECT_FALSE(Contains(Shell("kxdu explain --color never NE=5").out, "\x1b["));
    EXPECT_FALSE(Contains(Shell("kxdu explain NE=5").out, "\x1b["));
    EXPECT_FALSE(Contains(Shell("kxdu explain --color auto NE=5").out, "\x1b["));
}

TEST_F(ExplainVerb, ColoursOnATerminalUnlessForbidden) {
    EXPECT_TRUE(Contains(Shell("script -qec \"'" KXDU_PROGRAM "' explain NE=5\" /dev/null").out, "\x1b["));
    EXPECT_FALSE(Contains(Shell("NO_COLOR=1 script -qec \"'" KXDU_PROGRAM "' explain NE=5\" /dev/null").out, "\x1b["));
}

TEST_F(ExplainVerb, ColoursIntoAPipeIfForced) {
    for (const char* const forced : {"FORCE_COLOR=1", "CLICOLOR_FORCE=1"}) {
        EXPECT_TRUE(Contains(Shell(std::string(forced) + " kxdu explain NE=5").out, "\x1b[")) << forced;
        EXPECT_FALSE(Contains(Shell(std::string(forced) + " NO_COLOR=1 kxdu explain NE=5").out, "\x1b[")) << forced;
        EXPECT_FALSE(Contains(Shell(std::string(forced) + " kxdu explain --color never NE=5").out, "\x1b["));
    }
    EXPECT_FALSE(Contains(Shell("FORCE_COLOR=0 CLICOLOR_FORCE=0 kxdu explain NE=5").out, "\x1b["));
}

TEST_F(ExplainVerb, DoesNotColourOnADumbTerminal) {
    EXPECT_FALSE(Contains(Shell("TERM=dumb script -qec \"'" KXDU_PROGRAM "' explain NE=5\" /dev/null").out, "\x1b["));
}

TEST_F(ExplainVerb, DrawsInAsciiIfTheLocaleIsNotUtf8) {
    const Ended ended = Shell("LC_ALL=C kxdu explain 'NE=5,FR=1'");
    EXPECT_TRUE(
        ended.out.starts_with("  NE=5,FR=1\n"
                              "     |    |\n"
                              "     |    +-- shelf 1\n"
                              "     +------- network element 5\n"))
        << ended.out;
    EXPECT_TRUE(ended.out.ends_with("  = canonical: what was read is written just so\n")) << ended.out;
    EXPECT_EQ(Shell("LC_ALL=C kxdu explain 'NE=5,FOO=1' | LC_ALL=C grep '[^ -~]'").out, "");
}

TEST_F(ExplainVerb, WhatIsMissingIsAUsageError) {
    EXPECT_EQ(Shell("kxdu explain").code, 2);
    EXPECT_EQ(Shell("kxdu explain --color red NE=5").code, 2);
    const Ended ended = Shell("kxdu explain --inventory none.db NE=5");
    EXPECT_EQ(ended.code, 2);
    EXPECT_TRUE(Contains(ended.err, "none.db")) << ended.err;
}

TEST_F(ExplainVerb, OutputThatCannotBeWrittenIsAnOutputError) {
    EXPECT_EQ(Shell("kxdu explain NE=5 >/dev/full").code, 3);
}

TEST_F(ExplainVerb, HelpHasExamples) {
    const Ended ended = Shell("kxdu explain --help");
    EXPECT_EQ(ended.code, 0);
    EXPECT_TRUE(Contains(ended.out, "Examples:"));
}
