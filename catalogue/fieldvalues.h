#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "catalogue/kinds.h"

namespace NS_KX {

/// A field of a record that an identifier was read into.
struct FieldValue {
    std::string_view name;  ///< in a nested record: "port.neId"
    std::string value;      ///< texts in quotes
    bool isKnown;           ///< differs from a fresh record
};

/// Whether the field of `record`, which is of this kind, differs from that of a fresh record.
bool IsKnown(const Kind& kind, const Field& field, const void* record);

/// The value of `field` in `record`; a text in quotes.
std::string ValueOf(const Field& field, const void* record);

/// The values that `field` may have, in words.
std::string RangeOf(const Field& field);

/// Whether no field is known, except for reserved ones: for example the text that means "no port".
bool IsNothingRead(const Kind& kind, const void* record);

/// The fields of `record`, which is of this kind, without reserved ones.
std::vector<FieldValue> FieldsOf(const Kind& kind, const void* record);

/// Says which field that no writer uses differs from the field that is written in its place; empty if none does. What
/// is read from an identifier never contradicts itself.
std::string ContradictionIn(const Kind& kind, const void* record);

/// The message to users when nothing is read.
inline constexpr std::string_view NOTHING_IS_READ = "nothing is read: the identifier fills no field of its record";

}  // namespace NS_KX
