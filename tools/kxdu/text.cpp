#include "text.h"

#include <rapidjson/encodings.h>
#include <rapidjson/memorystream.h>

namespace NS_KXDU {

namespace {

struct Nowhere {
    void Put(char) const noexcept {}
};

}  // namespace

bool IsAscii(std::string_view text) noexcept {
    unsigned char bits = 0;
    for (const char character : text) {
        bits |= static_cast<unsigned char>(character);
    }
    return bits < 0x80U;
}

std::size_t FindInvalidUtf8(std::string_view text) {
    rapidjson::MemoryStream stream(text.data(), text.size());
    Nowhere nowhere;
    while (stream.Tell() < text.size()) {
        const std::size_t begin = stream.Tell();
        if (!rapidjson::UTF8<>::Validate(stream, nowhere) || stream.Tell() > text.size()) {
            return begin;
        }
    }
    return text.size();
}

std::string Quoted(std::string_view text) {
    constexpr std::size_t LONGEST = 60;
    constexpr std::string_view DIGITS = "0123456789abcdef";
    std::string quoted = "\"";
    for (const char character : text.substr(0, LONGEST)) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte >= 0x20U && byte < 0x7FU) {
            quoted += character;
        } else {
            quoted.append("\\x").append(1, DIGITS[byte >> 4U]).append(1, DIGITS[byte & 0xFU]);
        }
    }
    quoted += text.size() > LONGEST ? "...\"" : "\"";
    return quoted;
}

}  // namespace NS_KXDU
