#include "text/displaytext.h"

#include <gtest/gtest.h>

using namespace NS_KX;

TEST(Printable, LeavesTextAlone) {
    EXPECT_EQ(Printable(""), "");
    EXPECT_EQ(Printable("GE0/7 → München 北京"), "GE0/7 → München 北京");
}

TEST(Printable, ReplacesWhatWouldSteerTheTerminal) {
    EXPECT_EQ(Printable("a\x1b[31mb"), "a�[31mb");
    EXPECT_EQ(Printable("a\tb\nc\x7f"), "a�b�c�");
    EXPECT_EQ(Printable("a\xC2\x9B"
                        "b"),
              "a�b");  // a control character beyond ASCII
    EXPECT_EQ(Printable("a\xE2\x80\xAE"
                        "b"),
              "a�b");  // makes the terminal write the following text from right to left
}

TEST(Printable, ReplacesEachByteThatIsNotUtf8) {
    EXPECT_EQ(Printable("M\xFCnchen"), "M�nchen");
    EXPECT_EQ(Printable("\xFF\xFE"), "��");
    EXPECT_EQ(Printable("a\xE2\x82"), "a��");
}

TEST(DisplayWidth, CountsColumnsNotBytes) {
    EXPECT_EQ(DisplayWidth(""), 0U);
    EXPECT_EQ(DisplayWidth("GE0/7"), 5U);
    EXPECT_EQ(DisplayWidth("München"), 7U);
    EXPECT_EQ(DisplayWidth("→"), 1U);
    EXPECT_EQ(DisplayWidth("北京"), 4U);
    EXPECT_EQ(DisplayWidth("A\xCC\x8A"), 1U);         // a letter and a combining ring
    EXPECT_EQ(DisplayWidth("\xF0\x9F\x93\xA1"), 2U);  // a satellite antenna
}
