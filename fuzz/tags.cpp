/// The look at the tags of many lines, which remembers the line before, says of each line what the check of that line
/// alone says; and the pieces that are found in the same pass are those that are found alone.
#include <array>

#include "catalogue/kinds.h"
#include "catalogue/levelcheck.h"
#include "catalogue/pieces.h"
#include "catalogue/tagorder.h"
#include "fuzz/input.h"

namespace {

using namespace NS_KX;
using NS_FUZZ::ExpectEqual;
using Pieces = std::array<std::string_view, 4>;

const PieceFinder& Finder() {
    static const PieceFinder finder({{"NE", {}}, {"PORT", 1}, {"PP", 3}, {"VC4", {}}});
    return finder;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    TagOrder order;
    TagOrder orderWithPieces;
    std::string_view rest = NS_FUZZ::ToText(data, size);
    while (!rest.empty()) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        const bool isKept = !FindTagProblem(line);
        ExpectEqual(order.IsKeptBy(line), isKept, "the order of the tags", line);
        Pieces found;
        ExpectEqual(Finder().Find(line, found, orderWithPieces), isKept, "the order of the tags beside pieces", line);
        Pieces alone;
        Finder().Find(line, alone);
        ExpectEqual(found, alone, "the pieces", line);
    }
    return 0;
}
