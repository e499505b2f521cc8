#pragma once

#include <pybind11/pybind11.h>

namespace NS_KX::NS_PYTHON {

/// The pieces of very many identifiers as masked arrays of numpy; its docstring in module.cpp says all of it.
pybind11::dict MakeColumns(const pybind11::object& data, const pybind11::object& pieces,
                           const pybind11::object& offsets);

}  // namespace NS_KX::NS_PYTHON
