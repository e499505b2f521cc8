/// Records as rows of columns: "fdn", "type", and the fields; those of a nested record with its name and "." ahead.
#pragma once

#include <memory>
#include <string>

#include "formats/recordformat.h"

namespace NS_KX {

/// The line of column names, with its end.
std::string MakeColumnHeader(const Layout& layout);

/// For all formats but JSON lines.
std::unique_ptr<RecordFormat> MakeColumnFormat(const Layout& layout);

}  // namespace NS_KX
