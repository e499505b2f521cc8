#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace NS_KX {

/// Finds a member of JSON objects, each of which is a line.
class JsonMember {
public:
    /// `key` is the member's name.
    explicit JsonMember(std::string key);
    ~JsonMember();
    JsonMember(const JsonMember&) = delete;
    JsonMember& operator=(const JsonMember&) = delete;

    /// The content of the text that is the value of the first such member; for another value, what it begins with: a
    /// number as it is written. None if the line is no object, has no such member, or is damaged before it. The line
    /// may be cut off after it, and need not be UTF-8. Valid until the next call.
    std::optional<std::string_view> Find(std::string_view line);

private:
    class Parser;

    std::string m_key;
    std::unique_ptr<Parser> m_parser;
};

}  // namespace NS_KX
