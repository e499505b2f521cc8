#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace NS_KX {

/// The range of a signed 32-bit number, for messages.
inline constexpr const char* RANGE_OF_32_BITS = "from -2147483648 to 2147483647";

/// Whether `text` is a whole number in decimal digits of any length, with or without a "-" before them.
inline bool IsDecimal(std::string_view text) noexcept {
    const std::string_view digits = text.substr(text.starts_with('-') ? 1 : 0);
    return !digits.empty() && digits.find_first_not_of("0123456789") == std::string_view::npos;
}

/// Reads all of `text` as a decimal number. Returns false if it is none or out of range; `number` has no meaning then.
template <class Number>
bool ReadWhole(std::string_view text, Number& number) noexcept {
    const char* const end = text.data() + text.size();
    const auto [readEnd, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && readEnd == end;
}

/// `text` as a number from 0 to 2147483647; none if the number is larger, or if anything but decimal digits occurs.
inline std::optional<int> ReadNumber(std::string_view text) noexcept {
    unsigned number = 0;
    if (!ReadWhole(text, number) || number > std::numeric_limits<int>::max()) {
        return std::nullopt;
    }
    return static_cast<int>(number);
}

/// `number` in groups of three digits: 1,234,567.
inline std::string Grouped(std::uint64_t number) {
    constexpr std::size_t GROUP = 3;
    std::string text = std::to_string(number);
    for (std::size_t end = text.size(); end > GROUP; end -= GROUP) {
        text.insert(end - GROUP, 1, ',');
    }
    return text;
}

}  // namespace NS_KX
