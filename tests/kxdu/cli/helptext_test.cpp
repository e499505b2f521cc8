#include "cli/helptext.h"

#include <gmock/gmock.h>

namespace NS_KX::NS_KXDU {
namespace {

constexpr auto HELP_OF_A_VERB = R"(Examples:
  kxdu verb one two three four five
      what this does, and
  kxdu verb

One paragraph of words that
continues here. It finds
  - the first thing, which is
    long
  - another
csv   the first format, which
      is long
  end)";

std::vector<std::string> PartTexts(const char* help) {
    std::vector<std::string> texts;
    for (const HelpPart& part : SplitHelp(help)) {
        texts.push_back(std::to_string(part.indent) + "|" + part.lead + "|" + part.text + (part.isCommand ? "$" : ""));
    }
    return texts;
}

TEST(HelpText, IsSplitWhereItsLinesBeginNewParts) {
    EXPECT_THAT(PartTexts(HELP_OF_A_VERB),
                testing::ElementsAre("0||Examples:", "2||kxdu verb one two three four five$", "6||what this does, and",
                                     "2||kxdu verb$", "0||", "0||One paragraph of words that continues here. It finds",
                                     "2|- |the first thing, which is long", "2|- |another",
                                     "0||csv   the first format, which", "6||is long", "2||end"));
}

TEST(HelpText, WordsAndBlanksBeforeATextAreItsLead) {
    EXPECT_THAT(PartTexts("  csv   the first format,\n        which is long\n  EventSwitch = 1  passes"),
                testing::ElementsAre("2|csv   |the first format, which is long", "2|EventSwitch = 1  |passes"));
}

TEST(HelpText, IsWrappedPartByPart) {
    EXPECT_EQ(WrapHelp(HELP_OF_A_VERB, 24),
              "Examples:\n"
              "  kxdu verb one two three four five\n"
              "      what this does,\n"
              "      and\n"
              "  kxdu verb\n"
              "\n"
              "One paragraph of words\n"
              "that continues here. It\n"
              "finds\n"
              "  - the first thing,\n"
              "    which is long\n"
              "  - another\n"
              "csv the first format,\n"
              "which\n"
              "      is long\n"
              "  end");
}

TEST(HelpText, MayBeEmpty) {
    EXPECT_EQ(WrapHelp("", 24), "");
}

}  // namespace
}  // namespace NS_KX::NS_KXDU
