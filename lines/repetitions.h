#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace NS_KX {

/// Keeps messages from flooding a terminal: shows the first few of each kind and counts the rest. Two messages are of
/// one kind if they have the same text up to the first quotation mark.
class Repetitions {
public:
    /// How many messages of a kind are shown.
    static constexpr std::uint64_t MOST_SHOWN = 10;

    /// Whether to show this message, which is counted if not.
    bool IsShown(std::string_view message);

    /// How many messages were not shown.
    [[nodiscard]] std::uint64_t Hidden() const noexcept { return m_hidden; }

private:
    std::map<std::string, std::uint64_t, std::less<>> m_counts;
    std::uint64_t m_hidden = 0;
};

}  // namespace NS_KX
