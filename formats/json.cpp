#include "formats/json.h"

#include <array>
#include <cstddef>

namespace NS_KX {

namespace {

// For each character the one that follows the backslash of its escape: "u" if it has no letter of its own, NUL if it
// needs no escape.
constexpr std::array<char, 256> ESCAPES = [] {
    std::array<char, 256> escapes{};
    for (std::size_t control = 0; control < 0x20; ++control) {
        escapes.at(control) = 'u';
    }
    escapes['\b'] = 'b';
    escapes['\f'] = 'f';
    escapes['\n'] = 'n';
    escapes['\r'] = 'r';
    escapes['\t'] = 't';
    escapes['"'] = '"';
    escapes['\\'] = '\\';
    return escapes;
}();

char EscapeOf(char character) {
    return ESCAPES[static_cast<unsigned char>(character)];
}

void AppendEscaped(char character, char escape, TextBuffer& out) {
    out.Put('\\');
    out.Put(escape);
    if (escape == 'u') {
        constexpr std::string_view DIGITS = "0123456789ABCDEF";
        const auto code = static_cast<unsigned char>(character);
        Append(out, "00");
        out.Put(DIGITS[code >> 4U]);
        out.Put(DIGITS[code & 0xFU]);
    }
}

}  // namespace

void AppendJsonText(std::string_view text, TextBuffer& out) {
    out.Put('"');
    std::size_t plain = 0;  // the first character that was not appended yet
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (const char escape = EscapeOf(text[at]); escape != '\0') {
            Append(out, text.substr(plain, at - plain));
            AppendEscaped(text[at], escape, out);
            plain = at + 1;
        }
    }
    Append(out, text.substr(plain));
    out.Put('"');
}

}  // namespace NS_KX
