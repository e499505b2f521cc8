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
    std::optional<unsigned> index;  ///< of the sub-value, from 0; none: all of the level's value

    /// Reads "NE" or "PP:2". None for any other text, a tag being of upper-case letters and digits; whether the tag is
    /// known does not matter.
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

    /// Puts the pieces of `fdn` into `found`, one for each name: views of `fdn`, which may be empty; views without data
    /// (null) for those that are not there. The first of several levels with the same tag counts.
    void Find(std::string_view fdn, std::span<std::string_view> found) const;

private:
    std::vector<PieceName> m_names;
    std::vector<std::size_t> m_firstOfTag;  // for each name the place of the first with its tag
    std::vector<std::size_t> m_tags;        // the places of the names that are the first with their tags
};

/// The piece of `fdn` that `name` means; a view without data if it is not there.
std::string_view FindPiece(std::string_view fdn, const PieceName& name);

/// The number that a piece is read as. None if the piece is not there, and if it says "none": it reads as -1.
std::optional<std::int32_t> NumberOf(std::string_view piece);

/// `fdn` with this piece replaced by `value`, which holds no "," and, if the piece is a sub-value, no "|". As it is
/// where the piece is not there.
std::string ReplacePiece(std::string_view fdn, const PieceName& name, std::string_view value);

/// Whether `fdn` lies in `container`: each level of the container is one of `fdn` too, with the same value. Numbers
/// compare as they are read. An identifier lies in itself.
bool LiesIn(std::string_view fdn, std::string_view container);

/// Whether both are read as the same record of the same kind of thing; false if either is of no kind. `first` and
/// `second` are the records that are read into.
bool AreSame(std::string_view one, std::string_view other, const NS_UTIL::Surroundings& surroundings, AnyRecord& first,
             AnyRecord& second);

}  // namespace NS_KX
