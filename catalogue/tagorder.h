#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace NS_KX {

/// Finds identifiers whose tags are not as they should be. Cheap enough to be asked about every line of a file:
/// the levels that a line shares with the line before are not looked at again. One thread at a time.
class TagOrder {
public:
    /// Whether each level of `fdn` has a known tag, no tag occurs twice, and containers stand before what they contain.
    /// `FindTagProblem` says what is wrong if not.
    bool IsKeptBy(std::string_view fdn);

private:
    // What the levels of a text up to some place say about those that may follow.
    struct State {
        std::size_t end = 0;     // past the comma of the last of these levels
        std::uint64_t seen = 0;  // a bit for each of their tags
        int depth = 0;           // of the last level
    };

    void GoBackTo(std::string_view fdn);
    bool IsKeptFromLast(std::string_view fdn);

    static constexpr std::size_t MOST_STATES = 16;

    std::string m_text;                           // the levels of the last identifier that have a state
    std::array<State, MOST_STATES + 1> m_states;  // the first one is that of no level
    std::size_t m_last = 0;
};

}  // namespace NS_KX
