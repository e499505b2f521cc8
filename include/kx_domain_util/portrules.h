/// What ports of some FB types do differently from all others: one row for each such type.
///
/// Threads: any. Nothing throws.
#pragma once

#include <array>
#include <cstdint>

namespace NS_UTIL {

/// The `ppType` of a port that is identified by its name.
inline constexpr std::int32_t NAMED_PORT = 251;

/// The rules of one FB type.
struct PortRules {
    std::int32_t fbType = 0;
    bool keepsShelf = false;      ///< A logical port that has a slot is written with its shelf.
    bool hasSlotZero = false;     ///< Under a carrier profile, a port without a slot is written with slot 0.
    bool hasNoNamedSlot = false;  ///< Under a carrier profile, a port identified by its name is read without a slot.
    bool hasEscapedName = false;  ///< The name may hold a "|", escaped by a backslash.
};

/// The FB types whose ports have rules of their own, in ascending order. FB type 0 means a port without one.
inline constexpr std::array<PortRules, 8> PORT_RULES{{
    {.fbType = 0, .hasSlotZero = true},
    {.fbType = 1025, .hasEscapedName = true},
    {.fbType = 65543, .keepsShelf = true},
    {.fbType = 65547, .keepsShelf = true, .hasSlotZero = true, .hasNoNamedSlot = true},
    {.fbType = 65549, .keepsShelf = true, .hasNoNamedSlot = true},
    {.fbType = 65562, .keepsShelf = true},
    {.fbType = 65571, .keepsShelf = true},
    {.fbType = 65635, .keepsShelf = true},
}};

/// The rules of ports of this FB type; all false for a type without rules of its own.
constexpr PortRules PortRulesOf(std::int32_t fbType) noexcept {
    for (const PortRules& rules : PORT_RULES) {
        if (rules.fbType == fbType) {
            return rules;
        }
    }
    return {.fbType = fbType};
}

}  // namespace NS_UTIL
