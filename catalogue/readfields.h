#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "catalogue/kinds.h"

namespace NS_KX {

/// A field of the record that an identifier was read into.
struct ReadField {
    std::string name;  ///< of a nested record: "port.neId"
    std::string value;
    bool isKnown;  ///< not what a record that knows nothing has
};

/// The fields of the record that fdn is read into, without reserved ones. Lets the library's
/// `InterfaceNotExistException` through.
std::vector<ReadField> ReadFields(const std::string& fdn, const Kind& kind);

/// Whether no field is known: the identifier says nothing, as the text that stands for no port.
bool IsNothingRead(const std::vector<ReadField>& fields);

/// What users are told then.
inline constexpr std::string_view NOTHING_IS_READ = "nothing is read: the record stays one that knows nothing";

}  // namespace NS_KX
