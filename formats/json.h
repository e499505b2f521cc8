#pragma once

#include <string_view>

#include "text/textbuffer.h"

namespace NS_KX {

/// Appends `text`, which is UTF-8, as a JSON string with its quotes.
void AppendJsonText(std::string_view text, TextBuffer& out);

}  // namespace NS_KX
