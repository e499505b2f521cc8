#include "lines/terminal.h"

#include <cstdlib>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <unistd.h>

namespace NS_KX {
namespace {

// A terminal of 57 columns.
class TerminalTest : public testing::Test {
protected:
    TerminalTest() {
        winsize size{};
        size.ws_row = 10;
        size.ws_col = 57;
        EXPECT_EQ(openpty(&m_controller, &terminal, nullptr, nullptr, &size), 0);
        unsetenv("COLUMNS");
        setenv("TERM", "xterm", 1);
    }
    ~TerminalTest() override {
        close(terminal);
        close(m_controller);
    }

    int terminal = -1;

private:
    int m_controller = -1;
};

TEST_F(TerminalTest, ObeysUnlessItIsDumb) {
    EXPECT_TRUE(IsCapableTerminal(terminal));
    setenv("TERM", "dumb", 1);
    EXPECT_FALSE(IsCapableTerminal(terminal));
    unsetenv("TERM");
    EXPECT_TRUE(IsCapableTerminal(terminal));
}

TEST_F(TerminalTest, AFileIsNone) {
    const int null = open("/dev/null", O_RDONLY | O_CLOEXEC);
    EXPECT_FALSE(IsCapableTerminal(null));
    EXPECT_EQ(ColumnsOf(null, 99), 99U);
    close(null);
}

TEST_F(TerminalTest, IsAsWideAsItSaysUnlessColumnsSaysOtherwise) {
    EXPECT_EQ(ColumnsOf(terminal, 99), 57U);
    setenv("COLUMNS", "33", 1);
    EXPECT_EQ(ColumnsOf(terminal, 99), 33U);
    for (const char* const nonsense : {"", "0", "-5", "wide"}) {
        setenv("COLUMNS", nonsense, 1);
        EXPECT_EQ(ColumnsOf(terminal, 99), 57U) << nonsense;
    }
}

TEST(Locale, IsUtf8OrNot) {
    for (const auto& [name, isUtf8] :
         {std::pair("C.UTF-8", true), {"C", false}, {"POSIX", false}, {"no_SUCH", false}}) {
        setenv("LC_ALL", name, 1);
        EXPECT_EQ(IsUtf8Locale(), isUtf8) << name;
    }
    unsetenv("LC_ALL");
}

}  // namespace
}  // namespace NS_KX
