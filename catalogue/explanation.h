/// What an identifier says, piece by piece.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <kx_domain_util/surroundings.h>

#include "catalogue/kinds.h"
#include "catalogue/readfields.h"

namespace NS_KX {

/// A piece of an identifier, where in its text it is, and what it means.
struct ExplainedPart {
    std::size_t levelBegin;  ///< of the level that it is in
    std::size_t begin;
    std::size_t size;  ///< may be 0
    std::string meaning;
    std::string caveat;  ///< why it is not what it should be; empty: it is
};

struct Explanation {
    std::string fdn;
    std::string_view type;             ///< of the record; empty: none is read from this identifier
    std::vector<ExplainedPart> parts;  ///< in the order of the text
    std::vector<ReadField> fields;     ///< without reserved ones
    std::vector<std::string> notes;    ///< what else is wrong with it
    bool isCanonical = false;          ///< nothing is noted, and the library writes what was read just so
};

/// The note of an identifier that could not be compared with what is written, for lack of an inventory.
inline constexpr std::string_view NOT_COMPARED =
    "not compared with what the library writes: that depends on the NE, and there is no inventory";
/// The note of an identifier that could not be read, for lack of a configuration.
inline constexpr std::string_view NOT_READ = "not read: that depends on the configuration, and there is none";

/// Says what is known of an NE besides its number, as text that follows the number; may be empty.
using DescribeNe = std::function<std::string(std::int32_t neId)>;

/// Explains `fdn` as an identifier of `kind`; null: nothing reads it. Where `surroundings` throw
/// `InterfaceNotExistException`, a note says so. `describeNe` may be empty.
Explanation Explain(std::string_view fdn, const Kind* kind, const NS_UTIL::Surroundings& surroundings,
                    const DescribeNe& describeNe = {});

}  // namespace NS_KX
