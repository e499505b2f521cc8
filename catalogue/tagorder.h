#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "catalogue/kind.h"

namespace NS_KX {

/// Finds identifiers whose tags are not as they should be. Cheap enough to be asked about every line of a file: as long
/// as a line has the tags of the line before, none is looked up. One thread at a time.
class TagOrder {
public:
    /// Whether each level of `fdn` has a known tag, no tag occurs twice, and containers stand before what they contain.
    /// `FindTagProblem` says what is wrong if not.
    bool IsKeptBy(std::string_view fdn);

    /// The same for someone who goes through the levels anyway: call `Begin`, and `Accepts` for each level as long as
    /// it returns true. `head` holds the first eight characters from the begin of the level on, packed.
    void Begin() noexcept { m_place = 0; }
    bool Accepts(std::string_view level, std::uint64_t head) {
        const Level& before = m_levels[++m_place];
        return (m_place <= m_last && (head & before.mask) == before.head) || LookUp(level);
    }

private:
    // A level of the latest identifier.
    struct Level {
        std::uint64_t head = 0;  // its tag and "=", packed
        std::uint64_t mask = 0;  // of the characters in `head`
        const Tag* tag = nullptr;
    };

    bool LookUp(std::string_view level);

    static constexpr std::size_t MOST_TAGS = 64;  // more than there are

    std::array<Level, MOST_TAGS + 1> m_levels;  // the first one stands before all levels
    std::size_t m_last = 0;                     // the place of the last level that is known to be right
    std::size_t m_place = 0;                    // of the level that was asked about last
};

}  // namespace NS_KX
