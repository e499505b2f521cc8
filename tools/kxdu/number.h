#pragma once

#include <charconv>
#include <limits>
#include <optional>
#include <string_view>

namespace NS_KXDU {

/// Text that is nothing but decimal digits, as a number up to 2147483647.
inline std::optional<int> ReadNumber(std::string_view text) noexcept {
    unsigned number = 0;
    const char* const end = text.data() + text.size();
    const auto [behind, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || behind != end || number > std::numeric_limits<int>::max()) {
        return std::nullopt;
    }
    return static_cast<int>(number);
}

}  // namespace NS_KXDU
