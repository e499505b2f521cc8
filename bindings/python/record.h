/// Records as the dicts that the JSON lines of the tool would give: {"fdn": ..., "type": ..., "record": {...}}.
#pragma once

#include <string>
#include <string_view>

#include <pybind11/pybind11.h>

namespace NS_KX::NS_PYTHON {

/// What is read from `fdn`. Throws the exception UnknownType if its last level means no kind of identifier.
pybind11::dict Decode(std::string_view fdn);

/// The identifier of the record in `decoded`; its "fdn" does not matter. `facts` are as `Facts` takes them.
std::string Encode(const pybind11::handle& decoded, const pybind11::object& facts);

}  // namespace NS_KX::NS_PYTHON
