/// Test vectors: cases of conversion as JSON, which any implementation can run. tests/vectors/README.md describes their
/// form.
#pragma once

#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <rapidjson/document.h>

#include "support/recordfields.h"

namespace NS_TEST {

/// One case of a vector file. Throws if a member is missing or of another type.
class VectorCase {
public:
    VectorCase(const rapidjson::Value& json, std::string name) : m_json(json), m_name(std::move(name)) {}

    const std::string& GetName() const { return m_name; }
    bool Has(const char* member) const { return m_json.HasMember(member); }

    std::string Text(const char* member) const { return ToText(Member(member)); }
    std::vector<std::string> Texts(const char* member) const {
        std::vector<std::string> texts;
        for (const rapidjson::Value& text : Array(Member(member))) {
            texts.push_back(ToText(text));
        }
        return texts;
    }
    int Int(const char* member) const { return Member(member).GetInt(); }
    bool Bool(const char* member) const { return Member(member).GetBool(); }
    /// An object from names to lists of texts.
    std::map<std::string, std::vector<std::string>> TextLists(const char* member) const;
    /// An object from names to texts; empty if the member is missing.
    std::map<std::string, std::string> TextMap(const char* member) const;
    /// An object from numbers to numbers; empty if the member is missing.
    std::map<std::int64_t, std::uint32_t> NumberMap(const char* member) const;
    std::vector<std::int64_t> Numbers(const char* member) const;

    /// Overwrites the fields of `record` that `member` names. Throws for a name that `record` does not have.
    template <class Record>
    void Overwrite(const char* member, Record& record) const {
        if (Has(member)) {
            Fill(Member(member), record);
        }
    }

    /// Throws unless every member is one of `known`: finds misspelt members.
    void AllowOnly(const std::set<std::string_view>& known) const;

private:
    [[noreturn]] void Fail(const std::string& why) const { throw std::runtime_error(m_name + ": " + why); }

    const rapidjson::Value& Member(const char* member) const {
        if (!m_json.HasMember(member)) {
            Fail(std::string("no member ") + member);
        }
        return m_json[member];
    }
    std::string ToText(const rapidjson::Value& value) const {
        if (!value.IsString()) {
            Fail("a text is expected");
        }
        return {value.GetString(), value.GetStringLength()};
    }
    rapidjson::Value::ConstArray Array(const rapidjson::Value& value) const {
        if (!value.IsArray()) {
            Fail("an array is expected");
        }
        return value.GetArray();
    }

    template <class Record>
    void Fill(const rapidjson::Value& json, Record& record) const {
        std::size_t used = 0;
        ForEachField(record, [&](std::string_view name, auto& field) {
            const auto member = json.FindMember(std::string(name).c_str());
            if (member == json.MemberEnd()) {
                return;
            }
            ++used;
            using Value = std::remove_reference_t<decltype(field)>;
            if constexpr (HasFields<Value>) {
                Fill(member->value, field);
            } else if constexpr (std::is_same_v<Value, std::string>) {
                field = ToText(member->value);
            } else {
                if (!member->value.template Is<Value>()) {
                    Fail(std::string(name) + " has another type");
                }
                field = member->value.template Get<Value>();
            }
        });
        if (used != json.MemberCount()) {
            Fail("the record has no such field");
        }
    }

    const rapidjson::Value& m_json;
    std::string m_name;
};

/// The cases of tests/vectors/<name>.json.
class VectorFile {
public:
    explicit VectorFile(const std::string& name);

    const std::vector<VectorCase>& Cases() const { return m_cases; }

private:
    rapidjson::Document m_document;
    std::vector<VectorCase> m_cases;
};

}  // namespace NS_TEST
