#include "text/utf8.h"

#include <simdjson.h>

#include "text/utf8sequence.h"

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
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t size = Utf8SequenceSize(text.substr(at));
        if (size == 0) {
            break;
        }
        at += size;
    }
    return at;
}

}  // namespace NS_KX
