/// Inputs in memory of exactly their size, so that the address sanitizer catches a read past their end.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "support/scale.h"

#ifdef KX_TEST_ADDRESS_SANITIZED
#include <sanitizer/asan_interface.h>
#endif

namespace NS_TEST {

/// A text for operations that take a std::string. Under the address sanitizer, all bytes past its last character are
/// out of bounds, even the terminator: readers must not read it.
class ExactText {
public:
    explicit ExactText(std::string_view text) {
        // The room makes the text leave the string object, and leaves bytes past its end that can be fenced off.
        constexpr std::size_t FENCE = 32;
        m_text.reserve(text.size() + FENCE);
        m_text.assign(text);
        Fence(true);
    }
    ~ExactText() { Fence(false); }
    ExactText(const ExactText&) = delete;
    ExactText& operator=(const ExactText&) = delete;

    operator const std::string&() const { return m_text; }  // NOLINT(google-explicit-constructor)

private:
    void Fence([[maybe_unused]] bool isUp) {
#ifdef KX_TEST_ADDRESS_SANITIZED
        const char* const begin = m_text.data() + m_text.size();
        const std::size_t size = m_text.capacity() + 1 - m_text.size();
        if (isUp) {
            __asan_poison_memory_region(begin, size);
        } else {
            __asan_unpoison_memory_region(begin, size);
        }
#endif
    }

    std::string m_text;
};

/// A text for operations that take a std::string_view: heap memory without a terminator.
class ExactView {
public:
    explicit ExactView(std::string_view text) : m_text(new char[text.size()]), m_size(text.size()) {
        if (!text.empty()) {
            std::memcpy(m_text.get(), text.data(), text.size());
        }
    }

    operator std::string_view() const { return {m_text.get(), m_size}; }  // NOLINT(google-explicit-constructor)

private:
    std::unique_ptr<char[]> m_text;
    std::size_t m_size;
};

}  // namespace NS_TEST
