#include "formats/jsonmember.h"

#include <gtest/gtest.h>

namespace NS_KX {
namespace {

std::string FdnIn(std::string_view line) {
    JsonMember member("fdn");
    return std::string(member.Find(line).value_or("none"));
}

TEST(JsonMember, IsFoundAnywhereInTheObject) {
    EXPECT_EQ(FdnIn(R"({"fdn":"NE=1","id":7})"), "NE=1");
    EXPECT_EQ(FdnIn(R"({"id":[{"fdn":"NE=2"}],"fdn":"NE=1,PP=16||1|a\"b\u00e9"})"), "NE=1,PP=16||1|a\"b\xC3\xA9");
}

TEST(JsonMember, IsGivenAsWrittenIfItIsNoText) {
    EXPECT_EQ(FdnIn(R"({"fdn": 7 })"), "7");
}

TEST(JsonMember, IsNoneInAnythingElse) {
    for (const char* const line :
         {"", "{", "[]", R"({"FDN":"NE=1"})", R"({"a":{"fdn":"NE=1"}})", R"("fdn")", R"({"fdn":"NE=1)", "NE=1"}) {
        EXPECT_EQ(FdnIn(line), "none") << line;
    }
}

TEST(JsonMember, IsFoundLineByLine) {
    JsonMember member("fdn");
    EXPECT_EQ(member.Find(R"({"fdn":"NE=1"})"), "NE=1");
    EXPECT_EQ(member.Find("damaged"), std::nullopt);
    EXPECT_EQ(member.Find(R"({"fdn":"NE=2"})"), "NE=2");
}

}  // namespace
}  // namespace NS_KX
