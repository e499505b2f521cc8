#pragma once

#include <limits>
#include <string>

#include "lines/failure.h"
#include "text/number.h"
#include "text/quoting.h"

namespace NS_KX::NS_KXDU {

/// Reads an argument that is a decimal number from 0 to `largest`. Throws `Failure` with `Cause::INPUT` for any
/// other; `adviceOnName` ends the message if the argument looks like a name.
inline int ParseNumber(const std::string& argument, int largest = std::numeric_limits<int>::max(),
                       const std::string& adviceOnName = {}) {
    const auto number = ReadNumber(argument);
    if (!number || *number > largest) {
        const bool isOfDigits = argument.find_first_not_of("0123456789-,") == std::string::npos;
        const bool isList = isOfDigits && argument.find(',') != std::string::npos;
        throw Failure(Cause::INPUT, Quoted(argument) + " is not a number from 0 to " + std::to_string(largest) +
                                        (isList ? "; separate numbers by blanks" : "") +
                                        (isOfDigits ? "" : adviceOnName));
    }
    return *number;
}

}  // namespace NS_KX::NS_KXDU
