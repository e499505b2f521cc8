/// Records as rows of columns.
#pragma once

#include <memory>
#include <string>

#include "formats/recordformat.h"

namespace NS_KX {

/// The line of column names, with its end.
std::string MakeColumnHeader(const FormatOptions& options);

/// For all formats but JSON lines.
std::unique_ptr<RecordFormat> MakeColumnFormat(const FormatOptions& options, const NS_UTIL::Surroundings& surroundings);

}  // namespace NS_KX
