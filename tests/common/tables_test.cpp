// Compares the constant tables with the listing in tests/vectors/tables.json, row by row, and tests their look-ups.
#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <kx_domain_util/constanttables.h>
#include <kx_domain_util/fbtype.h>
#include <kx_domain_util/utilcommon.h>

namespace {

using NS_UTIL::UtilCommon;
using testing::ElementsAreArray;

// FB types of one group: those of an interface level, or those that belong to one bidirectional type.
struct Group {
    int key;
    std::string rate;
    std::vector<int> fbTypes;
};

class Listing {
public:
    Listing() {
        std::ifstream file(KX_TEST_DATA "/vectors/tables.json", std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        m_document.Parse(text.data(), text.size());
        if (!file || m_document.HasParseError()) {
            throw std::runtime_error("no listing of the tables");
        }
    }

    std::vector<int> Numbers(const char* table) const {
        std::vector<int> numbers;
        for (const auto& number : Rows(table)) {
            numbers.push_back(number.GetInt());
        }
        return numbers;
    }
    std::vector<std::pair<int, int>> NumberPairs(const char* table, const char* key, const char* value) const {
        std::vector<std::pair<int, int>> pairs;
        for (const auto& row : Rows(table)) {
            pairs.emplace_back(row[key].GetInt(), row[value].GetInt());
        }
        return pairs;
    }
    std::vector<std::pair<std::string, int>> Names(const char* table, const char* number) const {
        std::vector<std::pair<std::string, int>> names;
        for (const auto& row : Rows(table)) {
            names.emplace_back(row["name"].GetString(), row[number].GetInt());
        }
        return names;
    }
    std::vector<Group> Groups(const char* table, const char* key) const {
        std::vector<Group> groups;
        for (const auto& row : Rows(table)) {
            Group& group = groups.emplace_back(Group{row[key].GetInt(), {}, {}});
            group.rate = row.HasMember("rate") ? row["rate"].GetString() : "";
            for (const auto& fbType : row["fbTypes"].GetArray()) {
                group.fbTypes.push_back(fbType.GetInt());
            }
        }
        return groups;
    }

private:
    rapidjson::Value::ConstArray Rows(const char* table) const { return m_document[table].GetArray(); }

    rapidjson::Document m_document;
};

// The groups one after another, as pairs of FB type and group.
std::vector<std::pair<int, int>> Flatten(const std::vector<Group>& groups) {
    std::vector<std::pair<int, int>> pairs;
    for (const Group& group : groups) {
        for (const int fbType : group.fbTypes) {
            pairs.emplace_back(fbType, group.key);
        }
    }
    return pairs;
}

// Tests of a whole range ask for every number between these two, far beyond all listed ones.
constexpr int BELOW_ALL = -70000;
constexpr int ABOVE_ALL = 140000;

class Tables : public testing::Test {
protected:
    ~Tables() override { UtilCommon::Destroy(); }

    static int LevelOf(int fbType) {
        int level = -12345;
        UtilCommon::Instance()->FBType2InterfaceLevel(level, fbType);
        return level;
    }
    static int FbTypeOf(int level) {
        int fbType = -12345;
        UtilCommon::Instance()->InterfaceLevel2FBType(fbType, level);
        return fbType;
    }

    // Calls both overloads, which differ in the order of arguments.
    static std::string CtpNameOf(unsigned long ctpId) {
        std::string name = "what stood here before";
        UtilCommon::Instance()->InterfaceCTPId2TMFName(ctpId, name);
        std::string again = "what stood here before";
        UtilCommon::Instance()->InterfaceCTPId2TMFName(again, ctpId);
        EXPECT_EQ(again, name);
        return name;
    }
    static unsigned long CtpIdOf(const std::string& name) {
        unsigned long ctpId = 7;
        UtilCommon::Instance()->InterfaceTMFCTPName2ID(name, ctpId);
        unsigned long again = 7;
        UtilCommon::Instance()->InterfaceTMFCTPName2ID(again, name);
        EXPECT_EQ(again, ctpId);
        return ctpId;
    }

    Listing m_listing;
};

TEST_F(Tables, FbTypeNames) {
    const auto names = m_listing.Names("fbTypeNames", "fbType");
    ASSERT_EQ(names.size(), 31U);
    std::vector<std::pair<std::string, int>> rows;
    for (const auto& row : NS_UTIL::GetFbTypeNameRows()) {
        rows.emplace_back(row.name, row.fbType);
    }
    EXPECT_THAT(rows, ElementsAreArray(names));

    std::map<int, std::string> known;
    for (const auto& [name, fbType] : names) {
        EXPECT_TRUE(known.emplace(fbType, name).second) << fbType << " is listed twice";
    }
    for (int fbType = BELOW_ALL; fbType < ABOVE_ALL; ++fbType) {
        const auto name = known.find(fbType);
        ASSERT_EQ(NS_UTIL::GetFBTypeName(fbType), name != known.end() ? name->second : std::to_string(fbType));
    }
}

TEST_F(Tables, PtnAidFbTypes) {
    const auto listed = m_listing.Numbers("ptnAidFbTypes");
    ASSERT_EQ(listed.size(), 17U);
    EXPECT_EQ(std::count(listed.begin(), listed.end(), 4168), 2) << "one FB type is listed twice";
    EXPECT_THAT(NS_UTIL::GetPtnAidFbTypes(), ElementsAreArray(listed));

    const std::set<int> known(listed.begin(), listed.end());
    for (int fbType = BELOW_ALL; fbType < ABOVE_ALL; ++fbType) {
        ASSERT_EQ(NS_UTIL::IsPTNAIDFBType(fbType), known.contains(fbType)) << fbType;
    }
}

TEST_F(Tables, PortObjectFbTypes) {
    const auto listed = m_listing.Numbers("portObjectFbTypes");
    ASSERT_EQ(listed.size(), 13U);
    EXPECT_THAT(NS_UTIL::GetPortObjectFbTypes(), ElementsAreArray(listed));

    const std::set<int> known(listed.begin(), listed.end());
    for (int fbType = BELOW_ALL; fbType < ABOVE_ALL; ++fbType) {
        for (const int kind : {-3, 0, 1, 2, 3, 4, 65539}) {
            const bool isPort = known.contains(fbType) || (kind != 3 && (fbType == 2 || fbType == 3));
            ASSERT_EQ(NS_UTIL::IsPortObjByFbType(fbType, kind), isPort) << fbType << " of kind " << kind;
        }
    }
}

TEST_F(Tables, DomainNames) {
    const auto names = m_listing.Names("domainNames", "domainId");
    ASSERT_EQ(names.size(), 10U);
    std::vector<std::pair<std::string, int>> rows;
    for (const auto& row : NS_UTIL::GetDomainNameRows()) {
        rows.emplace_back(row.name, static_cast<int>(row.domainId));
    }
    EXPECT_THAT(rows, ElementsAreArray(names));

    std::map<unsigned int, std::string> known;
    for (const auto& [name, domainId] : names) {
        known.emplace(static_cast<unsigned int>(domainId), name);
    }
    for (unsigned int domainId = 0; domainId < 70000; ++domainId) {
        const auto name = known.find(domainId);
        ASSERT_EQ(NS_UTIL::GetDomainStrByID(domainId), name != known.end() ? name->second : "UNKNOWN") << domainId;
    }
    EXPECT_EQ(NS_UTIL::GetDomainStrByID(4294967295U), "UNKNOWN");
    EXPECT_EQ(NS_UTIL::GetDomainStrByID(65536U + 1), "UNKNOWN") << "an id is not cut to 16 bits";
}

TEST_F(Tables, LevelsOfFbTypes) {
    const auto listed = Flatten(m_listing.Groups("levels", "level"));
    ASSERT_EQ(listed.size(), 120U);
    std::vector<std::pair<int, int>> rows;
    for (const auto& row : NS_UTIL::GetFbTypeLevelRows()) {
        rows.emplace_back(row.fbType, row.level);
    }
    EXPECT_THAT(rows, ElementsAreArray(listed));

    const std::map<int, int> known(listed.begin(), listed.end());
    EXPECT_EQ(known.size(), 120U) << "no FB type stands twice";
    for (int fbType = BELOW_ALL; fbType < ABOVE_ALL; ++fbType) {
        const auto level = known.find(fbType);
        ASSERT_EQ(LevelOf(fbType), level != known.end() ? level->second : fbType);
    }
}

TEST_F(Tables, CanonicalFbTypesOfLevels) {
    const auto listed = m_listing.NumberPairs("canonicalFbTypes", "level", "fbType");
    ASSERT_EQ(listed.size(), 22U);
    std::vector<std::pair<int, int>> rows;
    for (const auto& row : NS_UTIL::GetLevelFbTypeRows()) {
        rows.emplace_back(row.level, row.fbType);
    }
    EXPECT_THAT(rows, ElementsAreArray(listed));

    const std::map<int, int> known(listed.begin(), listed.end());
    EXPECT_EQ(known.size(), 22U) << "no level stands twice";
    for (int level = BELOW_ALL; level < ABOVE_ALL; ++level) {
        const auto fbType = known.find(level);
        ASSERT_EQ(FbTypeOf(level), fbType != known.end() ? fbType->second : level);
    }
}

TEST_F(Tables, ALevelLeadsBackToTheFirstFbTypeOfItsGroup) {
    for (const Group& group : m_listing.Groups("levels", "level")) {
        for (const int fbType : group.fbTypes) {
            EXPECT_EQ(FbTypeOf(LevelOf(fbType)), group.fbTypes.front()) << fbType;
        }
    }
}

TEST_F(Tables, ALookUpMayOverwriteWhatItAsksFor) {
    int number = 862;
    UtilCommon::Instance()->FBType2InterfaceLevel(number, number);
    EXPECT_EQ(number, 12313);
    UtilCommon::Instance()->InterfaceLevel2FBType(number, number);
    EXPECT_EQ(number, 810);
}

TEST_F(Tables, BidirectionalFbTypes) {
    const auto listed = Flatten(m_listing.Groups("bidirFbTypes", "bidirFbType"));
    ASSERT_EQ(listed.size(), 149U);
    std::vector<std::pair<int, int>> rows;
    for (const auto& row : NS_UTIL::GetBidirFbTypeRows()) {
        rows.emplace_back(row.fbType, row.bidirFbType);
    }
    EXPECT_THAT(rows, ElementsAreArray(listed));

    const std::map<int, int> known(listed.begin(), listed.end());
    EXPECT_EQ(known.size(), 149U) << "no FB type stands twice";
    for (int fbType = 0; fbType <= 65535; ++fbType) {
        const auto bidirFbType = known.find(fbType);
        ASSERT_EQ(UtilCommon::Instance()->GetBidirFBType(static_cast<unsigned short>(fbType)),
                  bidirFbType != known.end() ? bidirFbType->second : fbType);
    }
}

TEST_F(Tables, CtpNames) {
    const auto names = m_listing.Names("ctpNames", "ctpId");
    ASSERT_EQ(names.size(), 12U);
    std::vector<std::pair<std::string, int>> rows;
    for (const auto& row : NS_UTIL::GetCtpNameRows()) {
        rows.emplace_back(row.name, static_cast<int>(row.ctpId));
    }
    EXPECT_THAT(rows, ElementsAreArray(names));

    std::map<unsigned long, std::string> known;
    for (const auto& [name, ctpId] : names) {
        EXPECT_EQ(ctpId, 65535 - std::stoi(name.substr(1))) << "they count down from the top of 16 bits";
        known.emplace(ctpId, name);
        EXPECT_EQ(CtpIdOf(name), static_cast<unsigned long>(ctpId)) << name;
    }
    for (unsigned long ctpId = 0; ctpId < ABOVE_ALL; ++ctpId) {
        const auto name = known.find(ctpId);
        ASSERT_EQ(CtpNameOf(ctpId), name != known.end() ? name->second : "") << ctpId;
    }
    EXPECT_EQ(CtpNameOf(0x100000000UL + 65535), "") << "an id is not cut to 32 bits";
}

TEST_F(Tables, NamesThatNoCtpHas) {
    for (const char* name : {"", "e0", "e10", "E12", "E00", "E", "E1 ", " E1", "E-1", "0"}) {
        EXPECT_EQ(CtpIdOf(name), 0UL) << name;
    }
    EXPECT_EQ(CtpIdOf(std::string("E1\0", 3)), 0UL) << "a NUL is a character like others";
}

TEST_F(Tables, ClientRates) {
    const auto names = m_listing.Names("clientRates", "level");
    ASSERT_EQ(names.size(), 17U);
    std::vector<std::pair<std::string, int>> rows;
    for (const auto& row : NS_UTIL::GetClientRateRows()) {
        rows.emplace_back(row.name, static_cast<int>(row.level));
    }
    EXPECT_THAT(rows, ElementsAreArray(names));

    const std::map<std::string, unsigned int> known(names.begin(), names.end());
    std::map<std::string, unsigned int> rates;
    UtilCommon::Instance()->InitClientRateMap(rates);
    EXPECT_EQ(rates, known);
    EXPECT_FALSE(rates.contains("ODUflex"));
}

TEST_F(Tables, ClientRatesAreThoseOfTheLevelsThatHaveOne) {
    std::map<std::string, unsigned int> ofLevels;
    for (const Group& group : m_listing.Groups("levels", "level")) {
        if (!group.rate.empty()) {
            ofLevels.emplace(group.rate, group.key);
        }
    }
    std::map<std::string, unsigned int> rates;
    UtilCommon::Instance()->InitClientRateMap(rates);
    EXPECT_EQ(rates, ofLevels);
    for (const auto& [name, level] : rates) {
        EXPECT_NE(FbTypeOf(static_cast<int>(level)), static_cast<int>(level)) << name;
    }
}

TEST_F(Tables, ClientRatesDoNotOverwriteWhatTheMapHolds) {
    std::map<std::string, unsigned int> rates{{"OCH", 7}, {"ODUflex", 8}};
    UtilCommon::Instance()->InitClientRateMap(rates);
    EXPECT_EQ(rates.size(), 18U);
    EXPECT_EQ(rates["OCH"], 7U);
    EXPECT_EQ(rates["ODUflex"], 8U);
    EXPECT_EQ(rates["ODUFLEX"], 12336U);
}

TEST_F(Tables, OpticalBoards) {
    const auto listed = m_listing.Numbers("opticalBoards");
    ASSERT_EQ(listed.size(), 18U);
    EXPECT_THAT(NS_UTIL::GetOpticalBoards(), ElementsAreArray(listed));

    const std::set<unsigned long> known(listed.begin(), listed.end());
    EXPECT_EQ(known.size(), 18U) << "no board type stands twice";
    for (unsigned long boardType = 0; boardType < ABOVE_ALL; ++boardType) {
        ASSERT_EQ(UtilCommon::Instance()->IsTiRoadmOpticalBoard(boardType), known.contains(boardType)) << boardType;
    }
    EXPECT_FALSE(UtilCommon::Instance()->IsTiRoadmOpticalBoard(0x100000000UL + 948)) << "not cut to 32 bits";
}

// Filling again changes no answer: the maps assign what they hold already.
TEST_F(Tables, FillingAgainChangesNoAnswer) {
    UtilCommon& utilCommon = *UtilCommon::Instance();
    utilCommon.InitFbType2ILMap();
    utilCommon.InitIL2FbTypeMap();
    utilCommon.InitOpticalBoardList();
    utilCommon.InitCTPId2TMFNameMap();
    utilCommon.InitTMFCTPName2ID();
    for (const auto& [fbType, level] : Flatten(m_listing.Groups("levels", "level"))) {
        EXPECT_EQ(LevelOf(fbType), level);
    }
    EXPECT_EQ(FbTypeOf(12342), 25);
    EXPECT_TRUE(utilCommon.IsTiRoadmOpticalBoard(2970));
    EXPECT_EQ(CtpNameOf(65524), "E11");
}

// Frequently asked cases.

TEST_F(Tables, SingleLevels) {
    EXPECT_EQ(LevelOf(202), 12342);
    EXPECT_EQ(LevelOf(12288), 12342);
    EXPECT_EQ(LevelOf(12291), 12342) << "an FB type whose number is also a level";
    EXPECT_EQ(LevelOf(61), 12292);
    EXPECT_EQ(LevelOf(999), 999);
    EXPECT_EQ(FbTypeOf(12291), 11);
    EXPECT_EQ(FbTypeOf(12342), 25);
    EXPECT_EQ(FbTypeOf(12288), 12288) << "an FB type, no level";
    EXPECT_EQ(FbTypeOf(LevelOf(862)), 810);
    EXPECT_EQ(FbTypeOf(LevelOf(212)), 829);
}

TEST_F(Tables, SingleBidirectionalFbTypes) {
    const auto bidir = [](unsigned short fbType) { return UtilCommon::Instance()->GetBidirFBType(fbType); };
    EXPECT_EQ(bidir(34), 1);
    EXPECT_EQ(bidir(117), 19);
    EXPECT_EQ(bidir(4299), 12);
    EXPECT_EQ(bidir(84), 77);
    EXPECT_EQ(bidir(919), 919);
    EXPECT_EQ(bidir(920), 919);
    EXPECT_EQ(bidir(921), 919);
    EXPECT_EQ(bidir(1), 1);
    EXPECT_EQ(bidir(65535), 65535);
}

TEST_F(Tables, SingleOpticalBoards) {
    for (const unsigned long boardType : {948UL, 949UL, 3605UL}) {
        EXPECT_TRUE(UtilCommon::Instance()->IsTiRoadmOpticalBoard(boardType)) << boardType;
    }
    for (const unsigned long boardType : {950UL, 0UL, 2302UL}) {
        EXPECT_FALSE(UtilCommon::Instance()->IsTiRoadmOpticalBoard(boardType)) << boardType;
    }
}

}  // namespace
