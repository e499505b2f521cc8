#include "text/number.h"

#include <gtest/gtest.h>

#include "cli/numberargument.h"

namespace NS_KXDU {
namespace {

TEST(Number, IsDecimalDigitsUpToTheLargestInt) {
    EXPECT_EQ(ReadNumber("0"), 0);
    EXPECT_EQ(ReadNumber("007"), 7);
    EXPECT_EQ(ReadNumber("2147483647"), 2147483647);
}

TEST(Number, NothingElseIsOne) {
    for (const char* const text :
         {"", "-1", "+1", " 1", "1 ", "0x1", "1.0", "x", "2147483648", "99999999999999999999"}) {
        EXPECT_EQ(ReadNumber(text), std::nullopt) << text;
    }
}

TEST(Number, IsDecimalAtAnyLengthAndBelowZero) {
    for (const char* const text : {"0", "-1", "007", "99999999999999999999"}) {
        EXPECT_TRUE(IsDecimal(text)) << text;
    }
    for (const char* const text : {"", "-", "+1", "1 ", "--1", "1x"}) {
        EXPECT_FALSE(IsDecimal(text)) << text;
    }
}

TEST(Number, AnArgumentThatIsNoneIsNamedWithTheRange) {
    EXPECT_EQ(ParseNumber("65535", 65535), 65535);
    for (const auto& [argument, advice] :
         std::initializer_list<std::pair<std::string, std::string>>{{"65536", ""},
                                                                    {"-1", ""},
                                                                    {"", ""},
                                                                    {"x", "; names do not count"},
                                                                    {"8,9", "; separate numbers by blanks"}}) {
        try {
            static_cast<void>(ParseNumber(argument, 65535, "; names do not count"));
            ADD_FAILURE() << argument;
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.Code(), ExitCode::USAGE);
            EXPECT_EQ(failure.what(), '"' + argument + "\" is not a number from 0 to 65535" + advice);
        }
    }
}

}  // namespace
}  // namespace NS_KXDU
