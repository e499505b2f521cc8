#include "cli/wrapping.h"

#include <gtest/gtest.h>

namespace NS_KX::NS_KXDU {
namespace {

TEST(Wrapping, BeginsALineBeforeTheWordThatIsTooWide) {
    EXPECT_EQ(Wrapped("  ", {}), "  ");
    EXPECT_EQ(Wrapped("  of: ", {"a", "b"}), "  of: a b");
    const std::string word(57, 'x');
    EXPECT_EQ(Wrapped("head ", {word, word, "y"}), "head " + word + " " + word + "\n     y");
    EXPECT_EQ(Wrapped("head:", {word, word + "x", "y"}), "head:" + word + "\n     " + word + "x y");
    EXPECT_EQ(Wrapped("", {std::string(200, 'x'), "y"}), std::string(200, 'x') + "\ny") << "a word stays whole";
}

}  // namespace
}  // namespace NS_KX::NS_KXDU
