#pragma once

#include <charconv>
#include <cstddef>
#include <cstring>
#include <string_view>

#include <rapidjson/stringbuffer.h>

namespace NS_KX {

/// Gathers the output of a block, for all formats. The JSON writer has short cuts for this buffer, and unlike a string
/// it does not clear the room that it gives.
using TextBuffer = rapidjson::StringBuffer;

inline void Append(TextBuffer& buffer, std::string_view text) {
    if (!text.empty()) {
        std::memcpy(buffer.Push(text.size()), text.data(), text.size());
    }
}

template <class Number>
void AppendNumber(TextBuffer& buffer, Number number) {
    char digits[24];
    const char* const end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    Append(buffer, {digits, static_cast<std::size_t>(end - digits)});
}

inline std::string_view ViewOf(const TextBuffer& buffer) {
    return {buffer.GetString(), buffer.GetSize()};
}

}  // namespace NS_KX
