#include "text/text.h"

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

std::optional<Flaw> FindFlaw(std::string_view line, bool mayBeBinary) {
    if (line.empty()) {
        return Flaw{0, "the line is empty"};
    }
    if (const auto nul = line.find('\0'); nul != std::string_view::npos) {
        return Flaw{nul + 1, "NUL byte"};
    }
    if (const auto invalid = mayBeBinary ? line.size() : FindInvalidUtf8(line); invalid != line.size()) {
        return Flaw{invalid + 1, "not UTF-8"};
    }
    return std::nullopt;
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

std::string Grouped(std::uint64_t number) {
    constexpr std::size_t GROUP = 3;
    std::string text = std::to_string(number);
    for (std::size_t end = text.size(); end > GROUP; end -= GROUP) {
        text.insert(end - GROUP, 1, ',');
    }
    return text;
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
