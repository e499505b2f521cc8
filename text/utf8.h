#pragma once

#include <cstddef>
#include <string_view>

namespace NS_KX {

/// Some programs write it at the beginning of a UTF-8 file. It belongs to the file, not to its text.
inline constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";

inline std::string_view WithoutByteOrderMark(std::string_view text) noexcept {
    return text.substr(text.starts_with(BYTE_ORDER_MARK) ? BYTE_ORDER_MARK.size() : 0);
}

/// Whether `text` holds nothing but ASCII.
bool IsAscii(std::string_view text) noexcept;

/// The position of the first byte sequence that is not UTF-8; `text.size()` if there is none.
std::size_t FindInvalidUtf8(std::string_view text);

/// Whether `text` is UTF-8.
inline bool IsUtf8(std::string_view text) {
    return FindInvalidUtf8(text) == text.size();
}

}  // namespace NS_KX
