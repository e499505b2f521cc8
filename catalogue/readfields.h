#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "catalogue/kinds.h"

namespace NS_KX {

/// A field of the record that an identifier was read into.
struct ReadField {
    std::string_view name;  ///< that of a nested record: "port.neId"
    std::string value;      ///< texts in quotes
    bool isKnown;           ///< not what a record that knows nothing has
};

/// Whether the field of `record`, which is of this kind, differs from that of a record that knows nothing.
bool IsKnown(const Kind& kind, const Field& field, const void* record);

/// Whether no field is known, reserved ones aside: the identifier says nothing, as the text that stands for no port.
bool IsNothingRead(const Kind& kind, const void* record);

/// The fields of `record`, which is of this kind, without reserved ones.
std::vector<ReadField> FieldsOf(const Kind& kind, const void* record);

/// What users are told when nothing is read.
inline constexpr std::string_view NOTHING_IS_READ = "nothing is read: the identifier fills no field of its record";

}  // namespace NS_KX
