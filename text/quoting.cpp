#include "text/quoting.h"

#include "text/utf8.h"

namespace NS_KX {

void AppendQuoted(std::string& message, std::string_view text, std::size_t longest) {
    constexpr std::string_view DIGITS = "0123456789abcdef";
    const std::string_view shown = text.substr(0, longest);
    const std::size_t validEnd = FindInvalidUtf8(shown);
    message += '"';
    for (std::size_t at = 0; at < shown.size(); ++at) {
        const auto byte = static_cast<unsigned char>(shown[at]);
        if (byte < 0x20U || byte == 0x7FU || at >= validEnd) {
            message.append("\\x").append(1, DIGITS[byte >> 4U]).append(1, DIGITS[byte & 0xFU]);
        } else {
            message += shown[at];
        }
    }
    message += shown.size() < text.size() ? "...\"" : "\"";
}

}  // namespace NS_KX
