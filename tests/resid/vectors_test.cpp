#include "support/vectors.h"

#include <algorithm>
#include <optional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <kx_domain_util/processexception.h>

#include "support/conversions.h"
#include "support/exacttext.h"
#include "support/givensurroundings.h"
#include "support/services.h"

namespace {

using NS_TEST::Configuration;
using NS_TEST::ExactText;
using NS_TEST::ExactView;
using NS_TEST::ForEachReader;
using NS_TEST::ForEachWriter;
using NS_TEST::GivenSurroundings;
using NS_TEST::Reader;
using NS_TEST::RecordFields;
using NS_TEST::RecordingDataAccess;
using NS_TEST::RecordingInventory;
using NS_TEST::RecordingLog;
using NS_TEST::Registration;
using NS_TEST::VectorCase;
using NS_TEST::VectorFile;
using NS_TEST::Writer;
using NS_TEST::WriterArguments;
using NS_UTIL::ResIDUtil;

// Returns the code of the exception that `convert` throws; 0 if it throws none.
template <class Convert>
std::uint32_t ThrownCode(Convert convert) {
    try {
        convert();
        return 0;
    } catch (const NS_UTIL::InterfaceNotExistException& missing) {
        return missing.m_code;
    }
}

std::uint32_t ExpectedCode(const VectorCase& vectorCase) {
    return vectorCase.Has("throws") ? static_cast<std::uint32_t>(std::stoul(vectorCase.Text("throws"), nullptr, 16))
                                    : 0;
}

// Returns each log record as its fields, separated by blanks.
std::vector<std::string> LogTexts(const RecordingLog& log) {
    std::vector<std::string> texts;
    for (const RecordingLog::Record& record : log.m_records) {
        texts.push_back(record.file + ' ' + record.function + ' ' + std::to_string(record.line) + ' ' +
                        std::to_string(record.level) + ' ' + record.message);
    }
    return texts;
}

// Runs the case by the typed call, in surroundings that are passed to it instead of registered.
template <class Record>
void RunTypedReader(const VectorCase& vectorCase, const Reader<Record>& reader) {
    RecordingDataAccess dataAccess;
    const GivenSurroundings surroundings(vectorCase.TextMap("configuration"), nullptr,
                                         vectorCase.Has("dataAccess") ? &dataAccess : nullptr);
    Record record;
    vectorCase.Overwrite("initial", record);
    Record expected = record;
    vectorCase.Overwrite("expected", expected);
    if constexpr (requires { record.answer; }) {
        record.answer = expected.answer;  // the typed call gives another answer
    }
    const ExactView fdn(vectorCase.Text("fdn"));
    RecordingLog log;
    const Registration logRegistration("LogSvcInterface", log);

    const std::uint32_t code = ThrownCode([&] { reader.typed(fdn, record, surroundings); });

    EXPECT_EQ(code, ExpectedCode(vectorCase));
    EXPECT_EQ(record, expected);
    EXPECT_EQ(LogTexts(log), vectorCase.Has("log") ? vectorCase.Texts("log") : std::vector<std::string>{});
}

template <class Record>
void RunReader(const VectorCase& vectorCase, const Reader<Record>& reader) {
    vectorCase.AllowOnly(
        {"name", "reader", "record", "fdn", "configuration", "dataAccess", "initial", "expected", "throws", "log"});
    const Configuration configuration(vectorCase.TextMap("configuration"));
    RecordingDataAccess dataAccess;
    std::optional<Registration> registration;
    if (vectorCase.Has("dataAccess")) {
        dataAccess.m_hasFile = vectorCase.Text("dataAccess") == "file";
        registration.emplace("DAWSvcInterface", dataAccess);
    }
    Record record;
    vectorCase.Overwrite("initial", record);
    Record expected = record;
    vectorCase.Overwrite("expected", expected);
    const ExactText fdn(vectorCase.Text("fdn"));

    Record unlogged = record;
    const std::uint32_t unloggedCode = ThrownCode([&] { reader.library(fdn, unlogged); });
    RecordingLog log;
    const Registration logRegistration("LogSvcInterface", log);

    const std::uint32_t code = ThrownCode([&] { reader.library(fdn, record); });

    EXPECT_EQ(code, ExpectedCode(vectorCase));
    EXPECT_EQ(record, expected);
    EXPECT_EQ(LogTexts(log), vectorCase.Has("log") ? vectorCase.Texts("log") : std::vector<std::string>{});
    EXPECT_EQ(unloggedCode, code) << "another answer without a log service";
    EXPECT_EQ(unlogged, expected) << "another answer without a log service";
}

// Expects that the inventory got the questions of the case.
void ExpectQuestions(const VectorCase& vectorCase, const RecordingInventory& inventory) {
    std::vector<RecordingInventory::Query> queries;
    if (vectorCase.Has("queries")) {
        for (const std::int64_t neId : vectorCase.Numbers("queries")) {
            queries.push_back({neId, 0, true});
        }
    }
    EXPECT_EQ(inventory.m_queries, queries) << "number or arguments of the questions to the inventory";
    std::vector<int> oamQuestions;
    if (vectorCase.Has("oamQueries")) {
        for (const std::int64_t neId : vectorCase.Numbers("oamQueries")) {
            oamQuestions.push_back(static_cast<int>(neId));
        }
    }
    EXPECT_EQ(inventory.m_oamQuestions, oamQuestions) << "number or arguments of the questions about OAM numbers";
}

class CaseInventory : public RecordingInventory {
public:
    explicit CaseInventory(const VectorCase& vectorCase) : RecordingInventory(vectorCase.NumberMap("inventory")) {
        if (vectorCase.Has("omitting")) {
            const std::vector<std::int64_t> omitting = vectorCase.Numbers("omitting");
            m_omitting.insert(omitting.begin(), omitting.end());
        }
    }
};

template <class Record>
void RunWriter(const VectorCase& vectorCase, const Writer<Record>& writer) {
    vectorCase.AllowOnly({"name", "writer", "record", "fields", "asLogical", "withSubIf", "neType", "configuration",
                          "inventory", "queries", "omitting", "oamQueries", "expected", "throws"});
    Record record;
    vectorCase.Overwrite("fields", record);
    WriterArguments arguments;
    if (!writer.flagName.empty()) {
        arguments.flag = vectorCase.Bool(std::string(writer.flagName).c_str());
    }
    if (vectorCase.Has("neType")) {
        arguments.neType = static_cast<unsigned long>(vectorCase.Int("neType"));
    }
    {
        const Configuration configuration(vectorCase.TextMap("configuration"));
        CaseInventory inventory(vectorCase);
        std::optional<Registration> registration;
        if (vectorCase.Has("inventory")) {
            registration.emplace("InventoryBufif", inventory);
        }
        std::string fdn = "what stood here before";

        const std::uint32_t code = ThrownCode([&] { writer.library(record, fdn, arguments); });

        EXPECT_EQ(code, ExpectedCode(vectorCase));
        EXPECT_EQ(fdn, vectorCase.Text("expected"));
        ExpectQuestions(vectorCase, inventory);
    }
    // Runs the case by the typed call, in surroundings that are passed to it instead of registered.
    CaseInventory inventory(vectorCase);
    const GivenSurroundings surroundings(vectorCase.TextMap("configuration"),
                                         vectorCase.Has("inventory") ? &inventory : nullptr, nullptr);
    std::string fdn = "what stood here before";

    const std::uint32_t code = ThrownCode([&] { writer.typed(record, fdn, arguments, surroundings); });

    EXPECT_EQ(code, ExpectedCode(vectorCase));
    EXPECT_EQ(fdn, vectorCase.Text("expected"));
    ExpectQuestions(vectorCase, inventory);
}

bool RunReaderCase(const VectorCase& vectorCase) {
    int found = 0;
    ForEachReader([&]<class Record>(const Reader<Record>& reader) {
        if (vectorCase.Text("reader") == reader.name && vectorCase.Text("record") == RecordFields<Record>::NAME) {
            ++found;
            RunReader(vectorCase, reader);
            if (reader.typed != nullptr) {
                RunTypedReader(vectorCase, reader);
            }
        }
    });
    return found == 1;
}

bool RunWriterCase(const VectorCase& vectorCase) {
    int found = 0;
    ForEachWriter([&]<class Record>(const Writer<Record>& writer) {
        if (vectorCase.Text("writer") == writer.name && vectorCase.Text("record") == RecordFields<Record>::NAME) {
            ++found;
            RunWriter(vectorCase, writer);
        }
    });
    return found == 1;
}

bool RunGrammarCase(const VectorCase& vectorCase) {
    vectorCase.AllowOnly({"name", "operation", "fdn", "level", "tag", "index", "minCount", "moc", "values", "before",
                          "expected", "expectedTag", "answer"});
    const std::string operation = vectorCase.Text("operation");
    if (operation == "Fdn2MocLvlValueMap") {
        NS_UTIL::MocLvlValueMap map{{"OLD", {"1"}}};
        ResIDUtil::Fdn2MocLvlValueMap(ExactText(vectorCase.Text("fdn")), map);
        EXPECT_EQ(map, vectorCase.TextLists("expected"));
    } else if (operation == "ResolveMocLevelObj") {
        std::string tag = "OLD";
        std::vector<std::string> values = vectorCase.Texts("before");
        ResIDUtil::ResolveMocLevelObj(ExactText(vectorCase.Text("level")), tag, values);
        EXPECT_EQ(tag, vectorCase.Text("expectedTag"));
        EXPECT_EQ(values, vectorCase.Texts("expected"));
    } else if (operation == "GetValueByMocLvlName") {
        NS_UTIL::MocLvlValueMap map;
        ResIDUtil::Fdn2MocLvlValueMap(ExactText(vectorCase.Text("fdn")), map);
        std::string value = vectorCase.Text("before");
        EXPECT_EQ(ResIDUtil::GetValueByMocLvlName(vectorCase.Text("tag"), map, value, vectorCase.Int("index")),
                  vectorCase.Bool("answer"));
        EXPECT_EQ(value, vectorCase.Text("expected"));
    } else if (operation == "GetValueByMocLvlName as integer") {
        NS_UTIL::MocLvlValueMap map;
        ResIDUtil::Fdn2MocLvlValueMap(ExactText(vectorCase.Text("fdn")), map);
        int value = vectorCase.Int("before");
        const bool answer =
            vectorCase.Has("index")
                ? ResIDUtil::GetValueByMocLvlName(vectorCase.Text("tag"), map, value, vectorCase.Int("index"))
                : ResIDUtil::GetValueByMocLvlName(vectorCase.Text("tag"), map, value);
        EXPECT_EQ(answer, vectorCase.Bool("answer"));
        EXPECT_EQ(value, vectorCase.Int("expected"));
    } else if (operation == "ConstructMocLevelObj") {
        std::string level = vectorCase.Text("before");
        ResIDUtil::ConstructMocLevelObj(ExactText(vectorCase.Text("tag")), vectorCase.Texts("values"), level);
        EXPECT_EQ(level, vectorCase.Text("expected"));
    } else if (operation == "ResolveFDNByMoc") {
        std::vector<std::string> values = vectorCase.Texts("before");
        EXPECT_EQ(ResIDUtil::ResolveFDNByMoc(ExactText(vectorCase.Text("fdn")), vectorCase.Text("tag").c_str(),
                                             vectorCase.Int("minCount"), values),
                  vectorCase.Bool("answer"));
        EXPECT_EQ(values, vectorCase.Texts("expected"));
    } else if (operation == "GetMOCFromFDN") {
        EXPECT_EQ(ResIDUtil::GetMOCFromFDN(ExactText(vectorCase.Text("fdn"))), vectorCase.Text("expected"));
    } else if (operation == "IsServiceFDN") {
        EXPECT_EQ(ResIDUtil::IsServiceFDN(ExactText(vectorCase.Text("moc"))), vectorCase.Bool("answer"));
    } else {
        return false;
    }
    return true;
}

struct Suite {
    const char* file;
    bool (*run)(const VectorCase&);
};

class Vectors : public testing::TestWithParam<Suite> {};

TEST_P(Vectors, Hold) {
    const VectorFile file(GetParam().file);
    ASSERT_FALSE(file.Cases().empty());
    for (const VectorCase& vectorCase : file.Cases()) {
        SCOPED_TRACE(vectorCase.GetName());
        EXPECT_TRUE(GetParam().run(vectorCase)) << "there is no such operation";
    }
}

INSTANTIATE_TEST_SUITE_P(OfResId, Vectors,
                         testing::Values(Suite{"grammar", &RunGrammarCase}, Suite{"equipmentreaders", &RunReaderCase},
                                         Suite{"equipmentwriters", &RunWriterCase},
                                         Suite{"portreaders", &RunReaderCase}, Suite{"portwriters", &RunWriterCase},
                                         Suite{"servicereaders", &RunReaderCase},
                                         Suite{"servicewriters", &RunWriterCase}, Suite{"oamreaders", &RunReaderCase},
                                         Suite{"oamwriters", &RunWriterCase}),
                         [](const auto& suite) { return std::string(suite.param.file); });

// The vectors are shared with other implementations, so they must name every conversion.
TEST(VectorsOfResId, NameEveryConversion) {
    std::set<std::pair<std::string, std::string>> named;
    for (const char* file : {"equipmentreaders", "portreaders", "servicereaders", "oamreaders", "equipmentwriters",
                             "portwriters", "servicewriters", "oamwriters"}) {
        const VectorFile vectors(file);
        for (const VectorCase& vectorCase : vectors.Cases()) {
            named.emplace(vectorCase.Text(vectorCase.Has("reader") ? "reader" : "writer"), vectorCase.Text("record"));
        }
    }
    const auto expectNamed = [&]<class Row>(const Row& row) {
        using Record = typename Row::Record;
        EXPECT_EQ(named.count({std::string(row.name), std::string(RecordFields<Record>::NAME)}), 1)
            << row.name << " of " << RecordFields<Record>::NAME;
    };
    ForEachReader(expectNamed);
    ForEachWriter(expectNamed);
}

TEST(VectorsOfResId, HaveNamesOfTheirOwn) {
    for (const char* file : {"grammar", "equipmentreaders", "portreaders", "servicereaders", "oamreaders",
                             "equipmentwriters", "portwriters", "servicewriters", "oamwriters"}) {
        std::set<std::string> names;
        const VectorFile vectors(file);
        for (const VectorCase& vectorCase : vectors.Cases()) {
            EXPECT_TRUE(names.insert(vectorCase.GetName()).second) << file << ": " << vectorCase.GetName();
        }
    }
}

}  // namespace
