#include "text/text.h"

#include <rapidjson/encodings.h>
#include <rapidjson/memorystream.h>

namespace NS_KX {

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

std::string Wrapped(const std::string& head, const std::vector<std::string>& words, std::size_t width) {
    const std::string indent(head.size(), ' ');
    std::string lines;
    std::string line = head;
    for (const std::string& word : words) {
        const bool isFirst = line.size() == head.size();
        if (!isFirst && line.size() + 1 + word.size() > width) {
            lines.append(line).append("\n");
            line = indent + word;
        } else {
            line.append(isFirst ? "" : " ").append(word);
        }
    }
    return lines + line;
}

}  // namespace NS_KX
