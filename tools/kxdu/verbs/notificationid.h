/// Where a line that tells of a notification has the notification's identifier: a number from 0 to 2147483647.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace NS_KX::NS_KXDU {

/// Finds the identifier in lines. Each belongs to one thread.
class NotificationIdReader {
public:
    virtual ~NotificationIdReader() = default;
    /// The identifier of `line`; none where the line has none in its place.
    virtual std::optional<int> Read(std::string_view line) = 0;
};

/// Takes the first field that is an identifier. Fields are what stands between blanks and tabs, one or more of them; a
/// carriage return counts as a blank.
std::unique_ptr<NotificationIdReader> MakeFirstNumberReader();
/// Takes the field number `field`, counted from 1.
std::unique_ptr<NotificationIdReader> MakeFieldReader(std::size_t field);
/// Takes the first member called `key` of the JSON object that the line is: a number, or a text that is one. The line
/// is not looked at behind it.
std::unique_ptr<NotificationIdReader> MakeJsonMemberReader(const std::string& key);

}  // namespace NS_KX::NS_KXDU
