#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "catalogue/kind.h"

namespace NS_KX {

/// Something wrong in an identifier.
struct Problem {
    std::size_t column;  ///< from 1
    std::string text;
    bool lacksSubValues = false;  ///< it is a level that has several, and fewer than it must have
};

/// Calls `report` for each place where `fdn` is not well formed, has an unknown tag, a sub-value that is out of range,
/// or a level twice. Of very many in one identifier only the first few are reported.
void CheckLevels(std::string_view fdn, const std::function<void(const Problem&)>& report);

/// The same, and where nothing of this is found, whether its last level means no kind of identifier: all that is wrong
/// with `fdn` by itself. Returns the kind of `fdn`; null if something was reported.
const Kind* CheckIdentifier(std::string_view fdn, const std::function<void(const Problem&)>& report);

/// Why `text` cannot be an identifier at all: it is empty, holds a NUL byte, or is not UTF-8. None if it can.
std::optional<Problem> FindNoText(std::string_view text);

/// The first of all that is wrong with `text`: why it cannot be an identifier, or else what `CheckIdentifier` reports
/// first. None if nothing is wrong.
std::optional<Problem> FindFirstProblem(std::string_view text);

}  // namespace NS_KX
