#pragma once

#include <memory>
#include <string>
#include <vector>

#include "catalogue/kinds.h"
#include "text/textbuffer.h"

namespace NS_KX {

/// Writes records, one a line. Each belongs to one thread.
class RecordFormat {
public:
    virtual ~RecordFormat() = default;
    /// Appends to `out` what `kind` reads from `fdn`. If this throws, `out` is unchanged.
    virtual void Write(const std::string& fdn, const Kind& kind, TextBuffer& out) = 0;
};

enum class FormatName { JSONL, CSV, TSV, TABLE };

/// What all records of one run have in common.
struct Layout {
    FormatName format = FormatName::JSONL;
    std::vector<const Kind*> kinds;  ///< whose fields are the columns
};

/// The line ahead of all others, with its end; empty when the format has none.
std::string MakeHeader(const Layout& layout);

/// The format that `layout` asks for.
std::unique_ptr<RecordFormat> MakeFormat(const Layout& layout);

}  // namespace NS_KX
