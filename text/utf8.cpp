#include "text/utf8.h"

#include <simdjson.h>

namespace NS_KX {

bool IsAscii(std::string_view text) noexcept {
    unsigned char bits = 0;
    for (const char character : text) {
        bits |= static_cast<unsigned char>(character);
    }
    return bits < 0x80U;
}

std::size_t FindInvalidUtf8(std::string_view text) {
    if (IsAscii(text) || simdjson::validate_utf8(text.data(), text.size())) {
        return text.size();
    }
    // Finds the first sequence that is not UTF-8 by itself.
    for (std::size_t begin = 0; begin < text.size();) {
        const auto lead = static_cast<unsigned char>(text[begin]);
        const std::size_t size = lead < 0x80U ? 1 : lead < 0xE0U ? 2 : lead < 0xF0U ? 3 : 4;
        const std::string_view sequence = text.substr(begin, size);
        if (!simdjson::validate_utf8(sequence.data(), sequence.size())) {
            return begin;
        }
        begin += size;
    }
    return text.size();
}

}  // namespace NS_KX
