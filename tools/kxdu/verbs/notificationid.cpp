#include "verbs/notificationid.h"

#include <algorithm>
#include <iterator>

#include "formats/csv.h"
#include "formats/jsonmember.h"
#include "text/number.h"

namespace NS_KX::NS_KXDU {

namespace {

bool IsBlank(char character) {
    return character == ' ' || character == '\t' || character == '\r';
}

std::string_view Trimmed(std::string_view text) {
    const auto* const begin = std::find_if_not(text.begin(), text.end(), IsBlank);
    const auto end = std::find_if_not(text.rbegin(), std::make_reverse_iterator(begin), IsBlank);
    return {begin, end.base()};
}

// The fields between blanks, one after the other.
class BlankFields {
public:
    explicit BlankFields(std::string_view line) : m_rest(line) {}

    bool Next(std::string_view& field) {
        const auto* const begin = std::find_if_not(m_rest.begin(), m_rest.end(), IsBlank);
        const auto* const end = std::find_if(begin, m_rest.end(), IsBlank);
        m_rest = {end, m_rest.end()};
        field = {begin, end};
        return !field.empty();
    }

private:
    std::string_view m_rest;
};

// The fields between delimiters.
class DelimitedFields {
public:
    DelimitedFields(std::string_view line, char delimiter)
        : m_fields(line.substr(0, line.size() - (line.ends_with('\r') ? 1 : 0)), delimiter) {}

    bool Next(std::string_view& field) {
        const bool isThere = m_fields.Next(field);
        field = Trimmed(field);
        return isThere;
    }

private:
    CsvFields m_fields;
};

// Calls `use` with the fields of the line.
template <class Use>
auto WithFields(std::string_view line, char delimiter, const Use& use) {
    if (delimiter == BLANKS) {
        BlankFields fields(line);
        return use(fields);
    }
    DelimitedFields fields(line, delimiter);
    return use(fields);
}

template <class IsWanted>
std::optional<NumberField> FindField(std::string_view line, char delimiter, const IsWanted& isWanted) {
    return WithFields(line, delimiter, [&](auto& fields) -> std::optional<NumberField> {
        std::string_view field;
        for (std::size_t at = 0; fields.Next(field); ++at) {
            if (const auto number = ReadNumber(field); number && isWanted(*number)) {
                return NumberField{at, *number};
            }
        }
        return std::nullopt;
    });
}

class FirstNumberReader : public NotificationIdReader {
public:
    explicit FirstNumberReader(char delimiter) : m_delimiter(delimiter) {}

    std::optional<int> Read(std::string_view line) override {
        const auto found = FindField(line, m_delimiter, [](int) { return true; });
        return found ? std::optional(found->number) : std::nullopt;
    }

private:
    char m_delimiter;
};

class FieldReader : public NotificationIdReader {
public:
    FieldReader(std::size_t field, char delimiter) : m_field(field), m_delimiter(delimiter) {}

    std::optional<int> Read(std::string_view line) override {
        return WithFields(line, m_delimiter, [this](auto& fields) -> std::optional<int> {
            std::string_view field;
            for (std::size_t at = 0; at <= m_field; ++at) {
                if (!fields.Next(field)) {
                    return std::nullopt;
                }
            }
            return ReadNumber(field);
        });
    }

private:
    std::size_t m_field;
    char m_delimiter;
};

class JsonMemberReader : public NotificationIdReader {
public:
    explicit JsonMemberReader(const std::string& key) : m_member(key) {}

    std::optional<int> Read(std::string_view line) override {
        const auto content = m_member.Find(line);
        return content ? ReadNumber(*content) : std::nullopt;
    }

private:
    JsonMember m_member;
};

}  // namespace

std::unique_ptr<NotificationIdReader> MakeFirstNumberReader(char delimiter) {
    return std::make_unique<FirstNumberReader>(delimiter);
}

std::unique_ptr<NotificationIdReader> MakeFieldReader(std::size_t field, char delimiter) {
    return std::make_unique<FieldReader>(field, delimiter);
}

std::unique_ptr<NotificationIdReader> MakeJsonMemberReader(const std::string& key) {
    return std::make_unique<JsonMemberReader>(key);
}

std::optional<NumberField> FindNumberField(std::string_view line, char delimiter,
                                           const std::function<bool(int)>& isWanted) {
    return FindField(line, delimiter, isWanted);
}

}  // namespace NS_KX::NS_KXDU
