/// The tags of levels and what their sub-values are: one table for all that looks at the text itself.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

namespace NS_KX {

enum class SubValueKind {
    NUMBER,           ///< signed 32 bits
    OPTIONAL_NUMBER,  ///< the same, or empty
    PORT_NUMBER,      ///< signed or unsigned 32 bits: -1 is also written 4294967295
    TEXT,             ///< anything, also nothing
};

struct SubValue {
    SubValueKind kind;
    std::string_view meaning;
};

/// Enough for the longest level, "TUNNEL".
using SubValueArray = std::array<SubValue, 7>;

struct Tag {
    std::string_view name;
    std::string_view meaning;
    std::size_t least;  ///< sub-values that must be there
    std::size_t most;   ///< sub-values that are described
    SubValueArray subValues;
    bool isOpen = false;       ///< may have more sub-values than are described
    bool isReadWhole = false;  ///< readers take none of its sub-values when one is missing
};

/// All tags, containers first.
std::span<const Tag> AllTags();

/// The row of a tag; null when nobody knows it.
const Tag* FindTag(std::string_view name);

/// Whether a level with this tag and value is a port whose name goes on behind an escaped "|": the sub-value there
/// belongs to the name, and to no sub-value of its own.
bool HasEscapedName(const Tag& tag, std::string_view value);

}  // namespace NS_KX
