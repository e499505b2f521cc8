#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace NS_UTIL::NS_FDN {

/// Whether `fdn` lies in `text`. A reader that writes `text` and then reads on in `fdn` copies `fdn` first if so.
inline bool LiesIn(const std::string& text, std::string_view fdn) noexcept {
    // As numbers, since pointers into different objects must not be compared.
    const auto distance = reinterpret_cast<std::uintptr_t>(fdn.data()) - reinterpret_cast<std::uintptr_t>(text.data());
    return distance < text.size();
}

}  // namespace NS_UTIL::NS_FDN
