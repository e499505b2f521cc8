/// The cells of a table for people whose columns have a fixed width, so that no line waits for the others.
#pragma once

#include <cstddef>
#include <string_view>

#include "text/textbuffer.h"

namespace NS_KX {

/// Wide enough for all types, and for most identifiers.
inline constexpr std::size_t TYPE_WIDTH = 20;
inline constexpr std::size_t FDN_WIDTH = 48;

/// Appends `text` as it can stand between blanks: in quotes if it is empty or holds blanks or quotes.
void AppendTableWord(std::string_view text, TextBuffer& out);

/// Ends a cell, the text from `begin` on: appends blanks until it is `width` columns wide, and two more.
void Pad(std::size_t begin, std::size_t width, TextBuffer& out);

/// Appends `printable` as a cell of `width` columns.
void AppendPadded(std::string_view printable, std::size_t width, TextBuffer& out);

}  // namespace NS_KX
