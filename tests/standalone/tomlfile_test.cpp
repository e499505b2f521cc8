#include <gmock/gmock.h>

#include <kx_platform/configitems.h>
#include <kx_platform/dawsvcinterface.h>

#include "support.h"

namespace {

using namespace NS_STANDALONE;
using namespace NS_TEST;
using NS_BUNDLEMGR1::CorbaConfigItems;

// Tests configuration files through the host that reads them.
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

std::string Repeated(std::size_t times, std::string_view text) {
    std::string all;
    for (std::size_t time = 0; time < times; ++time) {
        all += text;
    }
    return all;
}

// The parser calls itself for each level: without a bound, a file of a few kilobytes overflows the stack.
struct DeepText {
    const char* name;
    std::string (*make)();  // large texts, which other tests of the program need not wait for
    std::string place;
};

class TomlFileNestedTooDeep : public TomlFile, public testing::WithParamInterface<DeepText> {};

TEST_P(TomlFileNestedTooDeep, IsRefusedNamingLineAndColumn) {
    EXPECT_EQ(ErrorOf([&] { Load(GetParam().make()); }),
              PlaceOf(GetParam().place) + "keys, tables and arrays are nested more than 100 levels deep");
}

TEST_P(TomlFileNestedTooDeep, IsNoFileForTheDataAccessService) {
    Load("a = 1\n");
    WriteFile(m_folder / "other.cfg", GetParam().make());
    auto* const service = FindService<NS_SERVICE::DAWSvcInterface>("DAWSvcInterface");
    ASSERT_NE(service, nullptr);
    EXPECT_EQ(service->GetConfiguration("other.cfg", ""), nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    By, TomlFileNestedTooDeep,
    testing::Values(
        DeepText{"Key", [] { return "b = 2\na" + Repeated(40000, ".a") + " = 1\n"; }, "2:200"},
        DeepText{"QuotedKey", [] { return "\"\"" + Repeated(40000, " . 'é.'") + " = 1\n"; }, "1:697"},
        DeepText{"Header", [] { return "[a" + Repeated(1000000, ".a") + "]\n"; }, "1:201"},
        DeepText{"HeaderOfAnArray", [] { return "[[a" + Repeated(1000000, ".a") + "]]\n"; }, "1:202"},
        DeepText{"Arrays", [] { return "a = " + Repeated(1000000, "["); }, "1:104"},
        DeepText{"InlineTables", [] { return "a = " + Repeated(1000000, "{a = "); }, "1:500"},
        DeepText{"KeyInTheTableOfAHeader",
                 [] { return "[a" + Repeated(60, ".a") + "]\nb = 1\na" + Repeated(60, ".a") + " = 1\n"; }, "3:78"},
        DeepText{"KeyInAnInlineTable",
                 [] { return "a" + Repeated(90, ".a") + " = [1.5, {b = 1, a" + Repeated(90, ".a") + " = 1}]"; },
                 "1:214"},
        DeepText{"KeyAfterQuotesThatEndAText",
                 [] { return "a = {b = \"\"\"x\"\"\"\"\", c = '''y'''', a" + Repeated(40000, ".a") + " = 1}"; },
                 "1:232"}),
    [](const auto& parameter) { return std::string(parameter.param.name); });

TEST_F(TomlFile, MayBeNestedAHundredLevelsDeep) {
    const std::string deep = "a" + Repeated(99, ".a");
    for (const std::string& text :
         {deep + " = 1\n", "[" + deep + "]\n", "[s]\na = " + Repeated(98, "[") + Repeated(98, "]") + "\n",
          "a" + Repeated(49, ".a") + " = {b" + Repeated(49, ".a") + " = 1, c" + Repeated(49, ".a") + " = 1}\n"}) {
        EXPECT_NO_THROW(Load(text)) << text.substr(0, 40);
    }
}

TEST_F(TomlFile, MayHaveDotsAndBracketsThatNestNothing) {
    const std::string dots = Repeated(200, ".[{");
    Load("quoted = \"" + dots + "\\\"" + dots + "\"\nliteral = '" + dots + "' # " + dots + "\nlines = \"\"\"\n" + dots +
         "\"\n\\\"\"\"" + dots + "\"\"\"\nliteralLines = '''" + dots + "\n''" + dots + "'''\n\"" + dots + "\" = 1\n'a" +
         dots + "'.b = 1\n[section]\n# " + dots + "\nfractions = [" + Repeated(200, "1.5, # .[{\n") + "]\ntables = [" +
         Repeated(200, "{a.b = 1.5, c = []}, ") + "]\n" + Repeated(200, "[[array.of]]\na.b = 1\n"));
    EXPECT_EQ(Item("quoted"), dots + "\"" + dots);
    EXPECT_EQ(Item("literal"), dots);
}

}  // namespace
