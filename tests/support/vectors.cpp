#include "support/vectors.h"

#include <fstream>
#include <iterator>

#include <rapidjson/error/en.h>

namespace NS_TEST {

std::map<std::string, std::vector<std::string>> VectorCase::TextLists(const char* member) const {
    std::map<std::string, std::vector<std::string>> lists;
    for (const auto& [name, list] : Member(member).GetObject()) {
        std::vector<std::string>& texts = lists[ToText(name)];
        for (const rapidjson::Value& text : Array(list)) {
            texts.push_back(ToText(text));
        }
    }
    return lists;
}

std::map<std::string, std::string> VectorCase::TextMap(const char* member) const {
    std::map<std::string, std::string> map;
    if (Has(member)) {
        for (const auto& [name, value] : Member(member).GetObject()) {
            map.emplace(ToText(name), ToText(value));
        }
    }
    return map;
}

std::map<std::int64_t, std::uint32_t> VectorCase::NumberMap(const char* member) const {
    std::map<std::int64_t, std::uint32_t> map;
    if (Has(member)) {
        for (const auto& [name, value] : Member(member).GetObject()) {
            map.emplace(std::stoll(ToText(name)), value.GetUint());
        }
    }
    return map;
}

std::vector<std::int64_t> VectorCase::Numbers(const char* member) const {
    std::vector<std::int64_t> numbers;
    for (const rapidjson::Value& number : Array(Member(member))) {
        numbers.push_back(number.GetInt64());
    }
    return numbers;
}

void VectorCase::AllowOnly(const std::set<std::string_view>& known) const {
    for (const auto& member : m_json.GetObject()) {
        if (known.count(ToText(member.name)) == 0) {
            Fail("unknown member " + ToText(member.name));
        }
    }
}

VectorFile::VectorFile(const std::string& name) {
    const std::string path = KX_TEST_DATA "/vectors/" + name + ".json";
    std::ifstream file(path, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    m_document.Parse(text.data(), text.size());
    if (!file || m_document.HasParseError() || !m_document.IsObject() || !m_document.HasMember("cases")) {
        throw std::runtime_error(path + ": " + rapidjson::GetParseError_En(m_document.GetParseError()) + " at byte " +
                                 std::to_string(m_document.GetErrorOffset()));
    }
    for (const rapidjson::Value& json : m_document["cases"].GetArray()) {
        m_cases.emplace_back(json, json["name"].GetString());
    }
}

}  // namespace NS_TEST
