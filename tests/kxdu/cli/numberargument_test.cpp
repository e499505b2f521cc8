#include "cli/numberargument.h"

#include <gtest/gtest.h>

namespace NS_KX::NS_KXDU {
namespace {

TEST(NumberArgument, AnArgumentThatIsNoneIsNamedWithTheRange) {
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
            EXPECT_EQ(failure.GetCause(), Cause::INPUT);
            EXPECT_EQ(failure.what(), '"' + argument + "\" is not a number from 0 to 65535" + advice);
        }
    }
}

}  // namespace
}  // namespace NS_KX::NS_KXDU
