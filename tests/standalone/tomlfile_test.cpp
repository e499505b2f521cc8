#include <gmock/gmock.h>

#include <kx_platform/configitems.h>

#include "support.h"

namespace {

using namespace NS_STANDALONE;
using namespace NS_TEST;
using NS_BUNDLEMGR1::CorbaConfigItems;

// A configuration file, seen through the host that reads it.
class TomlFile : public testing::Test {
protected:
    void Load(const std::string& text) {
        WriteFile(m_folder / "kx_corbaagent_bundle/bundle.cfg", text);
        HostOptions options;
        options.configFolder = m_folder.Path();
        m_host.emplace(options);
    }

    std::string PlaceOf(const std::string& position) const {
        return (m_folder / "kx_corbaagent_bundle/bundle.cfg").string() + ":" + position + ": ";
    }

    static std::string Item(const std::string& key) {
        std::string value = "(missing)";
        CorbaConfigItems::Instance()->GetStrItemInfo(key, value);
        return value;
    }

    TemporaryFolder m_folder;
    std::optional<Host> m_host;
};

TEST_F(TomlFile, GivesTextsAsTheyAre) {
    Load("Whitelist = \"16,17||\\t1\"\nBlacklist = ''\n");
    EXPECT_EQ(Item("Whitelist"), "16,17||\t1");
    EXPECT_EQ(Item("Blacklist"), "");
}

TEST_F(TomlFile, GivesNumbersInDecimal) {
    Load("a = 0x10\nb = -5\nc = 1_000\nd = 9223372036854775807\n");
    EXPECT_EQ(Item("a"), "16");
    EXPECT_EQ(Item("b"), "-5");
    EXPECT_EQ(Item("c"), "1000");
    EXPECT_EQ(Item("d"), "9223372036854775807");
}

TEST_F(TomlFile, GivesBooleansAsNumbers) {
    Load("on = true\noff = false\n");
    EXPECT_EQ(Item("on"), "1");
    EXPECT_EQ(Item("off"), "0");
}

TEST_F(TomlFile, KeepsSectionsOutOfTheItems) {
    Load("a = 1\n[section]\nb = 2\nlist = [1, 2]\n[section.inner]\nc = 3\n");
    EXPECT_EQ(Item("a"), "1");
    EXPECT_EQ(Item("b"), "(missing)");
    EXPECT_EQ(Item("section"), "(missing)");
}

TEST_F(TomlFile, MayBeEmpty) {
    Load("");
    EXPECT_EQ(Item("a"), "(missing)");
}

TEST_F(TomlFile, RefusesItemsOfOtherTypesNamingKeyAndLine) {
    const std::string rest = "; only texts, whole numbers and booleans can be items";
    EXPECT_EQ(ErrorOf([&] { Load("a = 1\nlist = [1, 2]\n"); }),
              PlaceOf("2:8") + "item \"list\" is of type array" + rest);
    EXPECT_EQ(ErrorOf([&] { Load("\n\nrate = 1.5\n"); }),
              PlaceOf("3:8") + "item \"rate\" is of type floating-point" + rest);
    EXPECT_EQ(ErrorOf([&] { Load("day = 2024-01-31\n"); }), PlaceOf("1:7") + "item \"day\" is of type date" + rest);
    EXPECT_EQ(Item("a"), "(missing)");
}

TEST_F(TomlFile, RefusesWhatDoesNotParseNamingLineAndColumn) {
    EXPECT_THAT(ErrorOf([&] { Load("a = 1\nb = \n"); }), testing::StartsWith(PlaceOf("2:5")));
    EXPECT_THAT(ErrorOf([&] { Load("a = 1\na = 2\n"); }), testing::StartsWith(PlaceOf("2:5")));
    EXPECT_THAT(ErrorOf([&] { Load("a = 1\n\n[open\n"); }), testing::StartsWith(PlaceOf("3:6")));
    EXPECT_THAT(ErrorOf([&] { Load("a = 99999999999999999999\n"); }), testing::StartsWith(PlaceOf("1:25")));
    EXPECT_EQ(Item("a"), "(missing)");
}

}  // namespace
