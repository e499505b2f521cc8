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
#include "catalogue/tagorder.h"

namespace NS_KX {

/// Which piece is meant. The tag PORT stands for the level of a port, PP or LP, whichever comes first.
struct PieceName {
    std::string tag;
    std::optional<unsigned> index;  ///< of the sub-value, from 0; none means the whole value of the level

    /// Reads "NE" or "PP:2". A tag consists of upper-case letters and digits, and need not be known. None for any other
    /// text.
    static std::optional<PieceName> Parse(std::string_view text);

    /// The same, and none for a piece that no identifier has: the tag is unknown, or its level has no such sub-value.
    static std::optional<PieceName> ParseKnown(std::string_view text);
    /// Why `ParseKnown` gives none, for a message.
    static std::string WhyNone(std::string_view text);

    /// What is known of the level; null if the tag is unknown. PORT gives what PP and LP have in common.
    [[nodiscard]] const Tag* FindTag() const;

    /// Whether the piece is a number, or the first of its level's sub-values is.
    [[nodiscard]] bool IsNumber() const;

private:
    [[nodiscard]] bool IsKnown() const;
};

/// The tag that stands for both levels of ports.
inline constexpr std::string_view PORT_TAG = "PORT";

/// Finds several pieces in one pass.
class PieceFinder {
public:
    explicit PieceFinder(std::vector<PieceName> names);

    [[nodiscard]] const std::vector<PieceName>& Names() const noexcept { return m_names; }

    /// Puts the pieces of `fdn` into `found`, one for each name. They are views of `fdn` and may be empty; a missing
    /// piece gives a view without data (null). The first of several levels with the same tag counts.
    void Find(std::string_view fdn, std::span<std::string_view> found) const;

    /// The same, and answers `order.IsKeptBy(fdn)` in the same pass.
    bool Find(std::string_view fdn, std::span<std::string_view> found, TagOrder& order) const;

private:
    // A tag, with its first eight characters as a number, so that most levels are told from it in one step.
    struct WantedTag {
        std::string tag;
        std::uint64_t head;
        std::uint64_t mask;
        std::size_t place;  // of the first name with this tag
    };

    void Want(std::string_view tag, std::size_t place);
    template <class AcceptsLevel>
    bool FindLevels(std::string_view fdn, std::span<std::string_view> found, AcceptsLevel accepts) const;
    void FindSubValues(std::span<std::string_view> found) const;

    std::vector<PieceName> m_names;
    std::vector<std::size_t> m_firstOfTag;  // for each name, the index of the first name with the same tag
    std::vector<WantedTag> m_wanted;
    std::size_t m_tagCount = 0;
};

/// The piece `name` of `fdn`; a view without data if it is missing.
std::string_view FindPiece(std::string_view fdn, const PieceName& name);

/// The number that a piece is read as. None if the piece is missing or empty, or reads as -1, which means "none".
std::optional<std::int32_t> NumberOf(std::string_view piece);

/// Whether `piece` is missing, or is a number that reads as -1, which means "none". `isNumber`: `PieceName::IsNumber`.
bool SaysNone(std::string_view piece, bool isNumber);

/// Why `value` cannot stand in the place of a known piece: it holds a character that would end the piece or the line.
/// None if it can.
std::optional<std::string> WhyNoValue(const PieceName& name, std::string_view value);

/// `fdn` with this piece replaced by `value`, for which `WhyNoValue` gives none; unchanged if the piece is missing.
std::string ReplacePiece(std::string_view fdn, const PieceName& name, std::string_view value);

/// Whether `fdn` lies in `container`: `fdn` has each level of the container, with the same value. Numbers compare as
/// they are read. An identifier lies in itself.
bool LiesIn(std::string_view fdn, std::string_view container);

/// Whether both are read as the same record of the same kind of thing; false if either is of no kind. Reads them into
/// `first` and `second`.
bool AreSame(std::string_view one, std::string_view other, const NS_UTIL::Surroundings& surroundings, AnyRecord& first,
             AnyRecord& second);

}  // namespace NS_KX
