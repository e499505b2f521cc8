/// Pieces of identifiers: a level, "NE", or one of its sub-values, "PP:2". Any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/kind.h"

namespace NS_KX {

/// Which piece is meant.
struct PieceName {
    std::string tag;
    std::optional<unsigned> index;  ///< of the sub-value, from 0; none means the whole value of the level

    /// Reads "NE" or "PP:2". A tag consists of upper-case letters and digits, and need not be known. None for any other
    /// text.
    static std::optional<PieceName> Parse(std::string_view text);

    /// Whether identifiers have such a piece: the tag is known, and its level may have that sub-value.
    [[nodiscard]] bool IsKnown() const;

    /// Whether the piece is a number, or the first of its level's sub-values is.
    [[nodiscard]] bool IsNumber() const;
};

/// Finds several pieces in one pass.
class PieceFinder {
public:
    explicit PieceFinder(std::vector<PieceName> names);

    [[nodiscard]] const std::vector<PieceName>& Names() const noexcept { return m_names; }

    /// Puts the pieces of `fdn` into `found`, one for each name. They are views of `fdn` and may be empty; a missing
    /// piece gives a view without data (null). The first of several levels with the same tag counts.
    void Find(std::string_view fdn, std::span<std::string_view> found) const;

private:
    std::vector<PieceName> m_names;
    std::vector<std::size_t> m_firstOfTag;  // for each name, the index of the first name with the same tag
    std::vector<std::size_t> m_tags;        // the indexes of the names that are the first with their tag
};

/// The piece `name` of `fdn`; a view without data if it is missing.
std::string_view FindPiece(std::string_view fdn, const PieceName& name);

/// The number that a piece is read as. None if the piece is missing or empty, or reads as -1, which means "none".
std::optional<std::int32_t> NumberOf(std::string_view piece);

/// `fdn` with this piece replaced by `value`; unchanged if the piece is missing. `value` holds no ",", and no "|" if
/// the piece is a sub-value.
std::string ReplacePiece(std::string_view fdn, const PieceName& name, std::string_view value);

/// Whether `fdn` lies in `container`: `fdn` has each level of the container, with the same value. Numbers compare as
/// they are read. An identifier lies in itself.
bool LiesIn(std::string_view fdn, std::string_view container);

/// Whether both are read as the same record of the same kind of thing; false if either is of no kind. Reads them into
/// `first` and `second`.
bool AreSame(std::string_view one, std::string_view other, const NS_UTIL::Surroundings& surroundings, AnyRecord& first,
             AnyRecord& second);

}  // namespace NS_KX
