/// The test vectors that begin with a fresh record, by way of the C interface.
#include <cstdint>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <kx/kx.h>
#include <rapidjson/document.h>

#include <kx_platform/textutil.h>

#include "bindings/c/owned.h"
#include "text/number.h"

namespace {

using NS_TEST::Record;
using rapidjson::Value;

std::string_view View(const Value& text) {
    return {text.GetString(), text.GetStringLength()};
}

rapidjson::Document Load(const std::string& name) {
    std::ifstream file(KX_TEST_DATA "/vectors/" + name + ".json", std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    rapidjson::Document document;
    document.Parse(text.data(), text.size());
    EXPECT_FALSE(document.HasParseError()) << name;
    return document;
}

bool Flag(const Value& item, const char* member) {
    return item.HasMember(member) && item[member].GetBool();
}

// The value of a field as text, of whatever type it is.
std::string FieldOf(const kx_record* record, const char* name) {
    std::int64_t number = 0;
    kx_text text{};
    if (kx_get_number(record, name, &number) == KX_OK) {
        return std::to_string(number);
    }
    EXPECT_EQ(kx_get_text(record, name, &text), KX_OK) << name;
    return std::string("text ").append(text.data, text.size);
}

// The members of a JSON record as `FieldOf` has them, those of a nested record under their whole names.
void Flatten(const Value& json, const std::string& nested, std::map<std::string, std::string>& fields) {
    for (const auto& [name, value] : json.GetObject()) {
        const std::string whole = nested + std::string(View(name));
        if (value.IsObject()) {
            Flatten(value, whole + ".", fields);
        } else if (value.IsString()) {
            fields[whole] = std::string("text ").append(View(value));
        } else {
            fields[whole] =
                std::to_string(value.IsBool() ? static_cast<std::int64_t>(value.GetBool()) : value.GetInt64());
        }
    }
}

std::map<std::string, std::string> Fields(const Value& json) {
    std::map<std::string, std::string> fields;
    Flatten(json, "", fields);
    return fields;
}

// ---- Readers --------------------------------------------------------------------------------------------------------

// The type whose reader it is; none for those that only C++ offers.
std::optional<std::string> TypeReadBy(const Value& item) {
    static const std::map<std::string, std::string, std::less<>> TYPES{
        {"ResID2OSIndex", "OSIndex"},       {"ResID2ONEIndex", "ONEIndex"},
        {"ResID2NEIndex", "NEIndex"},       {"ResID2ShelfIndex", "ShelfIndex"},
        {"ResID2SlotIndex", "SlotIndex"},   {"ResID2SubSlotIndex", "SubSlotIndex"},
        {"ResID2CardIndex", "CardIndex"},   {"ResID2LoopBackPortIndex", "PortIndex:LoopBack"},
        {"ResID2PortIndex", "PortIndex"},   {"ResID2APIndex", "CtpKey_T"},
        {"ResID2TPIndex", "TPIndex"},       {"ResID2PWIndex", "PWIndex"},
        {"ResID2SVCIndex", "ServiceIndex"}, {"ResID2PWSwitchIndex", "PWSwitchIndex"},
        {"ResID2TDIndex", "TDIndex"},       {"ResID2VPNTrailIndex", "VPNTrailIndex"}};
    const auto type = TYPES.find(View(item["reader"]));
    // The port of a key has no type of its own.
    const bool isPortOfKey = View(item["reader"]) == "ResID2PortIndex" && View(item["record"]) == "CtpKey_T";
    return type != TYPES.end() && !isPortOfKey ? std::optional(type->second) : std::nullopt;
}

// The fields that the catalogue fills where the library's reader leaves them, or fills in another way, on purpose.
bool IsOfTheCatalogue(const std::string& type, std::string_view field) {
    return field == "container" || (type == "TPIndex" && (field == "vc4Id" || field == "vc12Id")) ||
           (type == "PWIndex" && field == "resId");
}

void Read(const Value& item, const std::string& type) {
    const Record fresh(kx_record_new());
    const Record record(kx_record_new());
    const std::string_view fdn = View(item["fdn"]);
    ASSERT_EQ(kx_clear_as(fresh.get(), type.c_str()), KX_OK);
    ASSERT_EQ(kx_decode_as(record.get(), type.c_str(), fdn.data(), fdn.size()), KX_OK);
    auto expected = Fields(item["expected"]);
    for (std::size_t place = 0; place < kx_field_count(record.get()); ++place) {
        const char* const name = kx_field_name(record.get(), place);
        const auto named = expected.extract(name);
        if (!IsOfTheCatalogue(type, name)) {
            EXPECT_EQ(FieldOf(record.get(), name), named ? named.mapped() : FieldOf(fresh.get(), name)) << name;
        }
    }
    EXPECT_TRUE(expected.empty()) << expected.begin()->first;
}

// ---- Writers --------------------------------------------------------------------------------------------------------

std::optional<std::string> TypeWrittenBy(const Value& item) {
    static const std::map<std::string, std::string, std::less<>> TYPES{{"OSID2ResID", "OSIndex"},
                                                                       {"OSIndex2ResID", "OSIndex"},
                                                                       {"ONEID2ResID", "ONEIndex"},
                                                                       {"ONEIndex2ResID", "ONEIndex"},
                                                                       {"NEID2ResID", "NEID"},
                                                                       {"NEIndex2ResID", "NEIndex"},
                                                                       {"ShelfIndex2ResID", "ShelfIndex"},
                                                                       {"SlotIndex2ResID", "SlotIndex"},
                                                                       {"SubSlotIndex2ResID", "SubSlotIndex"},
                                                                       {"CardIndex2ResID", "CardIndex"},
                                                                       {"PortIndex2ResID", "PortIndex"},
                                                                       {"PortIndex2ResIDByNEType", "PortIndex:NEType"},
                                                                       {"APIndex2ResID", "CtpKey_T"},
                                                                       {"TPIndex2ResID", "TPIndex"},
                                                                       {"PWIndex2ResID", "PWIndex"},
                                                                       {"MDIndex2ResID", "MDIndex"},
                                                                       {"MAIndex2ResID", "MAIndex"},
                                                                       {"MepIndex2ResID", "MEPIndex"},
                                                                       {"RmepIndex2ResID", "MEPIndex:RMEP"},
                                                                       {"MIPIndex2ResID", "MIPIndex"}};
    const auto type = TYPES.find(View(item["writer"]));
    if (type == TYPES.end()) {
        return std::nullopt;
    }
    if (item.HasMember("withSubIf")) {
        return Flag(item, "withSubIf") ? std::optional("CtpKey_T:SUBIF") : std::nullopt;
    }
    // A type writes a port as what it is.
    const Value& fields = item["fields"];
    const Value& port = fields.HasMember("port") ? fields["port"] : fields;
    const bool isOtherwise = item.HasMember("asLogical") && Flag(item, "asLogical") != Flag(port, "isLogical");
    if (isOtherwise) {
        return std::nullopt;
    }
    const int neType = item.HasMember("neType") ? item["neType"].GetInt() : 0;
    return neType == 1911 || neType == 1912 ? "PortIndex:NEType1911" : type->second;
}

// The services and the configuration of a case, as facts.
class Facts {
public:
    explicit Facts(const Value& item) : m_item(item) {
        std::string carrierProfile;
        if (item.HasMember("configuration")) {
            for (const auto& [name, value] : item["configuration"].GetObject()) {
                if (View(name) == "Telvandaire") {
                    carrierProfile = View(value);
                } else {
                    ReadList(std::string(View(value)));
                }
            }
        }
        std::int32_t number = 0;
        m_facts.carrier_profile = NS_KX::ReadWhole(carrierProfile, number) ? number : 0;
        m_facts.sub_slot_ne_types = m_list.data();
        m_facts.sub_slot_ne_type_count = m_list.size() - 1;
        m_facts.context = this;
        if (item.HasMember("inventory")) {
            m_facts.ne_type = TypeOf;
            m_facts.oam_numbers_omitted = Omits;
        }
    }
    Facts(const Facts&) = delete;
    Facts& operator=(const Facts&) = delete;

    const kx_facts* Get() const { return &m_facts; }

    void ExpectQuestions() const {
        EXPECT_EQ(m_typeQuestions, Numbers("queries"));
        EXPECT_EQ(m_oamQuestions, Numbers("oamQueries"));
    }

private:
    void ReadList(const std::string& text) {
        std::vector<std::string> pieces;
        NS_UTIL::SplitStringByTag(text, pieces, ',', {});
        for (const std::string& piece : pieces) {
            if (const int type = NS_UTIL::Str2Int(piece); type >= 0 && type <= 0xFFFF) {
                m_list.insert(m_list.begin(), static_cast<std::uint16_t>(type));
            }
        }
    }

    std::vector<std::int64_t> Numbers(const char* member) const {
        std::vector<std::int64_t> numbers;
        if (m_item.HasMember(member)) {
            for (const Value& number : m_item[member].GetArray()) {
                numbers.push_back(number.GetInt64());
            }
        }
        return numbers;
    }

    static bool TypeOf(void* context, std::int32_t ne, std::uint16_t* type) {
        auto& facts = *static_cast<Facts*>(context);
        facts.m_typeQuestions.push_back(ne);
        const auto& inventory = facts.m_item["inventory"].GetObject();
        const auto known = inventory.FindMember(std::to_string(ne).c_str());
        if (known == inventory.MemberEnd()) {
            return false;
        }
        *type = static_cast<std::uint16_t>(known->value.GetUint() & 0xFFFFU);
        return true;
    }

    static bool Omits(void* context, std::int32_t ne) {
        auto& facts = *static_cast<Facts*>(context);
        facts.m_oamQuestions.push_back(ne);
        for (const std::int64_t omitting : facts.Numbers("omitting")) {
            if (omitting == ne) {
                return true;
            }
        }
        return false;
    }

    const Value& m_item;
    std::vector<std::uint16_t> m_list{0};  // and one more, so that an empty list is one that is known
    kx_facts m_facts{};
    std::vector<std::int64_t> m_typeQuestions;
    std::vector<std::int64_t> m_oamQuestions;
};

void Write(const Value& item, const std::string& type) {
    const Record record(kx_record_new());
    ASSERT_EQ(kx_clear_as(record.get(), type.c_str()), KX_OK);
    for (const auto& [name, value] : Fields(item["fields"])) {
        if (value.starts_with("text ")) {
            ASSERT_EQ(kx_set_text(record.get(), name.c_str(), value.data() + 5, value.size() - 5), KX_OK) << name;
        } else {
            ASSERT_EQ(kx_set_number(record.get(), name.c_str(), std::stoll(value)), KX_OK) << name;
        }
    }
    const Facts facts(item);
    kx_text fdn{};
    if (item.HasMember("throws")) {
        EXPECT_EQ(kx_encode(record.get(), facts.Get(), &fdn), KX_NO_FACTS);
        EXPECT_EQ(fdn.data, nullptr);
        return;
    }
    ASSERT_EQ(kx_encode(record.get(), facts.Get(), &fdn), KX_OK);
    EXPECT_EQ(std::string_view(fdn.data, fdn.size), View(item["expected"]));
    facts.ExpectQuestions();
}

}  // namespace

TEST(CVectors, Readers) {
    std::size_t run = 0;
    for (const char* const file : {"equipmentreaders", "portreaders", "servicereaders", "oamreaders"}) {
        const rapidjson::Document document = Load(file);
        for (const Value& item : document["cases"].GetArray()) {
            const auto type = TypeReadBy(item);
            // Nothing configures the C interface.
            if (type && !item.HasMember("initial") && !item.HasMember("configuration") && !item.HasMember("throws")) {
                SCOPED_TRACE(std::string(file) + ": " + item["name"].GetString());
                Read(item, *type);
                ++run;
            }
        }
    }
    EXPECT_GE(run, 50U);
    RecordProperty("cases", static_cast<int>(run));
}

TEST(CVectors, Writers) {
    std::size_t run = 0;
    for (const char* const file : {"equipmentwriters", "portwriters", "servicewriters", "oamwriters"}) {
        const rapidjson::Document document = Load(file);
        for (const Value& item : document["cases"].GetArray()) {
            if (const auto type = TypeWrittenBy(item)) {
                SCOPED_TRACE(std::string(file) + ": " + item["name"].GetString());
                Write(item, *type);
                ++run;
            }
        }
    }
    EXPECT_GE(run, 100U);
    RecordProperty("cases", static_cast<int>(run));
}
