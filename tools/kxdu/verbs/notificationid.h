/// Where a line that tells of a notification has the notification's identifier: a number from 0 to 2147483647.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace NS_KX::NS_KXDU {

/// In place of a delimiter: blanks and tabs, one or more of them, separate fields; a carriage return counts as a blank.
/// With any other delimiter each one separates two fields, which may be empty, or in quotes as in CSV.
inline constexpr char BLANKS = ' ';

/// Finds the identifier in lines. Each belongs to one thread.
class NotificationIdReader {
public:
    virtual ~NotificationIdReader() = default;
    /// The identifier of `line`; none if the line has none in its place.
    virtual std::optional<int> Read(std::string_view line) = 0;
};

/// Takes the first field that is an identifier.
std::unique_ptr<NotificationIdReader> MakeFirstNumberReader(char delimiter);
/// Takes the field number `field`, counted from 0.
std::unique_ptr<NotificationIdReader> MakeFieldReader(std::size_t field, char delimiter);
/// Takes the first member called `key` of the JSON object that the line is: a number, or a text that is one. The rest
/// of the line is not looked at.
std::unique_ptr<NotificationIdReader> MakeJsonMemberReader(const std::string& key);

struct NumberField {
    std::size_t field;  ///< counted from 0
    int number;
};

/// The first field that is a number for which `isWanted` is true.
std::optional<NumberField> FindNumberField(std::string_view line, char delimiter,
                                           const std::function<bool(int)>& isWanted);

}  // namespace NS_KX::NS_KXDU
