#include "verbs/notificationid.h"

#include <gtest/gtest.h>

namespace NS_KX::NS_KXDU {
namespace {

TEST(NotificationId, IsTheFirstFieldThatIsANumber) {
    const auto reader = MakeFirstNumberReader(BLANKS);
    EXPECT_EQ(reader->Read("5"), 5);
    EXPECT_EQ(reader->Read("  \t5\t6"), 5);
    EXPECT_EQ(reader->Read("2024-05-01 12:00 id=1 5 6"), 5);
    EXPECT_EQ(reader->Read("-1 1.5 +3 1700000000000 5\r"), 5) << "fields that are no identifier are skipped";
    EXPECT_EQ(reader->Read("a\xff"
                           "5 6"),
              6);
    EXPECT_EQ(reader->Read(std::string_view("4\0 6", 4)), 6) << "a NUL byte belongs to its field";
}

TEST(NotificationId, ALineNeedNotHaveOne) {
    const auto reader = MakeFirstNumberReader(BLANKS);
    for (const char* const line : {"", " ", "\r", "a b\tc", "-1", "2147483648"}) {
        EXPECT_EQ(reader->Read(line), std::nullopt) << line;
    }
}

TEST(NotificationId, AFieldCountsFromZeroAndSeparatorsTogetherAsOne) {
    const auto second = MakeFieldReader(1, BLANKS);
    EXPECT_EQ(second->Read("1 2 3"), 2);
    EXPECT_EQ(second->Read(" \t1\t\t 2\r"), 2);
    EXPECT_EQ(second->Read("1 x 3"), std::nullopt) << "no other field is taken in its place";
    EXPECT_EQ(second->Read("1"), std::nullopt);
    EXPECT_EQ(second->Read(""), std::nullopt);
    EXPECT_EQ(MakeFieldReader(0, BLANKS)->Read("1 2"), 1);
}

TEST(NotificationId, ADelimiterSeparatesFieldsThatMayBeEmptyOrQuoted) {
    const auto third = MakeFieldReader(2, ';');
    EXPECT_EQ(third->Read("1;;3;4"), 3);
    EXPECT_EQ(third->Read("\"1;2\";\"a \"\"b\"\"\";\"3\""), 3);
    EXPECT_EQ(third->Read("1;2; 3\t\r"), 3) << "blanks around a number do not count";
    for (const char* const line : {"", "1;2", "1;2;", "1;2;3 4", "1;2;x", "1;\"2;3", "1;a\"b;3", "1;\"2\"a;3"}) {
        EXPECT_EQ(third->Read(line), std::nullopt) << line;
    }
    EXPECT_EQ(third->Read("1;2;3;\"4"), 3) << "what follows is not looked at";
    EXPECT_EQ(MakeFirstNumberReader(',')->Read("2024-05-01,\"12 13\",,5,6"), 5);
    EXPECT_EQ(MakeFieldReader(1, '\t')->Read("a b\t5"), 5);
}

TEST(NotificationId, OtherNumbersOfALineAreFoundWithTheirFields) {
    const auto isSeven = [](int number) { return number == 7; };
    const auto found = FindNumberField("1 x 7 7", BLANKS, isSeven);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->field, 2U);
    EXPECT_EQ(found->number, 7);
    EXPECT_EQ(FindNumberField(",,\"7\"", ',', isSeven)->field, 2U);
    EXPECT_FALSE(FindNumberField("1 77 x7", BLANKS, isSeven));
}

TEST(NotificationId, AMemberIsANumberOrATextThatIsOne) {
    const auto reader = MakeJsonMemberReader("id");
    EXPECT_EQ(reader->Read(R"({"id":0})"), 0);
    EXPECT_EQ(reader->Read(R"( { "a" : "b" , "id" : 2147483647 } )"), 2147483647);
    EXPECT_EQ(reader->Read(R"({"id":"7"})"), 7);
    EXPECT_EQ(reader->Read("{\"\\u0069d\":7}\r"), 7) << "a name may be escaped";
    for (const char* const value : {"-1", "2147483648", "99999999999", "99999999999999999999", "1.0", "1e1", "null",
                                    "true", "[7]", "{\"id\":7}", "\"\"", "\"x\"", "\" 7\"", "\"-7\""}) {
        EXPECT_EQ(reader->Read("{\"id\":" + std::string(value) + "}"), std::nullopt) << value;
    }
}

TEST(NotificationId, OnlyMembersOfTheObjectItselfCountAndTheFirstOfAName) {
    const auto reader = MakeJsonMemberReader("id");
    EXPECT_EQ(reader->Read(R"({"a":{"id":1},"b":[{"id":2}],"c":"id","id":3,"id":4})"), 3);
    EXPECT_EQ(reader->Read(R"({"id":null,"id":4})"), std::nullopt);
    EXPECT_EQ(reader->Read(R"([{"id":1}])"), std::nullopt);
    EXPECT_EQ(reader->Read(R"({"ID":1,"i":2,"idx":3})"), std::nullopt);
}

TEST(NotificationId, BehindTheMemberALineMayBeAnything) {
    const auto reader = MakeJsonMemberReader("id");
    EXPECT_EQ(reader->Read(R"({"id":7,"a":)"), 7);
    EXPECT_EQ(reader->Read(R"({"id":7 and so on)"), 7);
    EXPECT_EQ(reader->Read(R"({"id":7,"text":"cut off)"), 7);
    EXPECT_EQ(reader->Read(R"({"id":7,"text":"cut off \\\)"), 7);
    EXPECT_EQ(reader->Read("{\"\xe9\":\"\xff\",\"id\":7,\"text\":\"\xe9\xff\"}"), 7) << "other encodings pass too";
    EXPECT_EQ(reader->Read("{\"id\":\"7\",\"text\":\"cut off \xc3"), 7);
    for (const char* const line : {"", "id", "7", "{", R"({"id")", R"({"id":)", R"({"id":7)", R"({"id":"7)",
                                   R"({"id":"7\)", R"({"id)", R"({a:1,"id":7})", R"({"a":1 "id":7})"}) {
        EXPECT_EQ(reader->Read(line), std::nullopt) << line;
    }
}

TEST(NotificationId, DeepNestingIsNoProblem) {
    const auto reader = MakeJsonMemberReader("id");
    const std::string open(300'000, '[');
    const std::string close(300'000, ']');
    EXPECT_EQ(reader->Read("{\"a\":" + open + close + ",\"id\":7}"), 7);
    EXPECT_EQ(reader->Read(open), std::nullopt);
    EXPECT_EQ(reader->Read("{\"id\":7}"), 7) << "a failed line does not affect the next one";
}

}  // namespace
}  // namespace NS_KX::NS_KXDU
