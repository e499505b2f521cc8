#pragma once

#include "catalogue/record.h"
#include "text/textbuffer.h"

namespace NS_KX {

/// Appends the value of `field` in `record` to `out`: a number in decimal, a flag as true or false, a text as it is.
/// Returns false, and appends nothing, if it is the number -1, which means "none". Throws std::bad_alloc.
bool AppendKnownValue(const Field& field, const void* record, TextBuffer& out);

}  // namespace NS_KX
