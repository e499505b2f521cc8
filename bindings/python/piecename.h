#pragma once

#include <pybind11/pybind11.h>

#include "catalogue/pieces.h"

namespace NS_KX::NS_PYTHON {

/// The piece that a str of Python means. Throws the exceptions WrongType, and BadArgument if identifiers have no such
/// piece.
PieceName ReadPieceName(const pybind11::handle& piece);

/// Whether the piece is one number: a numeric sub-value, or the value of a level that has no other.
bool IsOneNumber(const PieceName& name);

}  // namespace NS_KX::NS_PYTHON
