#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace NS_UTIL::NS_FRAME {

/// A text as an argument of a template.
template <std::size_t Size>
struct TextArgument {
    char characters[Size];

    consteval TextArgument(const char (&text)[Size]) { std::copy_n(text, Size, characters); }

    [[nodiscard]] constexpr std::string_view View() const { return {characters, Size - 1}; }
};

/// Text as a string, made at the first call, so that later calls allocate nothing. It is never destroyed, since threads
/// may ask while the process ends. Throws std::bad_alloc if the first call finds no memory.
template <TextArgument Text>
const std::string& LastingText() {
    static const std::string& text = *new std::string(Text.View());
    return text;
}

}  // namespace NS_UTIL::NS_FRAME
