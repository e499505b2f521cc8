#pragma once

#include <limits>
#include <string>

#include "failure.h"
#include "text/number.h"
#include "text/text.h"

namespace NS_KXDU {

/// An argument that is a decimal number up to largest. Throws `Failure` with `ExitCode::USAGE` for any other.
inline int ParseNumber(const std::string& argument, int largest = std::numeric_limits<int>::max()) {
    const auto number = ReadNumber(argument);
    if (!number || *number > largest) {
        throw Failure(ExitCode::USAGE, Quoted(argument) + " is no number from 0 to " + std::to_string(largest));
    }
    return *number;
}

}  // namespace NS_KXDU
