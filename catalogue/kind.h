/// Describes kinds of identifiers, and the levels that identifiers consist of.
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

/// Thrown for a record that cannot be written as an identifier; the text says why.
class BadRecord : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A kind of identifier: which level ends it, which record it fills, and how.
struct Kind {
    /// The name of the record; the name of a variant follows a ":".
    std::string_view type;
    /// What people call it, the same for all variants.
    std::string_view word;
    /// The tags of the levels that may end it; empty ones are unused. If there is none, only its type finds the kind.
    std::array<std::string_view, 6> lastTags;
    /// An identifier of this kind as the library writes it, if the type of NE 5 has no rules of its own.
    std::string_view example;

    const RecordLayout& layout;

    /// Reads `fdn` into a fresh record. Throws std::bad_alloc, and what `surroundings` throws.
    void (*read)(std::string_view fdn, void* record, const NS_UTIL::Surroundings& surroundings);
    /// Replaces `fdn` with the identifier of a record. Throws std::bad_alloc, what `surroundings` throws, and
    /// `BadRecord`, for example if the fields contradict the text that the record keeps.
    void (*write)(const void* record, std::string& fdn, const NS_UTIL::Surroundings& surroundings);

    /// Whether an identifier that ends in one of these tags is of this kind; null means always.
    bool (*applies)(std::string_view fdn) = nullptr;
};

enum class SubValueKind {
    NUMBER,           ///< signed 32 bits
    OPTIONAL_NUMBER,  ///< the same, or empty
    PORT_NUMBER,      ///< signed or unsigned 32 bits: -1 is also written 4294967295
    TEXT,             ///< any text, also an empty one
};

struct SubValue {
    SubValueKind kind;
    /// Its name; after a ";" its special values with their meaning: "slot number; -1: none".
    std::string_view meaning;
};

/// Enough for the longest level, "TUNNEL".
using SubValueArray = std::array<SubValue, 7>;

/// The tag of a level, with a description of the level's sub-values.
struct Tag {
    std::string_view name;
    std::string_view meaning;
    std::size_t least;  ///< number of sub-values that must be present
    std::size_t most;   ///< number of sub-values that are described
    SubValueArray subValues;
    bool isOpen = false;       ///< may have more sub-values than are described
    bool isReadWhole = false;  ///< readers skip all its sub-values if one is missing
    bool mayEscape = false;    ///< the last described sub-value may continue after an escaped "|"
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
