#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace NS_KX::NS_KXDU {

class Verb;

/// The NEs that the user chose: "1,5,10-20". Any number of threads may ask.
class ChosenNes {
public:
    /// Adds the NEs of `text`. Returns what is wrong with it, and adds nothing then; empty if nothing is.
    std::string Add(std::string_view text);

    /// Whether all NEs are meant, since none was chosen.
    [[nodiscard]] bool AreAll() const noexcept { return m_ranges.empty(); }
    /// Whether the NE of this number is meant.
    [[nodiscard]] bool Has(std::int32_t neId) const noexcept;

private:
    std::vector<std::pair<std::int32_t, std::int32_t>> m_ranges;  // first and last
};

/// Adds `--ne` to `verb`.
void AddChosenNes(Verb& verb, ChosenNes& nes);

}  // namespace NS_KX::NS_KXDU
