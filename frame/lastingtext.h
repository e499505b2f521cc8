#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <memory>
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
/// may ask while the process ends. Not a static variable with an initializer: a fork in the middle of that would leave
/// the child waiting for ever. Throws std::bad_alloc if the first call finds no memory.
template <TextArgument Text>
const std::string& LastingText() {
    static std::atomic<const std::string*> made{nullptr};
    const std::string* text = made.load(std::memory_order_acquire);
    if (text == nullptr) {
        auto own = std::make_unique<const std::string>(Text.View());
        if (made.compare_exchange_strong(text, own.get())) {
            text = own.release();
        }
    }
    return *text;
}

}  // namespace NS_UTIL::NS_FRAME
