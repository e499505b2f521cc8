#include <algorithm>

#include <rapidjson/document.h>

#include "formats/csv.h"
#include "kxdu/program.h"

namespace NS_KX::NS_KXDU {
namespace {

class TablesVerb : public ProgramTest {
protected:
    TablesVerb() {
        std::ifstream file(KX_TEST_DATA "/vectors/tables.json", std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        m_document.Parse(text.data(), text.size());
    }

    [[nodiscard]] rapidjson::Value::ConstArray Known(const char* table) const { return m_document[table].GetArray(); }

    // All lines that the verb prints, the column names included.
    [[nodiscard]] std::vector<CsvRow> Printed(const std::string& table) const {
        const Ended ended = Shell("kxdu tables " + table + " --format csv");
        EXPECT_EQ(ended.code, 0) << ended.err;
        std::vector<CsvRow> rows;
        CsvReader reader(table, ended.out);
        for (CsvRow row; reader.Next(row);) {
            rows.push_back(row);
        }
        return rows;
    }

    static std::string TextOf(const rapidjson::Value& value) {
        return value.IsString() ? value.GetString() : std::to_string(value.GetInt());
    }

    // The rows of a table, from a listing of objects with these two members.
    [[nodiscard]] std::vector<CsvRow> KnownPairs(const char* table, const char* first, const char* second) const {
        std::vector<CsvRow> rows{{first, second}};
        for (const auto& row : Known(table)) {
            rows.push_back({TextOf(row[first]), TextOf(row[second])});
        }
        return rows;
    }

    [[nodiscard]] std::vector<CsvRow> KnownNumbers(const char* table, const char* column) const {
        std::vector<CsvRow> rows{{column}};
        for (const auto& number : Known(table)) {
            rows.push_back({TextOf(number)});
        }
        return rows;
    }

    // The rows of a table, from a listing of groups: a key and its FB types.
    [[nodiscard]] std::vector<CsvRow> KnownGroups(const char* table, const char* key) const {
        std::vector<CsvRow> rows{{"fbType", key}};
        for (const auto& group : Known(table)) {
            for (const auto& fbType : group["fbTypes"].GetArray()) {
                rows.push_back({TextOf(fbType), TextOf(group[key])});
            }
        }
        return rows;
    }

private:
    rapidjson::Document m_document;
};

TEST_F(TablesVerb, PrintsEachTableWhole) {
    EXPECT_EQ(Printed("fb-type-names"), KnownPairs("fbTypeNames", "fbType", "name"));
    EXPECT_EQ(Printed("ptn-aid-fb-types"), KnownNumbers("ptnAidFbTypes", "fbType"));
    EXPECT_EQ(Printed("port-object-fb-types"), KnownNumbers("portObjectFbTypes", "fbType"));
    EXPECT_EQ(Printed("domain-names"), KnownPairs("domainNames", "domainId", "name"));
    EXPECT_EQ(Printed("level-fb-types"), KnownPairs("canonicalFbTypes", "level", "fbType"));
    EXPECT_EQ(Printed("ctp-names"), KnownPairs("ctpNames", "name", "ctpId"));
    EXPECT_EQ(Printed("client-rates"), KnownPairs("clientRates", "name", "level"));
    EXPECT_EQ(Printed("optical-boards"), KnownNumbers("opticalBoards", "boardType"));
}

// The order does not count: only the listing groups the types by level or by bidirectional type.
TEST_F(TablesVerb, PrintsTablesOfGroupsWhole) {
    const auto sorted = [](std::vector<CsvRow> rows) {
        std::sort(rows.begin() + 1, rows.end());
        return rows;
    };
    EXPECT_EQ(sorted(Printed("fb-type-levels")), sorted(KnownGroups("levels", "level")));
    EXPECT_EQ(sorted(Printed("bidir-fb-types")), sorted(KnownGroups("bidirFbTypes", "bidirFbType")));
}

TEST_F(TablesVerb, ListsTheTablesWithoutAName) {
    const Ended ended = Shell("kxdu tables");
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out,
              "table                 rows  about\n"
              "--------------------  ----  -------------------------------------------------\n"
              "fb-type-names           31  names of FB types\n"
              "ptn-aid-fb-types        17  FB types that have a PTN AID; one is listed twice\n"
              "port-object-fb-types    13  FB types that are port objects of any kind\n"
              "domain-names            10  names of domain ids\n"
              "fb-type-levels         120  interface levels on which FB types sit\n"
              "level-fb-types          22  canonical FB types of interface levels\n"
              "bidir-fb-types         149  bidirectional FB types of unidirectional ones\n"
              "ctp-names               12  TMF names of reserved CTPs\n"
              "client-rates            17  interface levels of client rates\n"
              "optical-boards          18  types of optical boards of the ROADM kind\n");
}

TEST_F(TablesVerb, CountsAreThoseOfTheRows) {
    const std::vector<CsvRow> tables = Printed("");
    ASSERT_EQ(tables.size(), 1U + 10U);
    for (std::size_t table = 1; table < tables.size(); ++table) {
        EXPECT_EQ(std::to_string(Printed(tables[table][0]).size() - 1), tables[table][1]) << tables[table][0];
    }
}

TEST_F(TablesVerb, EachFormatHasAllRows) {
    EXPECT_EQ(
        Shell("kxdu tables ctp-names --format jsonl | grep -c '^{\"name\":\"E[0-9]*\",\"ctpId\":655[23][0-9]}$'").out,
        "12\n");
    EXPECT_EQ(Shell("kxdu tables ctp-names --format md | grep -c '^| E[0-9]* | 655[23][0-9] |$'").out, "12\n");
    EXPECT_EQ(Shell("kxdu tables ctp-names | grep -c '^E[0-9]*  *655[23][0-9]$'").out, "12\n");
}

TEST_F(TablesVerb, ExitsWithTwoOnAnUnknownName) {
    const Ended ended = Shell("kxdu tables levels");
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "kxdu: unknown table \"levels\"; for their names see kxdu tables\n");
}

}  // namespace
}  // namespace NS_KX::NS_KXDU
