#include "formats/jsonmember.h"

#include <algorithm>
#include <utility>

#include <simdjson.h>

namespace NS_KX {

namespace ondemand = simdjson::ondemand;

namespace {

// `end` is the end of the line.
std::optional<std::string_view> ContentOf(ondemand::value value, const char* end) {
    std::string_view text;
    if (value.get_string().get(text) == simdjson::SUCCESS) {
        return text;
    }
    text = value.raw_json_token();
    if (text.data() + text.size() >= end) {
        return std::nullopt;  // it may be cut off
    }
    return text.substr(0, text.find_last_not_of(" \t\r\n") + 1);
}

std::optional<std::string_view> FindIn(ondemand::object object, std::string_view wanted, const char* end) {
    for (auto member : object) {
        ondemand::field field;
        std::string_view key;
        if (std::move(member).get(field) != simdjson::SUCCESS || field.unescaped_key().get(key) != simdjson::SUCCESS) {
            return std::nullopt;
        }
        if (key == wanted) {
            return ContentOf(field.value(), end);
        }
    }
    return std::nullopt;
}

}  // namespace

class JsonMember::Parser {
public:
    std::optional<std::string_view> Find(std::string_view line, std::string_view key) {
        m_text = line;
        m_text.push_back('}');  // the parser refuses an object without an end, as a line that was cut off
        ondemand::document document;
        auto error = Read(document);
        // It also refuses a line as a whole for what is damaged only after the member.
        if (error == simdjson::UNCLOSED_STRING) {
            // With an escape that does not exist: the text must not be taken for a whole one.
            m_text.replace(line.size(), 1, "\\x\"}");
            error = Read(document);
        }
        if (error == simdjson::UTF8_ERROR) {
            std::replace_if(
                m_text.begin(), m_text.end(), [](char byte) { return (byte & 0x80) != 0; }, '?');
            error = Read(document);
        }
        ondemand::object object;
        if (error != simdjson::SUCCESS || document.get_object().get(object) != simdjson::SUCCESS) {
            return std::nullopt;
        }
        return FindIn(object, key, m_text.data() + line.size());
    }

private:
    simdjson::error_code Read(ondemand::document& document) {
        m_text.reserve(m_text.size() + simdjson::SIMDJSON_PADDING);
        return m_parser.iterate(m_text.data(), m_text.size(), m_text.capacity()).get(document);
    }

    ondemand::parser m_parser;  // keeps its memory
    std::string m_text;         // of the line, with its end
};

JsonMember::JsonMember(std::string key) : m_key(std::move(key)), m_parser(std::make_unique<Parser>()) {}

JsonMember::~JsonMember() = default;

std::optional<std::string_view> JsonMember::Find(std::string_view line) {
    return m_parser->Find(line, m_key);
}

}  // namespace NS_KX
