/// Descriptions of the kinds of identifiers, and of the tags of their levels.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

#include <kx_domain_util/surroundings.h>

#include "catalogue/record.h"

namespace NS_KX {

/// A record from which no identifier can be written; the text says why.
class BadRecord : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A kind of identifier: which level ends it, which record it fills, and how.
struct Kind {
    /// Its name in all inputs and outputs: that of its record, and for a variant ":" and a word.
    std::string_view type;
    /// What people call it, the same for all variants.
    std::string_view word;
    /// The tags of the levels that end it; empty ones are unused. If there are none, it is found only by its type.
    std::array<std::string_view, 6> lastTags;
    /// An identifier of this kind as its writer writes it, if NE 5 is of a type without rules of its own.
    std::string_view example;

    const RecordLayout& layout;

    /// Reads `fdn` into a record that knows nothing. Throws std::bad_alloc, and what `surroundings` throws.
    void (*read)(std::string_view fdn, void* record, const NS_UTIL::Surroundings& surroundings);
    /// Writes a record into `fdn`, in place of what it held. Throws `BadRecord` for a record whose fields contradict
    /// the text that it keeps, std::bad_alloc, and what `surroundings` throws.
    void (*write)(const void* record, std::string& fdn, const NS_UTIL::Surroundings& surroundings);

    /// Whether an identifier that ends in one of these tags is of this kind. Null: always.
    bool (*applies)(std::string_view fdn) = nullptr;
};

enum class SubValueKind {
    NUMBER,           ///< signed 32 bits
    OPTIONAL_NUMBER,  ///< the same, or empty
    PORT_NUMBER,      ///< signed or unsigned 32 bits: -1 is also written 4294967295
    TEXT,             ///< anything, also nothing
};

struct SubValue {
    SubValueKind kind;
    /// Its name; after a ";" its special values and what they say: "slot number; -1: none".
    std::string_view meaning;
};

/// Enough for the longest level, "TUNNEL".
using SubValueArray = std::array<SubValue, 7>;

/// The tag of a level, and what the level's sub-values are.
struct Tag {
    std::string_view name;
    std::string_view meaning;
    std::size_t least;  ///< sub-values that must be there
    std::size_t most;   ///< sub-values that are described
    SubValueArray subValues;
    bool isOpen = false;       ///< may have more sub-values than are described
    bool isReadWhole = false;  ///< readers take none of its sub-values when one is missing
    bool mayEscape = false;    ///< the last sub-value that is described may go on after an escaped "|"
    int depth = INNERMOST;     ///< a level stands before all deeper ones

    static constexpr int INNERMOST = 11;
};

/// The kinds and tags of one family of identifiers.
struct Family {
    std::span<const Kind> kinds;  ///< the first kind that applies counts
    std::span<const Tag> tags;
};

extern const Family EQUIPMENT;
extern const Family PORTS;
extern const Family SERVICES;
extern const Family OAM;

}  // namespace NS_KX
