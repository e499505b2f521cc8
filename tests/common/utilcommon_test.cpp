#include <array>
#include <barrier>
#include <cstddef>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <kx_domain_util/constanttables.h>
#include <kx_domain_util/utilcommon.h>

#include "support/exacttext.h"
#include "support/generated.h"
#include "support/literalutilcommon.h"
#include "support/scale.h"
#include "support/services.h"

namespace {

using NS_TEST::Chance;
using NS_TEST::Configuration;
using NS_TEST::ExactText;
using NS_TEST::IdentifierGenerator;
using NS_TEST::LiteralUtilCommon;
using NS_TEST::RecordingLog;
using NS_TEST::Registration;
using NS_TEST::Scaled;
using NS_UTIL::UtilCommon;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

using Fields = std::map<int, std::string>;
using Path = std::map<int, int>;

// Builds texts from pieces, so that the interesting ones come up often.
template <std::size_t Size>
std::string Put(Chance& chance, const std::array<std::string_view, Size>& pieces) {
    std::string text;
    for (std::size_t left = chance.Below(9); left > 0; --left) {
        text += chance.From(pieces);
    }
    if (chance.Once(4)) {
        text.insert(chance.Below(text.size() + 1), 1, static_cast<char>(chance.Next()));
    }
    return text;
}

// ---- The text helpers -----------------------------------------------------------------------------------------------

class UtilCommonTexts : public testing::Test {
protected:
    ~UtilCommonTexts() override { UtilCommon::Destroy(); }

    Fields Line(const std::string& line) const {
        Fields fields;
        m_utilCommon.GetSplitePPDataByLine(fields, ExactText(line));
        Fields again;
        m_utilCommon.GetSpliteFBDataByLine(again, ExactText(line));
        EXPECT_EQ(fields, again) << "the two names of one operation differ";
        return fields;
    }
    Path PathOf(const std::string& line) const {
        Path path;
        m_utilCommon.GetSplitePATHDataByLine(path, ExactText(line));
        return path;
    }

    const UtilCommon& m_utilCommon = *UtilCommon::Instance();
};

TEST_F(UtilCommonTexts, MocOfAnFdn) {
    const std::map<std::string, std::string> mocs{
        {"", ""},
        {"NE=1", "NE"},
        {"NE=5", "NE"},
        {"NE=1,FR=2,S=3", "S"},
        {"NE=1,PP=3,CLI_NAME=x", "PP"},
        {"NE=1,LP=7,CLI_NAME=x", "LP"},
        {"NE=1,LP=7,PP=3,CLI_NAME=x", "PP"},
        {"NE=1,CLI_NAME=x", ""},
        {"NE=1,CLI_NAME=PP=x", "CLI_NAME=PP"},
        {"NE=1,XPP=1,CLI_NAME=x", "PP"},
        {"CLI_NAME=x", "CLI_NAME"},
        {"CLI_NAME=PP=x", "CLI_NAME=PP"},
        {"OS", "OS"},
        {"SYSTEM", "OS"},
        {"OS=1", "OS"},
        {"SYSTEM=1", "SYSTEM"},
        {"OS=1,abc", "OS"},
        {"SYSTEM=1,abc", "OS"},
        {"SYSTEM=1,abc,def", "OS"},
        {"OS,abc", ""},
        {"NE=1,OS", ""},
        {"NE=1,abc", ""},
        {"OS=1,NE=2,abc", ""},
        {"NE", ""},
        {"os", ""},
        {",", ""},
        {"=", ""},
        {",=", ""},
        {"=,", ""},
        {"NE=1,", ""},
        {"NE=1,PP=16||2|a=b", "PP=16||2|a"},
        {"NE=a=b", "NE=a"},
        {" NE=1", " NE"},
        {"NE=1, S=3", " S"},
    };
    for (const auto& [fdn, moc] : mocs) {
        EXPECT_EQ(m_utilCommon.GetMoc(ExactText(fdn)), moc) << fdn;
        EXPECT_EQ(LiteralUtilCommon::GetMoc(fdn), moc) << fdn;
    }
}

TEST_F(UtilCommonTexts, MocOfAnyText) {
    static constexpr std::array<std::string_view, 14> PIECES{
        ",", "=", "OS", "SYSTEM", "CLI_NAME", "PP=", "LP=", "abc", "NE=", ",CLI_NAME=", "1", ",", ",PP=16|", " "};
    IdentifierGenerator identifiers(21);
    Chance chance(22);
    for (std::size_t round = 0; round < Scaled(200000); ++round) {
        const std::string fdn = round % 3 == 0 ? identifiers.Next() : Put(chance, PIECES);
        ASSERT_EQ(m_utilCommon.GetMoc(ExactText(fdn)), LiteralUtilCommon::GetMoc(fdn)) << testing::PrintToString(fdn);
    }
}

TEST_F(UtilCommonTexts, FieldsOfALine) {
    const std::map<std::string, Fields> lines{
        {"a|b|c|d|e", {{0, "a"}, {1, "b"}, {2, "c"}, {3, "d|e"}}},
        {"a|b|c|d", {{0, "a"}, {1, "b"}, {2, "c"}, {3, "d"}}},
        {"a||c|", {{0, "a"}, {1, "-1"}, {2, "c"}, {3, ""}}},
        {"|||", {{0, "-1"}, {1, "-1"}, {2, "-1"}, {3, ""}}},
        {"||||", {{0, "-1"}, {1, "-1"}, {2, "-1"}, {3, "|"}}},
        {"abc", {{3, "abc"}}},
        {"", {{3, ""}}},
        {"a|b", {{0, "a"}, {2, "a"}, {3, "b"}}},
        {"|", {{0, "-1"}, {2, "-1"}, {3, ""}}},
        {"a|", {{0, "a"}, {2, "a"}, {3, ""}}},
        {"a|b|c", {{0, "a"}, {1, "b"}, {3, "a|b|c"}}},
        {"a|b|", {{0, "a"}, {1, "b"}, {3, "a|b|"}}},
    };
    for (const auto& [line, fields] : lines) {
        EXPECT_EQ(Line(line), fields) << line;
    }
}

TEST_F(UtilCommonTexts, FieldsOverwriteTheirKeysOnly) {
    Fields fields{{-1, "x"}, {0, "x"}, {1, "x"}, {2, "x"}, {3, "x"}, {4, "x"}};
    m_utilCommon.GetSplitePPDataByLine(fields, ExactText("a|b"));
    EXPECT_EQ(fields, (Fields{{-1, "x"}, {0, "a"}, {1, "x"}, {2, "a"}, {3, "b"}, {4, "x"}}));
}

TEST_F(UtilCommonTexts, FieldsOfAnyLine) {
    static constexpr std::array<std::string_view, 8> PIECES{"|", "|", "||", "a", "bc", "-1", "", "16|1025|"};
    Chance chance(23);
    for (std::size_t round = 0; round < Scaled(200000); ++round) {
        const std::string line = Put(chance, PIECES);
        Fields expected;
        LiteralUtilCommon::GetSplitePPDataByLine(expected, line);
        ASSERT_EQ(Line(line), expected) << testing::PrintToString(line);
    }
}

TEST_F(UtilCommonTexts, RatesOfAPath) {
    EXPECT_EQ(PathOf("ODU2:1-ODU0:8"), (Path{{12327, 1}, {12332, 8}}));
    EXPECT_EQ(PathOf("odu2:1-Odu0:8-oduFlex:3"), (Path{{12327, 1}, {12332, 8}, {12336, 3}}))
        << "lower case is accepted";
    EXPECT_THAT(PathOf(""), IsEmpty());
    EXPECT_THAT(PathOf("-"), IsEmpty());
    EXPECT_THAT(PathOf("ODU2"), IsEmpty()) << "no number";
    EXPECT_THAT(PathOf("ODU9:1-:5- ODU2:1-ODU2 :1"), IsEmpty()) << "no such rate";
    EXPECT_EQ(PathOf("ODU2-ODU1:4"), (Path{{12329, 4}})) << "a skipped piece does not end the path";
    EXPECT_EQ(PathOf("ODU2:x"), (Path{{12327, 0}}));
    EXPECT_EQ(PathOf("ODU2:"), (Path{{12327, 0}}));
    EXPECT_EQ(PathOf("ODU2: +7z"), (Path{{12327, 7}}));
    EXPECT_EQ(PathOf("ODU2:-7"), (Path{{12327, 0}})) << "the sign is a separator";
    EXPECT_EQ(PathOf("ODU2:1:2"), (Path{{12327, 1}})) << "cut at the first colon";
    EXPECT_EQ(PathOf("ODU2:1-ODU2:9"), (Path{{12327, 9}})) << "the last of a rate wins";
    EXPECT_EQ(PathOf("ODU2:4294967295"), (Path{{12327, -1}}));
}

TEST_F(UtilCommonTexts, RatesOverwriteTheirLevelsOnly) {
    Path path{{12327, 5}, {12332, 6}, {1, 7}};
    m_utilCommon.GetSplitePATHDataByLine(path, ExactText("ODU2:1"));
    EXPECT_EQ(path, (Path{{12327, 1}, {12332, 6}, {1, 7}}));
}

TEST_F(UtilCommonTexts, RatesOfAnyPath) {
    static constexpr std::array<std::string_view, 20> PIECES{
        "-",          "-",  "-",    ":", ":",  "ODU2:", "odu0:",  "ODUflex:", "OCH:",
        "OTUCN:",     "12", "ODU2", "x", "+5", " ",     "ODU25:", "otu5g",    "99999999999999999999",
        "4294967296", "0"};
    Chance chance(24);
    std::size_t found = 0;
    for (std::size_t round = 0; round < Scaled(60000); ++round) {
        const std::string line = Put(chance, PIECES);
        Path expected;
        LiteralUtilCommon::GetSplitePATHDataByLine(expected, line);
        ASSERT_EQ(PathOf(line), expected) << testing::PrintToString(line);
        found += expected.size();
    }
    EXPECT_GT(found, Scaled(60000) / 4) << "too few rates were found for this to say anything";
}

// ---- Calls that the platform answers --------------------------------------------------------------------------------

TEST_F(UtilCommonTexts, SplitsItemsIntoAMap) {
    using Texts = std::map<std::string, std::string>;
    Texts out{{"OLD", "1"}};
    m_utilCommon.GetSpliteFDNData(out, "NE=5,XY,NE=6,PP=16||a=b,=7", ",");
    EXPECT_EQ(out, (Texts{{"OLD", "1"}, {"NE", "5"}, {"PP", "16||a=b"}, {"", "7"}}));
    Texts again{{"OLD", "1"}};
    m_utilCommon.GetSplitNameValueMapbyTag(again, "NE=5,XY,NE=6,PP=16||a=b,=7", ",");
    EXPECT_EQ(again, out);
    Texts other;
    m_utilCommon.GetSpliteFDNData(other, "a=1::b=2", "::");
    EXPECT_EQ(other, (Texts{{"a", "1"}, {"b", "2"}}));
}

TEST_F(UtilCommonTexts, LooksValuesUp) {
    std::string value = "before";
    EXPECT_FALSE(m_utilCommon.GetDataFromMap(std::map<std::string, std::string>{{"a", "1"}}, "b", value));
    EXPECT_EQ(value, "before");
    EXPECT_TRUE(m_utilCommon.GetDataFromMap(std::map<std::string, std::string>{{"a", "1"}}, "a", value));
    EXPECT_EQ(value, "1");
    EXPECT_FALSE(m_utilCommon.GetDataFromMap(Fields{{1, "one"}}, 2, value));
    EXPECT_EQ(value, "1");
    EXPECT_TRUE(m_utilCommon.GetDataFromMap(Fields{{1, "one"}}, 1, value));
    EXPECT_EQ(value, "one");

    int number = 9;
    const std::map<std::string, std::string> numbers{{"NE", "5x"}, {"FR", ""}};
    EXPECT_FALSE(m_utilCommon.GetIntegerValueByName(numbers, "S", number));
    EXPECT_EQ(number, 9);
    EXPECT_TRUE(m_utilCommon.GetIntegerValueByName(numbers, "NE", number));
    EXPECT_EQ(number, 5);
    EXPECT_TRUE(m_utilCommon.GetIntegerValueByName(numbers, "FR", number));
    EXPECT_EQ(number, 0);
}

TEST_F(UtilCommonTexts, ReadsConfigurationItems) {
    const Configuration configuration({{"Some", "text"}, {"Empty", ""}});
    std::string value = "before";
    EXPECT_TRUE(m_utilCommon.IsSupportCfgItem("Some"));
    EXPECT_TRUE(m_utilCommon.IsSupportCfgItem("Empty"));
    EXPECT_FALSE(m_utilCommon.IsSupportCfgItem("Other"));
    EXPECT_FALSE(m_utilCommon.GetSupportCfgItem("Other", value));
    EXPECT_EQ(value, "before");
    EXPECT_TRUE(m_utilCommon.GetSupportCfgItem("Some", value));
    EXPECT_EQ(value, "text");
    EXPECT_TRUE(m_utilCommon.GetSupportCfgItem("Empty", value));
    EXPECT_EQ(value, "");
}

// ---- The frame size of performance data -----------------------------------------------------------------------------

TEST_F(UtilCommonTexts, PfmPacketSize) {
    const Configuration configuration;
    EXPECT_EQ(m_utilCommon.GetPFMPacketSize(), 2000) << "no item";
    const std::map<std::string, int> sizes{{"0", 0},
                                           {"1", 1},
                                           {"2000", 2000},
                                           {"6000", 6000},
                                           {"6001", 2000},
                                           {"-1", 2000},
                                           {"-6000", 2000},
                                           {"2147483647", 2000},
                                           {"-2147483648", 2000},
                                           {"", 2000},
                                           {"many", 2000},
                                           {"4294967296", 2000}};
    for (const auto& [item, size] : sizes) {
        Configuration::Set("PfmFrameRdSize", item);
        EXPECT_EQ(m_utilCommon.GetPFMPacketSize(), size) << item << ", read at every call";
    }
    Configuration::Remove("PfmFrameRdSize");
    EXPECT_EQ(m_utilCommon.GetPFMPacketSize(), 2000);
}

TEST_F(UtilCommonTexts, PfmPacketSizeIsLogged) {
    const Configuration configuration({{"PfmFrameRdSize", "1500"}});
    RecordingLog log;
    {
        const Registration registration("LogSvcInterface", log);
        EXPECT_EQ(m_utilCommon.GetPFMPacketSize(), 1500);
        Configuration::Set("PfmFrameRdSize", "6001");
        EXPECT_EQ(m_utilCommon.GetPFMPacketSize(), 2000);
    }
    m_utilCommon.GetPFMPacketSize();
    using Record = RecordingLog::Record;
    EXPECT_THAT(
        log.m_records,
        ElementsAre(Record{"utilcommon", "unknown", 766, 3, "[UtilCommon::GetPFMPacketSize]: PfmFrameRdSize = 1500"},
                    Record{"utilcommon", "unknown", 766, 3, "[UtilCommon::GetPFMPacketSize]: PfmFrameRdSize = 2000"}));
    EXPECT_THAT(log.m_asked, ElementsAre(RecordingLog::LoggerName{"vemo", "vemo", "debug"})) << "asks once";
}

TEST_F(UtilCommonTexts, ALogServiceThatFailsChangesNoAnswer) {
    const Configuration configuration({{"PfmFrameRdSize", "1500"}});
    RecordingLog log;
    const Registration registration("LogSvcInterface", log);
    log.m_throws = true;
    EXPECT_EQ(m_utilCommon.GetPFMPacketSize(), 1500);
    log.m_throws = false;
    log.m_hasLogger = false;
    EXPECT_EQ(m_utilCommon.GetPFMPacketSize(), 1500);
    EXPECT_THAT(log.m_records, IsEmpty());
    log.m_hasLogger = true;
    EXPECT_EQ(m_utilCommon.GetPFMPacketSize(), 1500);
    EXPECT_EQ(log.m_records.size(), 1U) << "the next record tries again";
}

// ---- The instance ---------------------------------------------------------------------------------------------------

TEST(UtilCommonInstance, IsOneUntilItIsDestroyed) {
    UtilCommon::Destroy();
    UtilCommon* const first = UtilCommon::Instance();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(UtilCommon::Instance(), first);
    UtilCommon::Destroy();
    UtilCommon::Destroy();
    ASSERT_NE(UtilCommon::Instance(), nullptr);
    int level = 0;
    UtilCommon::Instance()->FBType2InterfaceLevel(level, 202);
    EXPECT_EQ(level, 12342);
    UtilCommon::Destroy();
}

TEST(UtilCommonInstance, IsOneForThreadsThatAskAtOnce) {
    for (std::size_t round = 0; round < Scaled(600); ++round) {
        UtilCommon::Destroy();
        std::array<UtilCommon*, 4> seen{};
        std::array<int, 4> levels{};
        std::barrier start(static_cast<std::ptrdiff_t>(seen.size()));
        std::vector<std::thread> threads;
        for (std::size_t at = 0; at < seen.size(); ++at) {
            threads.emplace_back([&seen, &levels, &start, at] {
                start.arrive_and_wait();
                seen[at] = UtilCommon::Instance();
                seen[at]->FBType2InterfaceLevel(levels[at], 897);  // the last row to be filled in
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        ASSERT_NE(seen[0], nullptr);
        EXPECT_THAT(seen, testing::Each(seen[0]));
        EXPECT_THAT(levels, testing::Each(12324));
    }
    UtilCommon::Destroy();
}

}  // namespace
