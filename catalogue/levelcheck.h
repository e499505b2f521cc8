#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "catalogue/kind.h"
#include "catalogue/pieces.h"

namespace NS_KX {

/// Something wrong in an identifier.
struct Problem {
    std::size_t column;  ///< from 1; 0: the whole identifier is meant
    std::string text;
    std::string_view reason;      ///< a literal, the same for all problems of its sort: "unknown tag"
    bool lacksSubValues = false;  ///< its level must have several sub-values, and has too few

    /// "column: text".
    [[nodiscard]] std::string ColumnAndText() const { return std::to_string(column) + ": " + text; }
};

/// Calls `report` for each malformed place of `fdn`, each unknown tag, each sub-value out of range, and each level that
/// is repeated or stands after one that it contains. Reports only the first few if there are very many.
void CheckLevels(std::string_view fdn, const std::function<void(const Problem&)>& report);

/// Does the same, and if that finds nothing, reports an `fdn` whose last level ends no kind of identifier. Returns the
/// kind of `fdn`; null if something was reported.
const Kind* CheckIdentifier(std::string_view fdn, const std::function<void(const Problem&)>& report);

/// What is wrong with `value` as the value of a piece, whose name is known; columns count in `value`. None if nothing
/// is.
std::optional<Problem> FindValueProblem(const PieceName& piece, std::string_view value);

/// What is wrong with the first level whose tag is malformed, unknown or repeated, or that stands after a level that it
/// contains. None if it keeps the `TagOrder`.
std::optional<Problem> FindTagProblem(std::string_view fdn);

/// Calls `report` for each problem of `text`, which may hold anything: the flaw that keeps it from being an identifier,
/// or else what `CheckIdentifier` reports.
void FindProblems(std::string_view text, const std::function<void(const Problem&)>& report);

/// The first problem of `text`; none if nothing is wrong.
std::optional<Problem> FindFirstProblem(std::string_view text);

}  // namespace NS_KX
