/// What every entry point needs: it catches all exceptions, and refuses a text that is NULL and has a size.
#pragma once

#include <cstddef>
#include <new>
#include <string_view>

#include <kx/kx.h>

namespace NS_KX::NS_C {

/// Whether a caller may hand this over as a text.
constexpr bool IsText(const char* data, std::size_t size) noexcept {
    return data != nullptr || size == 0;
}

/// The text that a caller handed over; never without data, which would mean "not there" to those who search it.
constexpr std::string_view ViewOf(const char* data, std::size_t size) noexcept {
    // NOLINTNEXTLINE(bugprone-string-constructor): empty, but with data
    return data != nullptr ? std::string_view(data, size) : std::string_view("", 0);
}

constexpr kx_text TextOf(std::string_view text) noexcept {
    return {text.data(), text.size()};
}

/// The status that `work` returns, or that of what it throws.
template <class Work>
kx_status Guarded(Work work) noexcept {
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return KX_NO_MEMORY;
    } catch (...) {
        return KX_FAILED;
    }
}

}  // namespace NS_KX::NS_C
