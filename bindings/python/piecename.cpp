#include "bindings/python/piecename.h"

#include <optional>
#include <utility>

#include "bindings/python/errors.h"
#include "bindings/python/text.h"
#include "catalogue/kinds.h"

namespace NS_KX::NS_PYTHON {

PieceName ReadPieceName(const py::handle& piece) {
    const TextBytes text(piece, "a piece");
    std::optional<PieceName> name = PieceName::ParseKnown(text.View());
    if (!name) {
        Raise(BAD_ARGUMENT, PieceName::WhyNone(text.View()));
    }
    return *std::move(name);
}

bool IsOneNumber(const PieceName& name) {
    return name.IsNumber() && (name.index || name.FindTag()->most == 1);
}

}  // namespace NS_KX::NS_PYTHON
