/// Readers may be given a text that lies in the record that they fill.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace NS_UTIL::NS_FDN {

/// Whether `fdn` lies in `text`.
inline bool LiesIn(const std::string& text, std::string_view fdn) noexcept {
    // As numbers, since pointers into different objects must not be compared.
    const auto distance = reinterpret_cast<std::uintptr_t>(fdn.data()) - reinterpret_cast<std::uintptr_t>(text.data());
    return distance < text.size();
}

/// Returns `read(fdn)`, or `read` of a copy when `isOwn`: for readers that write a text of the record and then read on.
template <class Read>
auto ReadApart(std::string_view fdn, bool isOwn, Read read) {
    if (isOwn) [[unlikely]] {
        return read(std::string(fdn));
    }
    return read(fdn);
}

}  // namespace NS_UTIL::NS_FDN
