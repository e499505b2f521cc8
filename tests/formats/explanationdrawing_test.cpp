#include "formats/explanationdrawing.h"

#include <gmock/gmock.h>

using namespace NS_KX;

namespace {

std::string DrawFdn(const std::string& fdn, bool isColoured = false) {
    return Draw(Explain(fdn, FindKind(fdn), NS_UTIL::Surroundings::OfSystem()), {isColoured, false});
}

std::string WithoutColours(const std::string& text) {
    std::string plain;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '\x1b') {
            at = text.find('m', at);
        } else {
            plain += text[at];
        }
    }
    return plain;
}

}  // namespace

TEST(Draw, LeadsALineFromEachPartToItsMeaning) {
    EXPECT_EQ(DrawFdn("NE=12,LP=|65547|3|vlanif"),
              "  NE=12,LP=|65547|3|vlanif\n"
              "     │  │  ││     │ │\n"
              "     │  │  ││     │ ╰── port name \"vlanif\"\n"
              "     │  │  ││     ╰──── port number 3\n"
              "     │  │  │╰────────── FB type 65547 (a logical port)\n"
              "     │  │  ╰─────────── PP type: none, or a port identified by its name\n"
              "     │  ╰────────────── logical port\n"
              "     ╰───────────────── network element 12\n"
              "\n"
              "  PortIndex\n"
              "    neId       12\n"
              "    shelfId    -1\n"
              "    slotId     -1\n"
              "    subSlotId  -1\n"
              "    portId     3\n"
              "    ppType     251\n"
              "    fbType     65547\n"
              "    portLabel  \"vlanif\"\n"
              "    isLogical  true\n"
              "\n"
              "  ✓ canonical: what was read is written just so\n");
}

TEST(Draw, DrawsLinesInAsciiAndKeepsTheTexts) {
    EXPECT_THAT(Draw(Explain("NE=1,FOO=ü", nullptr, NS_UTIL::Surroundings::OfSystem()), {false, true}),
                testing::StartsWith("  NE=1,FOO=ü\n"
                                    "     | |\n"
                                    "     | +-- level \"FOO\"  <- unknown tag \"FOO\"\n"
                                    "     +---- network element 1\n"));
}

TEST(Draw, KeepsColumnsBehindNamesOfManyBytes) {
    EXPECT_THAT(DrawFdn("NE=1,LP=||3|北京 ü,SUBIF=7"),
                testing::StartsWith("  NE=1,LP=||3|北京 ü,SUBIF=7\n"
                                    "     │ │  │││ │            │\n"
                                    "     │ │  │││ │            ╰── sub-interface 7\n"));
}

TEST(Draw, PutsCaveatsBehindMeaningsAndNotesBelow) {
    EXPECT_EQ(DrawFdn("NE=1,FOO=2"),
              "  NE=1,FOO=2\n"
              "     │ │\n"
              "     │ ╰── level \"FOO\"  ← unknown tag \"FOO\"\n"
              "     ╰──── network element 1\n"
              "\n"
              "  ! no kind of identifier ends in the level \"FOO\"\n");
}

TEST(Draw, OfManyPartsTheFirstAreDrawnAndTheOthersCounted) {
    const auto commas = [](std::size_t count) { return "NE=1" + std::string(count, ','); };
    const auto meanings = [](const std::string& text) {
        std::size_t count = 0;
        for (auto at = text.find("╰"); at != std::string::npos; at = text.find("╰", at + 1)) {
            ++count;
        }
        return count;
    };
    const Explanation most = Explain(commas(199), nullptr, NS_UTIL::Surroundings::OfSystem());
    ASSERT_EQ(most.parts.size(), 200U);
    EXPECT_EQ(meanings(Draw(most)), 200U);
    EXPECT_THAT(Draw(most), testing::Not(testing::HasSubstr("not drawn")));

    const std::string oneMore = DrawFdn(commas(200));
    EXPECT_EQ(meanings(oneMore), 200U);
    EXPECT_THAT(oneMore, testing::HasSubstr("\n\n  ! 1 more part is not drawn\n"));

    const std::string many = DrawFdn(commas(20'000));
    EXPECT_THAT(many, testing::HasSubstr("\n\n  ! 19801 more parts are not drawn\n"));
    EXPECT_LT(many.size(), 1'000'000U);
    EXPECT_LT(DrawFdn(commas(40'000)).size(), 2 * many.size());
}

TEST(Draw, ColoursChangeNothingElse) {
    for (const std::string& fdn : {std::string("NE=12,LP=|65547|3|vlanif"), std::string("NE=1,FOO=2,,"),
                                   "NE=1" + std::string(300, ','), std::string()}) {
        EXPECT_EQ(WithoutColours(DrawFdn(fdn, true)), DrawFdn(fdn));
    }
    EXPECT_NE(DrawFdn("NE=12", true), DrawFdn("NE=12"));
}

TEST(Draw, OfNothingThereIsNoDrawing) {
    EXPECT_EQ(DrawFdn(""), "  ! the identifier is empty\n");
}

TEST(Draw, LetsNothingSteerTheTerminal) {
    EXPECT_EQ(DrawFdn("NE=1\x1b[2J,PP=||1|\x07").find_first_of("\x1b\x07"), std::string::npos);
}
