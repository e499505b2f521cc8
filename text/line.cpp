#include "text/line.h"

#include "text/utf8.h"

namespace NS_KX {

std::optional<LineFlaw> FindFlaw(std::string_view line, bool mayBeBinary) {
    if (line.empty()) {
        return LineFlaw{0, "the line is empty"};
    }
    if (const auto nul = line.find('\0'); nul != std::string_view::npos) {
        return LineFlaw{nul + 1, "NUL byte"};
    }
    if (const auto invalid = mayBeBinary ? line.size() : FindInvalidUtf8(line); invalid != line.size()) {
        return LineFlaw{invalid + 1, "not UTF-8"};
    }
    return std::nullopt;
}

}  // namespace NS_KX
