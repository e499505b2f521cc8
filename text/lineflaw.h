#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace NS_KX {

/// Why a line can be neither an identifier nor a record.
struct LineFlaw {
    std::size_t column;  ///< from 1; 0: the whole line
    const char* reason;
};

/// The flaw of a line that is empty, holds a NUL byte, or is not UTF-8; none for any other line. UTF-8 is not asked for
/// if `mayBeBinary`.
std::optional<LineFlaw> FindFlaw(std::string_view line, bool mayBeBinary = false);

}  // namespace NS_KX
