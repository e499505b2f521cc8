/// Explains an identifier piece by piece.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <kx_domain_util/surroundings.h>

#include "catalogue/fieldvalues.h"
#include "catalogue/kinds.h"

namespace NS_KX {

/// A piece of an identifier: its place in the text, and its meaning.
struct ExplainedPart {
    std::size_t levelBegin;  ///< where its level begins
    std::size_t begin;
    std::size_t size;  ///< may be 0
    std::string meaning;
    std::string caveat;  ///< what is wrong with it; empty if nothing is
};

struct Explanation {
    std::string fdn;
    std::string_view type;             ///< of the record; empty if the identifier is read into none
    std::vector<ExplainedPart> parts;  ///< in the order of the text
    std::vector<FieldValue> fields;    ///< without reserved ones
    std::vector<std::string> remarks;  ///< what is peculiar in how it is read and written, though nothing is wrong
    std::vector<std::string> notes;    ///< what else is wrong with it
    bool isCanonical = false;          ///< there is no note, and the library would write exactly this text
};

/// The note of an identifier that could not be compared with the library's own text, for lack of an inventory.
inline constexpr std::string_view NOT_COMPARED =
    "not compared with what the library writes: that depends on the NE, and there is no inventory";
/// The note of an identifier that could not be read, for lack of a configuration.
inline constexpr std::string_view NOT_READ = "not read: that depends on the configuration, and there is none";

/// Returns what is known about an NE, as text to put after its number; may be empty.
using DescribeNe = std::function<std::string(std::int32_t neId)>;

/// Explains `fdn` as an identifier of `kind`, or of no known kind if that is null. If `surroundings` throw
/// `InterfaceNotExistException`, a note says so. `describeNe` may be empty.
Explanation Explain(std::string_view fdn, const Kind* kind, const NS_UTIL::Surroundings& surroundings,
                    const DescribeNe& describeNe = {});

}  // namespace NS_KX
